"""A desktop of a journey's own: virtual X server, window manager, session bus, accessibility."""

import os
import shutil
import subprocess
import tempfile

import accessible
import processes
from PIL import ImageGrab
from pointer import Pointer
from waiting import wait_until

SCREEN = (1280, 800)


def clean_environment(home):
    """Nothing of the caller's desktop, language or toolkit settings reaches the program."""
    return {
        "PATH": "/usr/local/bin:/usr/bin:/bin",
        "HOME": home,
        "LANG": "C.UTF-8",
        "TZ": "UTC",
        "XDG_RUNTIME_DIR": os.path.join(home, "runtime"),
        "GSETTINGS_BACKEND": "memory",
        "GIO_USE_VFS": "local",
        "NO_AT_BRIDGE": "1",  # the odd helper needs no accessibility; Qt does not read this
        "QT_QPA_PLATFORM": "xcb",
        "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1",
        "QT_SCALE_FACTOR": "1",
        "QT_LOGGING_RULES": "*.debug=false",
    }


class Desktop:
    def __init__(self):
        self.processes = []
        self.home = None
        self.pointer = None
        try:
            self.start()
        except BaseException:
            self.stop()
            raise

    def start(self):
        processes.adopt_orphans()
        self.home = tempfile.mkdtemp(prefix="kurbelbuch-journey-")
        self.environment = clean_environment(self.home)
        os.mkdir(self.environment["XDG_RUNTIME_DIR"], 0o700)
        self.start_display()
        self.start_bus()
        self.start_window_manager()

    def stop(self):
        if self.pointer is not None:
            self.pointer.close()
            self.pointer = None
        # The newest first, so that nobody loses its display before it was asked to end.
        for process in reversed(self.processes):
            processes.end(process)
        self.processes = []
        processes.end_orphans()
        if self.home is not None:
            shutil.rmtree(self.home, ignore_errors=True)
            self.home = None

    def run(self, name, command, **options):
        process = processes.start(command, self.log(name), env=self.environment, **options)
        self.processes.append(process)
        return process

    def log(self, name):
        return os.path.join(self.home, name + ".log")

    def messages(self, name):
        try:
            with open(self.log(name), encoding="utf-8", errors="replace") as log:
                return log.read()
        except FileNotFoundError:
            return ""

    def start_display(self):
        # The server takes a free number itself and writes it down when it is ready for clients.
        reader, writer = os.pipe()
        server = self.run(
            "Xvfb",
            ["Xvfb", "-displayfd", str(writer), "-screen", "0", "%dx%dx24" % SCREEN,
             "-nolisten", "tcp", "-noreset"],
            pass_fds=[writer],
        )
        os.close(writer)
        with os.fdopen(reader) as pipe:
            number = pipe.readline().strip()
        if not number:
            server.wait()
            raise AssertionError("the X server did not start:\n" + self.messages("Xvfb"))
        self.environment["DISPLAY"] = ":" + number
        self.pointer = Pointer(":" + number)

    def start_bus(self):
        reader, writer = os.pipe()
        self.run(
            "dbus-daemon",
            ["dbus-daemon", "--session", "--nofork", f"--print-address={writer}"],
            pass_fds=[writer],
        )
        os.close(writer)
        with os.fdopen(reader) as pipe:
            address = pipe.readline().strip()
        if not address:
            raise AssertionError("the bus did not start:\n" + self.messages("dbus-daemon"))
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = address
        self.session = accessible.connect(address)
        self.bus = accessible.accessibility_bus(self.session)

    def start_window_manager(self):
        # It runs the command when it takes care of windows; the properties by which others know a
        # window manager stand on the root window earlier, and a window that comes in between is
        # never shown or never gets the keys.
        ready = os.path.join(self.home, "managed")
        manager = self.run("openbox", ["openbox", "--sm-disable", "--startup", "touch " + ready])
        wait_until(
            lambda: manager.poll() is not None or os.path.exists(ready),
            lambda: "the window manager\n" + self.messages("openbox"),
        )
        if manager.poll() is not None:
            raise AssertionError("the window manager ended:\n" + self.messages("openbox"))

    def xdotool(self, *arguments, check=True):
        done = subprocess.run(
            ["xdotool", *map(str, arguments)],
            env=self.environment,
            stdin=subprocess.DEVNULL,
            capture_output=True,
            text=True,
            check=False,
        )
        if check and done.returncode != 0:
            raise AssertionError(f"xdotool {arguments}: {done.stderr}")
        return done.stdout.strip()

    def press(self, *keys):
        """Presses keys one after the other, by their X names."""
        self.xdotool("key", "--clearmodifiers", *keys)

    def type(self, text):
        self.xdotool("type", "--delay", "1", "--", text)

    def move_pointer(self, x, y):
        self.pointer.move(x, y)

    def park_pointer(self):
        """Out of the way, where it highlights nothing."""
        self.move_pointer(SCREEN[0] - 2, SCREEN[1] - 2)

    def drag(self, start, end, arrived):
        """Drags from one place to another, with the left button held down until arrived()."""
        self.move_pointer(*start)
        self.pointer.press()
        try:
            # Motions that come fast count as one, and a window manager takes the first for the
            # beginning and follows from the second on.
            def move_on():
                self.move_pointer(end[0] - 1, end[1] - 1)
                self.move_pointer(*end)
                return arrived()

            wait_until(move_on, f"a drag from {start} to {end}")
        finally:
            self.pointer.release()

    def click(self, place, button=1, times=1, holding=None):
        """Clicks an accessible object's middle, or a place (x, y), with a key held down or not."""
        x, y = place if isinstance(place, tuple) else place.middle
        self.move_pointer(x, y)
        if holding is not None:
            self.xdotool("keydown", holding)
        self.pointer.click(button, times)
        if holding is not None:
            self.xdotool("keyup", holding)

    def screen(self):
        return ImageGrab.grab(xdisplay=self.environment["DISPLAY"]).convert("RGB")
