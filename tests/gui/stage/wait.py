"""Waiting for conditions, with a deadline and words for what was missing."""

import os
import time


class StageError(Exception):
    """The stage itself is broken: never a flake of the program under test."""


class Gone(Exception):
    """An accessible object, or its program, does not answer any more."""


def scaled(seconds):
    """A time limit, stretched for slow builds by ZELDLG_TIMEOUT_FACTOR."""
    return seconds * float(os.environ.get("ZELDLG_TIMEOUT_FACTOR", "1"))


def wait_until(predicate, timeout=10, what="a condition", seen=None):
    """The predicate's first true value; AssertionError with `what` after `timeout` seconds.

    An object that vanishes meanwhile counts as "not yet". `seen`, when given, is called at the
    end and says what there was instead.
    """
    deadline = time.monotonic() + scaled(timeout)
    pause = 0.005
    while True:
        try:
            value = predicate()
            last = repr(value)
        except Gone as gone:
            value, last = None, f"gone: {gone}"
        if value:
            return value
        if time.monotonic() >= deadline:
            break
        time.sleep(pause)
        pause = min(pause * 1.5, 0.05)
    if seen is not None:
        try:
            last = str(seen())
        except Gone as gone:
            last = f"gone: {gone}"
    raise AssertionError(f"waited {scaled(timeout):g} s for {what}; seen last:\n{last}")
