"""Displays that die under a host, at a random moment."""

import contextlib
import os
import queue
import select
import subprocess
import threading
import time

from stage import StageError, scaled
from stage.servers import dying_with_parent

from .process import UNANSWERED, Process

PREPARED = 3  # servers that are up before they are needed


class Display:
    """A bare X server that is made to be killed. No other has had its number in this run: a host
    that has lost one must not find the next in its place.
    """

    _number = 2000 + os.getpid() % 50_000
    _lock = threading.Lock()

    def __init__(self):
        for _ in range(20):
            with Display._lock:
                number = Display._number
                Display._number += 1
            if self._start(number):
                return
        raise StageError("no X server could be started")

    def _start(self, number):
        self.name = f":{number}"
        reading, writing = os.pipe()
        with contextlib.ExitStack() as stack:
            stack.callback(os.close, reading)
            self._process = subprocess.Popen(
                dying_with_parent(["Xvfb", self.name, "-displayfd", str(writing), "-screen", "0",
                                   "800x600x24", "-nolisten", "tcp", "-noreset",
                                   # The OpenGL library crashes when the server dies while GDK
                                   # asks it, as the first program on a display has it do.
                                   "-extension", "GLX"]),
                stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                pass_fds=[writing])
            os.close(writing)
            # The line comes in pieces, and the server ends when nobody takes the last one.
            answer = b""
            while not answer.endswith(b"\n"):
                if not select.select([reading], [], [], scaled(20))[0]:
                    break
                piece = os.read(reading, 16)
                if not piece:
                    break
                answer += piece
            if answer.endswith(b"\n"):
                return True
        self.kill()
        return False

    def kill(self):
        """When it was; once."""
        when = time.monotonic()
        if self._process.returncode is None:
            self._process.kill()
            self._process.wait()
            for left in (f"/tmp/.X{self.name[1:]}-lock", f"/tmp/.X11-unix/X{self.name[1:]}"):
                with contextlib.suppress(OSError):
                    os.unlink(left)
        return when


class Displays:
    """Servers that are started ahead of time."""

    def __init__(self):
        self._ready = queue.Queue()
        self._wanted = threading.Semaphore(PREPARED)
        self._ended = False
        self._thread = threading.Thread(target=self._fill, daemon=True)

    def __enter__(self):
        self._thread.start()
        return self

    def __exit__(self, *_):
        self._ended = True
        self._wanted.release()
        self._thread.join()
        while not self._ready.empty():
            display = self._ready.get()
            if isinstance(display, Display):
                display.kill()

    def _fill(self):
        while self._wanted.acquire() and not self._ended:
            try:
                self._ready.put(Display())
            except StageError as error:
                self._ready.put(error)

    def take(self):
        display = self._ready.get(timeout=scaled(60))
        self._wanted.release()
        if isinstance(display, StageError):
            raise display
        return display


def play(case, library, displays, environment, report):
    """How long it took until all calls had returned, in seconds. Where one is left that came into
    a slow start that failed, that is reported and the rest has to go on all the same.
    """
    display = displays.take()
    try:
        with Process(case.arguments(library), {**environment, "DISPLAY": display.name,
                                               "NO_AT_BRIDGE": "1"}) as host:
            host.next("calling")
            if case.moment == "ending":
                host.tell("end")
                host.next("ending")
            time.sleep(case.kill)
            killed = display.kill()
            time.sleep(case.stop)
            host.tell("stop")
            returned = host.next("returned")
            host.next("finalised")
            host.next("exit")
            host.end(case.status)
            if host.heard("unanswered"):
                report.count(UNANSWERED)
            return returned - killed
    finally:
        display.kill()
