"""The pointer of a display. Whole clicks reach the X server at once: sent one by one, as by a
command of its own, the two of a double click lie too far apart on a busy machine."""

import ctypes

x11 = ctypes.CDLL("libX11.so.6")
xtst = ctypes.CDLL("libXtst.so.6")
x11.XOpenDisplay.restype = ctypes.c_void_p


class Pointer:
    def __init__(self, display):
        self.connection = ctypes.c_void_p(x11.XOpenDisplay(display.encode()))
        if not self.connection:
            raise AssertionError("no connection to the display " + display)

    def close(self):
        x11.XCloseDisplay(self.connection)

    def done(self):
        """Waits until the server has taken what was sent."""
        x11.XSync(self.connection, 0)

    def move(self, x, y):
        xtst.XTestFakeMotionEvent(self.connection, -1, int(x), int(y), ctypes.c_ulong(0))
        self.done()

    def button(self, number, down):
        xtst.XTestFakeButtonEvent(self.connection, number, int(down), ctypes.c_ulong(0))

    def press(self, number=1):
        self.button(number, True)
        self.done()

    def release(self, number=1):
        self.button(number, False)
        self.done()

    def click(self, number=1, times=1):
        for _ in range(times):
            self.button(number, True)
            self.button(number, False)
        self.done()
