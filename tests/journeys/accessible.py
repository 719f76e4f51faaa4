"""What a screen reader would see: the objects of the accessibility bus, asked anew every time."""

from gi.repository import Gio, GLib
from waiting import Gone

ROOT = "/org/a11y/atspi/accessible/root"
REGISTRY = "org.a11y.atspi.Registry"
PREFIX = "org.a11y.atspi."
CALL_TIMEOUT = 20000  # milliseconds

STATES = {
    "active": 1,
    "checked": 4,
    "editable": 7,
    "enabled": 8,
    "focusable": 11,
    "focused": 12,
    "selected": 23,
    "sensitive": 24,
    "showing": 25,
    "visible": 30,
    "checkable": 41,
}

# What may hold hundreds of objects.
CONTAINERS = ("tree", "list", "table", "menu bar")


def connect(address):
    flags = (
        Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT
        | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION
    )
    connection = Gio.DBusConnection.new_for_address_sync(address, flags, None, None)
    connection.set_exit_on_close(False)
    return connection


def call(connection, name, path, interface, method, arguments=None):
    return connection.call_sync(
        name, path, interface, method, arguments, None,
        Gio.DBusCallFlags.NONE, CALL_TIMEOUT, None,
    ).unpack()


def accessibility_bus(session):
    """A connection to the accessibility bus of the session bus `session`; starts it if need be."""
    return connect(
        call(session, "org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress")[0]
    )


class Node:
    """One object. Two are equal when they are the same object."""

    def __init__(self, bus, name, path):
        self.bus, self.bus_name, self.path = bus, name, path

    def __eq__(self, other):
        return (self.bus_name, self.path) == (other.bus_name, other.path)

    def __hash__(self):
        return hash((self.bus_name, self.path))

    def __repr__(self):
        try:
            return f"{self.role} {self.name!r}"
        except Gone:
            return f"gone {self.path}"

    def ask(self, interface, method, signature=None, *arguments):
        packed = GLib.Variant(signature, arguments) if signature else None
        try:
            return call(self.bus, self.bus_name, self.path, interface, method, packed)
        except GLib.Error as error:
            raise Gone(f"{self.path} {method}: {error.message}") from error

    def read(self, interface, name):
        return self.ask(
            "org.freedesktop.DBus.Properties", "Get", "(ss)", PREFIX + interface, name
        )[0]

    @property
    def name(self):
        return self.read("Accessible", "Name")

    @property
    def description(self):
        return self.read("Accessible", "Description")

    @property
    def role(self):
        return self.ask(PREFIX + "Accessible", "GetRoleName")[0]

    @property
    def children(self):
        rows = self.ask(PREFIX + "Accessible", "GetChildren")[0]
        return [Node(self.bus, name, path) for name, path in rows]

    def child(self, index):
        name, path = self.ask(PREFIX + "Accessible", "GetChildAtIndex", "(i)", index)[0]
        return Node(self.bus, name, path)

    @property
    def child_count(self):
        return self.read("Accessible", "ChildCount")

    @property
    def states(self):
        low, high = self.ask(PREFIX + "Accessible", "GetState")[0]
        bits = low | high << 32
        return {name for name, bit in STATES.items() if bits >> bit & 1}

    def has(self, state):
        try:
            return state in self.states
        except Gone:
            return False

    @property
    def extents(self):
        """x, y, width and height on the screen."""
        return self.ask(PREFIX + "Component", "GetExtents", "(u)", 0)[0]

    @property
    def middle(self):
        x, y, width, height = self.extents
        return x + width // 2, y + height // 2

    @property
    def selections(self):
        """How many pieces of its text are selected."""
        return self.ask(PREFIX + "Text", "GetNSelections")[0]

    @property
    def text(self):
        return self.ask(PREFIX + "Text", "GetText", "(ii)", 0, -1)[0]

    @property
    def letter_height(self):
        """The height of its text's first letter on the screen."""
        return self.ask(PREFIX + "Text", "GetCharacterExtents", "(iu)", 0, 0)[3]

    def walk(self):
        """This object and all below it, parents first, but not what lists, tables and menus hold.
        What vanishes meanwhile is left out."""
        try:
            role = self.role
            yield self, role
            if role in CONTAINERS:
                return
            children = self.children
        except Gone:
            return
        for child in children:
            yield from child.walk()

    def find(self, role=None, name=None, state=None):
        """The first object below that fits, or None."""
        for node, its_role in self.walk():
            try:
                if role is not None and its_role != role:
                    continue
                if name is not None and node.name != name:
                    continue
                if state is not None and state not in node.states:
                    continue
                return node
            except Gone:
                continue
        return None


def applications(bus):
    return Node(bus, REGISTRY, ROOT).children
