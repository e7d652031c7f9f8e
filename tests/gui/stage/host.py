"""A host process under the test's control: a program that loads the library and calls it."""

import collections
import contextlib
import dataclasses
import json
import os
import queue
import re
import signal
import subprocess
import tempfile
import threading
import urllib.parse

from .servers import dying_with_parent
from .wait import StageError, scaled

# A line of the host's standard error that is a fault, whatever the test looks at.
FAULTS = re.compile(r"[Aa]ssert|CRITICAL|GLib-GObject-WARNING|has no property named|error: <data>"
                    r"|AddressSanitizer|LeakSanitizer|ThreadSanitizer|ASan|UBSan|runtime error")
FILL = 0xA5

OK = 0
FAILED = 0x80003000
CANCELLED = 0x80003001
BUFFER_TOO_SMALL = 0x80003002
NOT_SUPPORTED = 87


class HostError(AssertionError):
    """The host crashed, refused a command, or reported a fault on standard error."""


class Call:
    """A call of an export under way; like a future."""

    def __init__(self, host, text):
        self._host = host
        self._text = text
        self._answered = threading.Event()
        self._answer = None

    def returned(self, answer):
        self._answer = answer
        self._answered.set()

    def host_ended(self):
        self._answered.set()

    @property
    def done(self):
        self._host.check()
        return self._answer is not None

    def answer(self, timeout=20):
        """Everything that the host reported, once the call has returned."""
        self._answered.wait(scaled(timeout))
        if self._answer is None:
            self._host.check()
            raise HostError(f"{self._text} has not returned within {scaled(timeout):g} s\n"
                            + self._host.stderr())
        return self._answer

    def result(self, timeout=20):
        """The export's own result; None for an export that returns nothing."""
        return self.answer(timeout)["result"]

    def elapsed(self, timeout=20):
        """How long the export took, in seconds."""
        return self.answer(timeout)["elapsed_us"] / 1e6

    def output(self, name):
        """An output: a number, or the bytes of a buffer with the guard area behind it."""
        value = self.answer()[name]
        return bytes.fromhex(value) if isinstance(value, str) else value

    def value(self, name, length=None):
        """The valid bytes of an output buffer; fails when anything behind them was written."""
        data = self.output(name)
        length = self.output(f"{name}Length") if length is None else length
        if set(data[length:]) != {FILL}:
            raise HostError(f"{self._text}: {name} was written behind its {length} bytes: "
                            f"{data.hex()}")
        return data[:length]

    def number(self, name):
        """An output slot as a number; None when it was not written."""
        data = self.output(name)
        return None if self.untouched(name) else int.from_bytes(data, "little")

    def untouched(self, *names):
        """Whether none of these output buffers and slots was written to."""
        return all(set(self.output(name)) == {FILL} for name in names)


@dataclasses.dataclass(frozen=True)
class Letters:
    """As an argument of a call: a text of that many letters x, which the host makes itself."""
    count: int


