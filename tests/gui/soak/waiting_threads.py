"""Tells when a host thread, told to make a call, has come to wait for its turn in it."""

import os


class WaitingThreads:
    """`names` are those of threads of the process. A thread that one of them makes later has the
    same name: make this object before.
    """

    def __init__(self, pid, names):
        self._tasks = f"/proc/{pid}/task"
        self._numbers = {}
        for task in os.listdir(self._tasks):
            with open(f"{self._tasks}/{task}/comm") as file:
                name = file.read().strip()
            if name in names:
                self._numbers[name] = task

    def watch(self, name):
        """A function that says whether the thread waits, and has worked since this moment.

        On its way it may sleep for a lock of the C library that another thread holds: only while
        all threads sleep, nobody holds one.
        """
        task = self._numbers[name]
        before = self._sleeps(task)

        def waits():
            now = self._sleeps(task)
            return (now not in (None, before) and self._all_sleep()
                    and self._sleeps(task) == now)
        return waits

    def watch_sleep(self, name):
        """A function that says whether the thread has gone to sleep since this moment, if only for
        a millisecond at a time.
        """
        task = self._numbers[name]
        before = self._sleeps(task)
        return lambda: self._sleeps(task) not in (None, before)

    def _all_sleep(self):
        return None not in [self._sleeps(task) for task in os.listdir(self._tasks)]

    def _sleeps(self, task):
        """How often the thread has gone to sleep; None while it is awake, or ends."""
        try:
            with open(f"{self._tasks}/{task}/status") as file:
                status = dict(line.split(":\t", 1) for line in file)
        except (FileNotFoundError, ProcessLookupError):
            return None
        return status["voluntary_ctxt_switches"] if status["State"].startswith("S") else None
