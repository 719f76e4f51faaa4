"""The program as its user meets it: menus, windows, message boxes, requesters, the chart."""

import os
import shlex
import signal
import subprocess

import accessible
from chart import Chart, NoChart
from waiting import SLOWNESS, wait_until, wait_until_steady

TITLE = "Kurbelbuch"


class Program:
    """A running program. Procedures that wait raise TookTooLong, those that find nothing too."""

    def __init__(self, desktop, executable, directory, arguments=()):
        self.desktop = desktop
        # What the program is run by, as a tool that watches its memory.
        runner = shlex.split(os.environ.get("KURBELBUCH_RUNNER", ""))
        self.process = desktop.run("program", [*runner, executable, *arguments], cwd=directory)
        self.root = wait_until(self.find_application, lambda: "the program " + self.condition())

    def condition(self):
        code = self.process.poll()
        state = "runs" if code is None else f"ended with {code}"
        return f"{state}; it shows {self.titles()}; it said: {self.desktop.messages('program')}"

    def find_application(self):
        if self.process.poll() is not None:
            raise AssertionError("the program ended: " + self.condition())
        for application in accessible.applications(self.desktop.bus):
            try:
                pid = accessible.call(
                    self.desktop.bus, "org.freedesktop.DBus", "/org/freedesktop/DBus",
                    "org.freedesktop.DBus", "GetConnectionUnixProcessID",
                    accessible.GLib.Variant("(s)", (application.bus_name,)),
                )[0]
            except accessible.GLib.Error:
                continue
            if pid == self.process.pid:
                return application
        return None

    # Windows

    def windows(self):
        return [window for window in self.root.children if window.has("showing")]

    def titles(self):
        try:
            return [repr(window) for window in self.windows()]
        except (accessible.Gone, AttributeError):
            return []

    def find_window(self, title, role=None):
        """The active window of this title (and role), or None."""
        try:
            for window in self.root.children:
                states = window.states
                if "active" in states and "showing" in states and window.name == title:
                    return window if role in (None, window.role) else None
        except accessible.Gone:
            pass  # one closed while we looked
        return None

    def window(self, title=TITLE, role=None):
        """The window of this title, when it is there, takes keys, and has found its place."""
        window = wait_until(
            lambda: self.find_window(title, role), lambda: f"window {title!r}: {self.condition()}"
        )
        wait_until_steady(lambda: window.extents, f"the place of {window}", times=2, period=0.02)
        return window

    def is_gone(self, window):
        return not window.has("showing")

    def wait_gone(self, window):
        wait_until(lambda: self.is_gone(window), lambda: f"{window} to go: {self.condition()}")

    def press(self, *keys):
        self.desktop.press(*keys)

    def close(self, window):
        """Closes a window as its user does by the window manager."""
        self.press("alt+F4")
        self.wait_gone(window)

    def wait_end(self):
        """Waits until the program has ended by itself; returns its exit code."""
        try:
            return self.process.wait(20 * SLOWNESS)
        except subprocess.TimeoutExpired:
            raise AssertionError("the program does not end: " + self.condition()) from None

    def end(self):
        """Ends the program from outside, if it still runs."""
        if self.process.poll() is None:
            self.process.send_signal(signal.SIGKILL)
        self.process.wait()

    # Menus

    def menu_item(self, *names):
        """The item at the end of a path of menu texts."""
        node = self.window_by_title(TITLE).find("menu bar")
        for depth, name in enumerate(names):
            found = [child for child in node.children if child.name == name]
            if len(found) != 1:
                raise AssertionError(f"{len(found)} menu items {names[:depth + 1]}")
            node = found[0] if depth + 1 == len(names) else found[0].child(0)
        return node

    def window_by_title(self, title):
        for window in self.root.children:
            if window.name == title:
                return window
        raise AssertionError(f"no window {title!r}: {self.condition()}")

    def is_marked(self, *names):
        return self.menu_item(*names).has("checked")

    def is_enabled(self, *names):
        return self.menu_item(*names).has("enabled")

    def choose(self, *names):
        """Chooses a menu item with the pointer."""
        self.window()
        popup = None
        for depth in range(1, len(names)):
            title = self.menu_item(*names[:depth])
            self.desktop.click(title)
            popup = title.child(0)
            wait_until(lambda: popup.has("showing"), lambda: f"menu {names}: {self.condition()}")
        item = self.menu_item(*names)
        if not item.has("enabled"):
            raise AssertionError(f"{names} is disabled")
        self.desktop.click(item)
        wait_until(lambda: not popup.has("showing"), f"menu {names} to close")

    def tick(self, *names):
        """Chooses an item that carries a mark, and waits for the mark to change."""
        before = self.is_marked(*names)
        self.choose(*names)
        wait_until(lambda: self.is_marked(*names) != before, lambda: f"the mark of {names}")

    def choose_by_keys(self, *names):
        """Chooses a menu item with Alt, the arrows and Return."""
        self.window()
        menu = self.window_by_title(TITLE).find("menu bar")
        self.press("Alt_L")
        for depth, name in enumerate(names):
            item = self.walk_to(menu, name, "Right" if depth == 0 else "Down")
            if depth + 1 < len(names):
                menu = item.child(0)
                self.press("Down" if depth == 0 else "Right")
        self.press("Return")
        wait_until(lambda: not menu.has("showing"), f"menu {names} to close")

    def walk_to(self, menu, name, key):
        """Presses `key` until the item of this name has the focus."""
        def focused():
            return next((item for item in menu.children if item.has("focused")), None)

        item = wait_until(focused, lambda: f"focus in the menu of {name!r}: {self.condition()}")
        seen = set()
        while item.name != name:
            if item in seen:
                raise AssertionError(f"no menu item {name!r} by keys")
            seen.add(item)
            self.press(key)
            item = wait_until(
                lambda before=item: (now := focused()) and now != before and now,
                lambda: f"focus after {item}: {self.condition()}",
            )
        return item

    # Controls of windows

    def control(self, window, role, name):
        return wait_until(
            lambda: window.find(role, name), lambda: f"{role} {name!r} in {window}"
        )

    def push(self, window, button):
        """Presses a button with the pointer."""
        self.desktop.click(self.control(window, "push button", button))

    def fill_in(self, field, text):
        """Replaces what stands in a field by typing."""
        self.desktop.click(field)
        wait_until(lambda: field.has("focused"), f"{field} to take keys")

        # A busy desktop loses a key now and then just behind a click.
        def select_all():
            self.press("ctrl+a")
            return not field.text or field.selections > 0

        wait_until(select_all, lambda: f"{field.text!r} in {field} to be selected")
        if text:
            self.desktop.type(text)
        else:
            self.press("BackSpace")
        wait_until(lambda: field.text == text, lambda: f"{text!r} in {field}: {field.text!r}")

    # Message boxes

    def message_text(self, box):
        texts = [node.name for node in box.children if node.role == "label" and node.name]
        return "\n".join(texts)

    def message(self, title):
        """The message box of this title and its text."""
        box = self.window(title)
        return box, self.message_text(box)

    def answer(self, box, button="OK"):
        self.push(box, button)
        self.wait_gone(box)

    def read_message(self, title, button="OK"):
        """Answers the message box of this title and returns its text."""
        box, text = self.message(title)
        self.answer(box, button)
        return text

    # Requesters

    def enter_path(self, title, path):
        """Puts a path into the field of the requester of this title, which it returns.

        As dictation would, not key by key: the completions that the requester offers meanwhile
        take a Return for themselves when they come late."""
        requester = self.window(title)
        field = wait_until(
            lambda: requester.find("text", state="focused"), lambda: f"the field of {requester}"
        )
        field.ask(accessible.PREFIX + "EditableText", "SetTextContents", "(s)", path)
        wait_until(lambda: field.text == path, lambda: f"{path!r}: {field.text!r}")
        return requester

    def choose_path(self, title, path):
        """Enters a path into the requester of this title and accepts it."""
        requester = self.enter_path(title, path)
        self.press("Return")
        self.wait_gone(requester)

    def cancel(self, title):
        requester = self.window(title)
        self.press("Escape")
        self.wait_gone(requester)

    # The chart

    @property
    def chart_control(self):
        return self.window_by_title(TITLE).find(name="Diagramm")

    def chart_place(self):
        """x, y, width and height of the chart on the screen."""
        return self.chart_control.extents

    def chart(self):
        """What the chart shows now. Raises NoChart when there is none."""
        x, y, width, height = self.chart_place()
        return Chart(self.desktop.screen().crop((x, y, x + width, y + height)))

    def wait_chart(self, condition, what):
        """Waits until the chart on the screen fulfils the condition; returns it."""
        def look():
            try:
                chart = self.chart()
            except NoChart:
                return None
            return chart if condition(chart) else None

        return wait_until(look, lambda: f"chart: {what}: {self.condition()}")

    def wait_bars(self, expected):
        """Waits until the chart shows bars of these heights, given as fractions; returns it."""
        last = []

        def fits(chart):
            last[:] = chart.bar_heights(len(expected))
            allowed = 1.5 / chart.height
            return all(abs(a - b) <= allowed for a, b in zip(last, expected, strict=True))

        try:
            return self.wait_chart(fits, "bars")
        except AssertionError as error:
            raise AssertionError(f"bars {last}, expected {expected}; {error}") from error

    def wait_told(self, text):
        """Waits until a screen reader is told this text first about the chart."""
        wait_until(
            lambda: self.chart_control.description.startswith(text),
            lambda: f"{text!r}, not {self.chart_control.description!r}",
        )

    def wait_no_chart(self):
        """Waits until not even a frame is drawn."""
        def look():
            try:
                self.chart()
            except NoChart:
                return True
            return False

        wait_until(look, "an empty window")

    # The list of trainings

    def read_rows(self, window):
        columns = [node.name for node in self.list_cells(window, "column header")]
        cells = [node.name for node in self.list_cells(window, "tree item")]
        width = len(columns)
        return [tuple(cells[i:i + width]) for i in range(0, len(cells), width)]

    def list_rows(self, window):
        """The rows of the list, top to bottom, each a tuple of its texts."""
        # Filling the list anew takes away the cells that are just being read.
        return wait_until(lambda: [self.read_rows(window)], "the list's rows")[0]

    def list_of(self, window):
        return window.find("tree", "Trainingsdateien")

    def list_cells(self, window, role="tree item"):
        return [node for node in self.list_of(window).children if node.role == role]

    def list_row(self, window, row):
        """The first cell of a row."""
        return self.list_of(window).child(13 * (row + 1))

    def chosen_rows(self, window):
        """Rows whose first cell is chosen."""
        cells = self.list_cells(window)
        return [i // 13 for i in range(0, len(cells), 13) if cells[i].has("selected")]

    def wait_chosen(self, window, rows):
        wait_until(
            lambda: self.chosen_rows(window) == rows,
            lambda: f"chosen {rows}, not {self.chosen_rows(window)}",
        )


def find_executable():
    """The release build's program, or the one that the caller names."""
    here = os.path.dirname(os.path.abspath(__file__))
    default = os.path.join(here, "..", "..", "build", "release", "kurbelbuch")
    return os.path.abspath(os.environ.get("KURBELBUCH_PROGRAM", default))