class Host:
    """A process that has the library loaded. `with Host() as host: ...`

    It dies with the thread that made it: make it on the main thread.

    `zel_home` is the directory of its settings file, fresh for every host; `registry` is the text
    of that file. `environment` is added to that of this process, None unsets a variable; `prefix`
    is a command to start the host with. `toolkit` names that which the host's main thread can run
    a window of its own with: gtk3, gtk4, qt5, qt6, wx (see tests/hosts). `strict` says whether
    faults reported on standard error fail the test (default: ZELDLG_STRICT_STDERR, on unless that
    is 0).
    """

    def __init__(self, library=None, program=None, registry=None, environment=None, prefix=(),
                 toolkit=None, strict=None):
        self._library = library or library_path()
        self._program = program or _from_environment("ZELDLG_TEST_HOST")
        if toolkit:
            self._program += f"_{toolkit}"
        self._prefix = list(prefix)
        self._strict = (os.environ.get("ZELDLG_STRICT_STDERR", "1") != "0" if strict is None
                        else strict)
        self._stage = os.environ.get("ZELDLG_STAGE")
        self.zel_home = tempfile.mkdtemp(prefix="zel-", dir=self._stage)
        if registry is not None:
            self.write_registry(registry)
        self._environment = {**os.environ, "ZEL_HOME": self.zel_home, **(environment or {})}
        self._calls = {}
        self._answers = queue.Queue()
        self._last_lines = collections.deque(maxlen=400)
        self._faults = []
        self._closing = False
        self._silent = threading.Event()
        self._start()

    def __enter__(self):
        return self

    def __exit__(self, kind, *_):
        self.close(failed=kind is not None)

    # ---- settings

    @property
    def registry_path(self):
        return os.path.join(self.zel_home, ".tessaly", "registry")

    def write_registry(self, text):
        os.makedirs(os.path.dirname(self.registry_path), mode=0o700, exist_ok=True)
        with open(self.registry_path, "wb") as file:
            file.write(text.encode() if isinstance(text, str) else text)

    # ---- process

    def _start(self):
        command = dying_with_parent([*self._prefix, self._program, self._library])
        environment = {name: value for name, value in self._environment.items()
                       if value is not None}
        self._process = subprocess.Popen(
            command, stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
            text=True, encoding="utf-8", errors="replace", env=environment)
        self.pid = self._process.pid
        self._readers = [threading.Thread(target=reader, daemon=True)
                         for reader in (self._read_answers, self._read_stderr)]
        for reader in self._readers:
            reader.start()
        self._lock = threading.Lock()
        try:
            # With a prefix, the host need not be the process that was started.
            self.pid = self._next_answer("ready")["pid"]
        except BaseException:
            self.close(failed=True)
            raise

    def _read_answers(self):
        for line in self._process.stdout:
            answer = json.loads(line)
            if "id" in answer:
                self._calls[answer["id"]].returned(answer)
            else:
                self._answers.put(answer)
        self._silent.set()
        self._answers.put(None)
        for call in list(self._calls.values()):
            call.host_ended()

    def _read_stderr(self):
        for line in self._process.stderr:
            self._last_lines.append(line.rstrip("\n"))
            if FAULTS.search(line):
                self._faults.append(line.rstrip("\n"))

    def stderr(self):
        """What the host, the library and the toolkit wrote to standard error lately."""
        return "standard error of the host:\n" + ("\n".join(self._last_lines) or "(empty)")

    def check(self):
        """Raises HostError when the host has ended by itself or has reported a fault."""
        if self._silent.is_set():
            self._process.wait(scaled(10))  # its pipes close before its end can be seen
        code = self._process.poll()
        if code is not None and not self._closing:
            self._readers[1].join(scaled(5))
            raise HostError(f"the host ended with {_ending(code)}\n" + self.stderr())
        if self._strict and self._faults:
            raise HostError("a fault was reported:\n" + "\n".join(self._faults) + "\n"
                            + self.stderr())

    @property
    def faults(self):
        """The faults that were reported on standard error so far."""
        return list(self._faults)

    @property
    def running(self):
        return self._process.poll() is None

    def quit(self, timeout=20):
        """Lets the host return from its main function; its exit code, negative for a signal.

        Calls that are under way stay where they are, as in a host that leaves without waiting.
        """
        self._closing = True
        self._send("quit")
        return self._process.wait(scaled(timeout))

    def kill(self, number=signal.SIGKILL):
        self._closing = True
        self._process.send_signal(number)
        self._process.wait()

    def close(self, failed=False):
        """Ends the host. Raises HostError when it crashed or reported a fault meanwhile."""
        try:
            if not failed:
                self.check()
            if self.running and not self._closing and not failed:
                code = self._leave()
                if code != 0:
                    raise HostError(f"the host ended with {_ending(code)}\n" + self.stderr())
        finally:
            self._process.kill()
            self._process.wait()
            if self.pid != self._process.pid:  # its child, which has its pipes
                with contextlib.suppress(ProcessLookupError):
                    os.kill(self.pid, signal.SIGKILL)
            for reader in self._readers:
                reader.join(scaled(5))
            for stream in (self._process.stdin, self._process.stdout, self._process.stderr):
                stream.close()
        if not failed:
            self._closing = True
            self.check()

    def _leave(self):
        try:
            if os.environ.get("ZELDLG_INSTRUMENTED") and self._loaded():
                # What is left behind is only known once the toolkit has cleaned up.
                self.run("DLG_Finalize", thread="leaver")
            return self.quit()
        except subprocess.TimeoutExpired:
            raise HostError("the host does not end\n" + self.stderr()) from None

    def _loaded(self):
        try:
            return self.table()["version"] is not None
        except HostError:
            return False

    # ---- commands

    def _send(self, text):
        try:
            self._process.stdin.write(text + "\n")
            self._process.stdin.flush()
        except BrokenPipeError:
            self._process.wait(scaled(10))
            self._closing = False
            self.check()
            raise

    def _next_answer(self, text):
        try:
            answer = self._answers.get(timeout=scaled(20))
        except queue.Empty:
            raise HostError(f"no answer to {text!r}\n" + self.stderr()) from None
        if answer is None:
            self._process.wait()
            self.check()
            raise HostError("the host has ended\n" + self.stderr())
        if "error" in answer:
            raise HostError(f"{answer['command']}: {answer['error']}")
        if answer["command"] != text:
            raise StageError(f"{answer['command']!r} was answered instead of {text!r}")
        return answer

    def command(self, text):
        """Sends a command line and gives its answer."""
        self.check()
        with self._lock:
            self._send(text)
            return self._next_answer(text)

    def call(self, export, thread="worker", **arguments):
        """Starts a call of an export on the named host thread.

        Values: None is the null pointer; texts and bytes are encoded; a list repeats the key (a
        tuple in it is joined with commas). Keys: see tests/gui/host.
        """
        self.check()
        with self._lock:
            number = len(self._calls) + 1
            words = ["call", str(number), thread, export]
            for key, value in arguments.items():
                for item in value if isinstance(value, list) else [value]:
                    words.append(f"{key}={_encode(item)}")
            text = " ".join(words)
            call = self._calls[number] = Call(self, f"{export} on {thread}")
            self._send(text)
            self._next_answer(text)
        return call

    def run(self, export, thread="worker", timeout=20, **arguments):
        """Calls an export and gives its result."""
        return self.call(export, thread, **arguments).result(timeout)

    def setenv(self, name, value):
        self.command(f"setenv {name} {_encode(value)}")

    def signals(self):
        """Signal names with `default`, `ignore`, `handler` or `foreign handler`."""
        return {name: value for name, value in self.command("signals").items()
                if name.startswith(("SIG", "signal "))}

    def rss(self):
        """Resident memory in kB."""
        return self.command("rss")["kb"]

    def heap(self):
        """Bytes in use on the heap."""
        return self.command("rss")["heap_bytes"]

    def sleeps(self):
        """The seconds of every sleep(), none of which took any time."""
        return [int(seconds) for seconds in self.command("sleeps")["seconds"]]

    def threads(self):
        """The names of the host's threads, that of the thread sanitizer left out."""
        names = self.command("threads")["names"]
        if os.environ.get("ZELDLG_INSTRUMENTED") == "thread" and names[0] in names[1:]:
            names.pop(names.index(names[0], 1))
        return names

    def fds(self):
        return self.command("fds")["targets"]

    def locale(self):
        """The process's locale; several categories' locales when they differ."""
        return self.command("locale")["locale"]

    def environment(self):
        """The process's environment variables."""
        return dict(each.split("=", 1) for each in self.command("environment")["variables"])

    def table(self):
        return self.command("table")

    def become_child(self):
        """Lets the host fork: its child is the host from now on."""
        self.pid = self.command("become-child")["pid"]

    def helpers(self):
        """The process ids of the library's processes that show its windows."""
        return helpers(self.pid)

    def frames(self):
        """How often the host's own window has been painted."""
        return self.command("toolkit frames")["frames"]

    def ticks(self):
        """How often the host's own GLib loop has ticked."""
        return self.command("glib-loop ticks")["ticks"]


