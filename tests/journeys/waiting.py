"""Waiting for conditions instead of for time."""

import time

# Far above what a busy machine takes; only a failure ever waits this long.
PATIENCE = 20.0
PERIOD = 0.01


class TookTooLong(AssertionError):
    pass


def wait_until(condition, what, patience=PATIENCE):
    """The first true value of condition(). `what` is told when there is none in time: a text, or a
    procedure that returns one."""
    deadline = time.monotonic() + patience
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > deadline:
            raise TookTooLong("waited in vain: " + (what() if callable(what) else what))
        time.sleep(PERIOD)


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
