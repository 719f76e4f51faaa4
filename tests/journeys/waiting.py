"""Waiting for conditions instead of for time."""

import os
import time

# How many times slower than usual the program may be.
SLOWNESS = float(os.environ.get("KURBELBUCH_SLOWNESS", "1"))
# Far above what a busy machine takes; only a failure ever waits this long.
PATIENCE = 20.0 * SLOWNESS
PERIOD = 0.01


class TookTooLong(AssertionError):
    pass


class Gone(Exception):
    """An object on the screen is no more, as a window that was closed or a row filled anew."""


def wait_until(condition, what, patience=PATIENCE):
    """The first true value of condition(), which may meet what is just vanishing. `what` is told
    when there is none in time: a text, or a procedure that returns one."""
    deadline = time.monotonic() + patience
    while True:
        try:
            value = condition()
        except Gone:
            value = None
        if value:
            return value
        if time.monotonic() > deadline:
            raise TookTooLong("waited in vain: " + tell(what))
        time.sleep(PERIOD)


def tell(what):
    try:
        return what() if callable(what) else what
    except Gone as gone:
        return f"what is gone: {gone}"


def wait_until_steady(read, what, times, period, patience=PATIENCE):
    """The value of read() once it was the same `times` times in a row."""
    deadline = time.monotonic() + patience
    last, count = read(), 1
    while count < times:
        if time.monotonic() > deadline:
            raise TookTooLong("never came to rest: " + what)
        time.sleep(period)
        value = read()
        count = count + 1 if value == last else 1
        last = value
    return last