def helpers(process_id):
    """The processes that show the library's windows for that one; as a rule none, or one."""
    found = []
    for entry in filter(str.isdigit, os.listdir("/proc")):
        # They are nobody's children, and say for whom they are.
        with contextlib.suppress(OSError), open(f"/proc/{entry}/cmdline") as file:
            if file.read() == f"zeldlg-helper\0{process_id}\0":
                found.append(int(entry))
    return found


def policy(characters=b"", **fields):
    """The arguments that give a policed call a policy: `**policy(enabled=1, p1_threshold=1)`."""
    names = ("header", "enabled", "p1_threshold", "p1_case_sensitive", "p1_full_pin_check",
             "p2_classes", "p2_population", "p2_min_length", "p2_class_mask", "p3_threshold",
             "p3_history_size", "p3_case_insensitive", "p3_length_normalise", "p3_strict_only")
    block = bytearray(32)
    for place, name in enumerate(names):
        block[place] = fields.pop(name, 0)
    block[24] = fields.pop("last_refused", 0)
    block[25] = fields.pop("p4_white_list", 0)
    block[28:32] = fields.pop("source", -2).to_bytes(4, "little", signed=True)
    if fields:
        raise TypeError(f"no such policy field: {', '.join(fields)}")
    return {"policy": bytes(block).hex(), "policyList": bytes(characters).hex()}


def library_path():
    """The library under test."""
    return _from_environment("ZELDLG_LIBRARY")


def _from_environment(name):
    try:
        return os.environ[name]
    except KeyError:
        raise StageError(f"{name} is not set") from None


def _encode(value):
    if value is None:
        return "null"
    if isinstance(value, bool):
        return str(int(value))
    if isinstance(value, tuple):
        return ",".join(map(_encode, value))
    if isinstance(value, Letters):
        return f"*{value.count}"
    if value == "null":
        return "%6eull"
    return urllib.parse.quote(value if isinstance(value, (str, bytes)) else str(value), safe="")


def _ending(code):
    return f"exit code {code}" if code >= 0 else f"signal {signal.Signals(-code).name}"
