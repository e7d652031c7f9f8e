#!/usr/bin/python3
"""Where PINs are found: in no core file, and in a library that wipes them nowhere in the memory of
the host once a dialog has closed.

The host keeps nothing of a PIN, so whatever is found was left by the library or the toolkit.
"""

import contextlib
import os
import signal
import subprocess
import tempfile
import unittest
from pathlib import Path

from stage import StageTestCase, scaled, wait_until
from stage.memory import PIECE, PIN_LENGTH, new_pin, places_of
from stage.servers import dying_with_parent

WIPING_LIBRARY = os.environ["ZELDLG_WIPING_LIBRARY"]
SECRET_HOST = os.environ["ZELDLG_SECRET_HOST"]


def checksum(pin):
    """As the host computes it."""
    value = 2166136261
    for byte in pin.encode():
        value = (value ^ byte) * 16777619 % 2**32
    return value


class SecretHost:
    """A host that keeps no PIN. `pid` tells a screen which windows are its."""

    def __init__(self, library, environment=None):
        self.process = subprocess.Popen(dying_with_parent([SECRET_HOST, library]),
                                        env={**os.environ, **(environment or {})},
                                        stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        self.pid = self.process.pid

    def ask(self, dialog):
        self.process.stdin.write(dialog + "\n")
        self.process.stdin.flush()

    def answer(self):
        """Result, then length and checksum of each value."""
        return [int(word) for word in self.process.stdout.readline().split()]

    def close(self):
        """Its exit code, once it is out of its calls."""
        self.process.stdin.close()
        try:
            return self.process.wait(scaled(20))
        finally:
            self.process.kill()
            self.process.wait()
            self.process.stdout.close()


@unittest.skipIf(os.environ.get("ZELDLG_INSTRUMENTED"),
                 "terabytes of shadow memory cannot be searched")
class SecretCase(StageTestCase):
    library = WIPING_LIBRARY
    environment = {}

    def setUp(self):
        super().setUp()
        self.host = SecretHost(self.library, self.environment)
        self.addCleanup(self._end_host)

    def _end_host(self):
        if not self._outcome.success:
            self.host.process.kill()
        code = self.host.close()
        if self._outcome.success:
            self.assertEqual(0, code)

    def open(self, dialog, title):
        self.host.ask(dialog)
        return self.screen.find_window(title, self.host)

    def type_all(self, window, pins):
        """The PINs go into the password fields in their order."""
        fields = window.find_all("password text")
        self.assertEqual(len(pins), len(fields))
        for field, pin in zip(fields, pins):
            field.focus()
            self.screen.type_text(pin, into=field)
            wait_until(lambda field=field: field.length == PIN_LENGTH, 20, "the PIN typed")


class Wiped(SecretCase):
    environment = {"ZELDLG_PROCESS": "own"}

    def expect_wiped(self, window, pins, answer):
        # What the search finds while the fields still hold it shows that it can find something.
        self.assertGreaterEqual(places_of(self.host.pid, *set(pins)),
                                len(set(pins)) * (PIN_LENGTH - PIECE) // PIECE)
        self.screen.key(answer)
        self.screen.wait_gone(window)
        reply = self.host.answer()
        self.assertEqual(0, places_of(self.host.pid, *pins))
        return reply

    def test_the_pin_of_a_login(self):
        pin = new_pin()
        window = self.open("pin", "Enter PIN")
        self.type_all(window, [pin])
        self.assertEqual([0, PIN_LENGTH, checksum(pin)],
                         self.expect_wiped(window, [pin], "Return"))

    def test_a_pin_that_is_not_confirmed(self):
        pin = new_pin()
        window = self.open("pin", "Enter PIN")
        self.type_all(window, [pin])
        self.expect_wiped(window, [pin], "Escape")

    def test_a_pin_that_is_edited_before_it_is_confirmed(self):
        first, second = new_pin(), new_pin()
        window = self.open("pin", "Enter PIN")
        self.type_all(window, [first])
        self.screen.key("ctrl+a")
        self.screen.key("BackSpace")
        self.type_all(window, [second])
        reply = self.expect_wiped(window, [second], "Return")
        self.assertEqual([0, PIN_LENGTH, checksum(second)], reply)
        self.assertEqual(0, places_of(self.host.pid, first))

    def test_the_pin_of_a_signature(self):
        pin = new_pin()
        window = self.open("legal", "Enter PIN")
        self.type_all(window, [pin])
        self.assertEqual([0, PIN_LENGTH, checksum(pin)],
                         self.expect_wiped(window, [pin], "Return"))

    def test_the_pins_of_a_change(self):
        old, new = new_pin(), new_pin()
        window = self.open("change", "Change transport PIN")
        self.type_all(window, [old, new, new])
        self.assertEqual([0, PIN_LENGTH, checksum(old), PIN_LENGTH, checksum(new)],
                         self.expect_wiped(window, [old, new, new], "Return"))

    def test_the_new_pin_of_an_unlock(self):
        pin = new_pin()
        window = self.open("unlock", "Unlock PIN")
        self.screen.type_text("01020304", into=window.find("text", "Response"))
        self.type_all(window, [pin, pin])
        self.assertEqual([0, PIN_LENGTH, checksum(pin)],
                         self.expect_wiped(window, [pin, pin], "Return"))


class ThroughAHelper(SecretCase):
    """In a usual build, too: what has come from the helper is overwritten in the host."""

    library = os.environ["ZELDLG_LIBRARY"]
    environment = {"ZELDLG_PROCESS": "helper"}

    def test_the_pin_of_a_login_is_nowhere_in_the_host(self):
        pin = new_pin()
        window = self.open("pin", "Enter PIN")
        self.type_all(window, [pin])
        self.screen.key("Return")
        self.assertEqual([0, PIN_LENGTH, checksum(pin)], self.host.answer())
        self.assertEqual(0, places_of(self.host.pid, pin))

    def test_the_pins_of_a_change_are_nowhere_in_the_host(self):
        old, new = new_pin(), new_pin()
        window = self.open("change", "Change transport PIN")
        self.type_all(window, [old, new, new])
        self.screen.key("Return")
        self.assertEqual([0, PIN_LENGTH, checksum(old), PIN_LENGTH, checksum(new)],
                         self.host.answer())
        self.assertEqual(0, places_of(self.host.pid, old, new))


@unittest.skipIf(os.environ.get("ZELDLG_INSTRUMENTED"), "a sanitizer handles the crash itself")
class NoCore(StageTestCase):
    """A program with a PIN in its memory crashes."""

    def crash(self, command, is_ready):
        """Whether the kernel dumped its core."""
        with tempfile.TemporaryDirectory() as directory:
            pid = os.posix_spawnp("setpriv", dying_with_parent(
                ["prlimit", "--core=unlimited", "env", "-C", directory, *command]), os.environ)
            self.addCleanup(self._kill, pid)
            is_ready(pid)
            os.kill(pid, signal.SIGSEGV)
            _, status = os.waitpid(pid, 0)
            self.assertEqual(signal.SIGSEGV, os.WTERMSIG(status))
            return os.WCOREDUMP(status) or bool(os.listdir(directory))

    @staticmethod
    def _kill(pid):
        with contextlib.suppress(ProcessLookupError, ChildProcessError):
            os.kill(pid, signal.SIGKILL)
            os.waitpid(pid, 0)

    def shown(self, pid):
        window = self.screen.find_window("Enter PIN", pid)
        self.screen.type_text(new_pin(), into=window.find("password text"))

    def test_the_demonstration_leaves_no_core(self):
        def sleeps(pid):
            wait_until(lambda: Path(f"/proc/{pid}/comm").read_text() == "sleep\n", 10, "its start")
        if not self.crash(["sleep", "1000"], sleeps):
            self.skipTest("this system dumps no cores")
        self.assertFalse(self.crash(
            [os.environ["ZELDLG_DEMO"], "--library", os.environ["ZELDLG_LIBRARY"], "pin"],
            self.shown))


if __name__ == "__main__":
    unittest.main()
