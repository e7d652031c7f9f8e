"""Waiting for conditions, with a deadline and words for what was missing."""

import os
import re
import time


class StageError(Exception):
    """The stage itself is broken: never a flake of the program under test."""


class Gone(Exception):
    """An accessible object, or its program, does not answer any more."""


def scaled(seconds):
    """The time limit for what takes so long at most on a quiet machine.

    The one way to judge a time from above. Stretched for slow builds by ZELDLG_TIMEOUT_FACTOR, and
    by the load that there is now.
    """
    with open("/proc/loadavg") as file:
        load = file.read()
    return (seconds * float(os.environ.get("ZELDLG_TIMEOUT_FACTOR", "1"))
            * load_factor(load, len(os.sched_getaffinity(0))))


def load_factor(load, processors):
    """How much longer than on a quiet machine anything may take, from the text of /proc/loadavg.

    The last minute counts as well as this moment: load that has just begun is in no average, and
    what has ended may still have held up what is judged. Twice what a fair share of the processors
    says, as windows are the work of several processes that wait for each other.
    """
    average, running = re.match(r"(\S+) \S+ \S+ (\d+)/", load).groups()
    return 1 + 2 * max(float(average), int(running)) / processors


def wait_until(predicate, timeout=10, what="a condition", seen=None):
    """The predicate's first true value; AssertionError with `what` after `timeout` seconds.

    An object that vanishes meanwhile counts as "not yet". `seen`, when given, is called at the
    end and says what there was instead.
    """
    began = time.monotonic()
    pause = 0.005
    while True:
        try:
            value = predicate()
            last = repr(value)
        except Gone as gone:
            value, last = None, f"gone: {gone}"
        if value:
            return value
        waited = time.monotonic() - began
        if waited >= timeout and waited >= scaled(timeout):
            break
        time.sleep(pause)
        pause = min(pause * 1.5, 0.05)
    if seen is not None:
        try:
            last = str(seen())
        except Gone as gone:
            last = f"gone: {gone}"
    raise AssertionError(f"waited {waited:.1f} s for {what}; seen last:\n{last}")
