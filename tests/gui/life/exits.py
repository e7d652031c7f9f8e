"""Hosts that exit at a random moment."""

import threading
import time

from stage import scaled
from stage.x11 import X11

from .process import Fault, Process

MOST_SECONDS = 2


class User:
    """Closes the dialogs of those hosts that have a user, some time after they have come up."""

    def __init__(self, display):
        self._display = display
        self._hosts = set()
        self._ended = threading.Event()
        self._thread = threading.Thread(target=self._run, daemon=True)

    def __enter__(self):
        self._thread.start()
        return self

    def __exit__(self, *_):
        self._ended.set()
        self._thread.join()

    def serve(self, pid):
        self._hosts.add(pid)

    def leave(self, pid):
        self._hosts.discard(pid)

    def _run(self):
        x11 = X11(self._display)
        pauses = (0.01, 0.03, 0.002, 0.08)
        turn = 0
        while not self._ended.wait(pauses[turn % len(pauses)]):
            turn += 1
            if self._hosts:
                for window, pid, _ in x11.windows():
                    if pid in self._hosts:
                        x11.send_delete(window)
        x11.close()


def play(case, library, user, environment):
    """How long the exit took, in seconds."""
    with Process(case.arguments(library), {**environment, **case.environment()}) as host:
        if case.answered:
            user.serve(host.pid)
        try:
            began = host.next("exit")
            ended = host.end(case.status)
        finally:
            user.leave(host.pid)
        if ended - began > scaled(MOST_SECONDS):
            raise Fault("slow", f"the exit took {ended - began:.1f} s")
        return ended - began
