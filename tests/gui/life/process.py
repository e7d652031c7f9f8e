"""One host process: what it says, how it ends and how long that takes."""

import os
import re
import select
import signal
import subprocess
import tempfile
import time

from stage import scaled
from stage.servers import dying_with_parent

# What is said on standard error without being a fault: nobody gave these displays a settings
# daemon, and one that is gone cannot be opened.
HARMLESS = re.compile(
    r"^$|the connection to the display is lost|Unable to initialize GTK|is DISPLAY set properly"
    r"|cannot open display|AT-SPI: |dbind-WARNING|dconf-WARNING|X connection to :")

SAID = re.compile(r"([a-z]+) ([0-9]+)")
WRONG_RESULT = 98  # of a host
UNANSWERED = "times a call came into a slow start that failed: it stays unanswered, by design"


class Fault(Exception):
    """What a host did that none may do; the first word is its kind."""

    def __init__(self, kind, text):
        super().__init__(f"{kind}: {text}")
        self.kind = kind
        self.text = text


class Process:
    """A host under way. It dies with the thread that made it."""

    def __init__(self, arguments, environment=None, program=None):
        self.command = [program or os.environ["ZELDLG_LIFE_HOST"], *map(str, arguments)]
        self.environment = {name: str(value) for name, value in (environment or {}).items()}
        self._errors = tempfile.TemporaryFile()
        self._process = subprocess.Popen(
            dying_with_parent(self.command), stdin=subprocess.PIPE, stdout=subprocess.PIPE,
            stderr=self._errors, env={**os.environ, **self.environment})
        self.pid = self._process.pid
        self._pidfd = os.pidfd_open(self.pid)
        self._output = self._process.stdout.fileno()
        os.set_blocking(self._output, False)
        self._text = b""
        self._lines = []
        self._words_said = set()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        if self._process.poll() is None:
            self._process.kill()
            self._process.wait()
        os.close(self._pidfd)
        self._process.stdin.close()
        self._process.stdout.close()
        self._errors.close()

    def tell(self, line):
        try:
            self._process.stdin.write(line.encode() + b"\n")
            self._process.stdin.flush()
        except BrokenPipeError:
            pass  # its end is noticed where it is waited for

    def _read(self):
        try:
            while piece := os.read(self._output, 65536):
                self._text += piece
        except BlockingIOError:
            pass
        *lines, self._text = self._text.split(b"\n")
        for line in lines:
            said = SAID.fullmatch(line.decode())
            if said:  # GLib writes there, too, when it ends the process
                self._lines.append((said[1], int(said[2])))
                self._words_said.add(said[1])

    def heard(self, word):
        """Whether it has said that word, at any time."""
        self._read()
        return word in self._words_said

    def numbers(self, word):
        """What it has said with that word and nobody has waited for, also before it ended."""
        self._read()
        return [number for spoken, number in self._lines if spoken == word]

    def next(self, word, timeout=20):
        """Waits for the word and gives its time, in seconds of the monotonic clock. What came
        before is forgotten.
        """
        limit = time.monotonic() + scaled(timeout)
        poller = select.poll()
        poller.register(self._output, select.POLLIN)
        poller.register(self._pidfd, select.POLLIN)
        while True:
            ended = self._ended(0)  # first: it may say its last words and end in between
            self._read()
            for index, (spoken, when) in enumerate(self._lines):
                if spoken == word:
                    del self._lines[:index + 1]
                    return when / 1e9
            if ended:
                self.end()
                raise Fault("end", f"before it said {word!r}{self._words()}")
            if time.monotonic() > limit:
                raise Fault("hang", f"{word!r} was not reached{self._stacks()}")
            poller.poll(50)

    def _ended(self, seconds):
        poller = select.poll()
        poller.register(self._pidfd, select.POLLIN)
        return bool(poller.poll(seconds * 1000))

    def end(self, status=None, timeout=20):
        """Waits for the end, which has to be with that status and without a word of a fault.
        Gives when it was.
        """
        limit = time.monotonic() + scaled(timeout)
        while not self._ended(0.02):
            self._read()  # or it could not say anything any more
            if time.monotonic() > limit:
                raise Fault("hang", f"does not end{self._stacks()}")
        when = time.monotonic()
        self._read()
        code = self._process.wait()
        if code < 0:
            raise Fault("crash", f"{signal.Signals(-code).name}{self._words()}")
        if code == WRONG_RESULT:
            raise Fault("wrong", self._words())
        if status is not None and code != status:
            raise Fault("status", f"{code} instead of {status}{self._words()}")
        faults = [line for line in self.errors().splitlines() if not HARMLESS.search(line)]
        if faults:
            raise Fault("message", "\n".join(faults[:40]))
        return when

    def errors(self):
        self._errors.seek(0)
        return self._errors.read().decode(errors="replace")

    def _words(self):
        text = self.errors().strip()
        return f"; standard error:\n{text[-3000:]}" if text else ""

    def _stacks(self):
        """Where its threads are, for a message."""
        try:
            found = subprocess.run(
                ["gdb", "-p", str(self.pid), "-batch", "-nx", "-iex", "set debuginfod enabled off",
                 "-ex", "thread apply all backtrace 25"],
                capture_output=True, text=True, timeout=120, errors="replace").stdout
        except (OSError, subprocess.TimeoutExpired) as error:
            found = f"no backtrace: {error}"
        kept = [line for line in found.splitlines() if line.startswith(("Thread", "#"))]
        return self._words() + "\n" + "\n".join(kept)
