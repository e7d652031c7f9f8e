#!/usr/bin/python3
"""A host outlives the display that its dialogs stand on."""

import contextlib
import os
import socket
import threading
import unittest

from slow_display import SlowDisplay
from stage import FAILED, Screen, Stage, StageTestCase, own_process_only, wait_until

PIN = "DLG_ShowPinDialog"


class DisplayLoss(StageTestCase):
    def setUp(self):
        super().setUp()
        # A stage of its own: its display is killed.
        self.stage = self.enterContext(Stage())
        self.other = Screen(self.stage.environment)
        # The toolkit that is left behind is no leak.
        self.host = self.start_host(
            environment={**self.stage.environment, "ASAN_OPTIONS": "detect_leaks=0"},
            strict=False)

    def lose_display(self):
        self.other.close()  # a client that is still connected ends with its display
        self.stage.lose_display()

    def open(self, export, title, **arguments):
        call = self.host.call(export, **arguments)
        self.other.find_window(title, self.host)
        return call

    def expect_host_alive(self):
        """Later calls fail, finalise returns, and the host ends as it wants to."""
        for _ in range(2):
            self.assertEqual(FAILED, self.host.run(PIN))
        self.host.run("DLG_Finalize")
        call = self.host.call("DLG_GetLocale", bufferCapacity=16)
        self.assertEqual(FAILED, call.result())
        self.assertTrue(call.untouched("buffer"))
        self.host.run("DLG_Finalize")
        self.assertEqual(0, self.host.quit(), self.host.stderr())
        wait_until(lambda: "zeldlg: the connection to the display is lost" in self.host.stderr(),
                   what="a word about the loss")

    def test_while_a_dialog_is_open_its_call_fails_and_the_host_lives(self):
        call = self.open(PIN, "Enter PIN")
        self.lose_display()
        self.assertEqual(FAILED, call.result())
        self.assertTrue(call.untouched("pin"))
        self.expect_host_alive()

    def test_a_call_that_waits_for_its_turn_fails_too(self):
        call = self.open(PIN, "Enter PIN")
        waiting = self.host.call(PIN, thread="second")
        self.lose_display()
        self.assertEqual(FAILED, call.result())
        self.assertEqual(FAILED, waiting.result())
        self.expect_host_alive()

    def test_while_a_modeless_window_is_open_the_next_call_fails_and_the_host_lives(self):
        self.open("DLG_PinPadShowVerificationDialog", "PinPad").result()
        self.lose_display()
        self.expect_host_alive()

    def test_without_a_window_the_next_call_fails_and_the_host_lives(self):
        self.assertEqual(0, self.host.run("DLG_GetLocale", bufferCapacity=16))
        self.lose_display()
        self.expect_host_alive()

    def test_finalise_that_waits_for_a_dialog_returns(self):
        call = self.open(PIN, "Enter PIN")
        end = self.host.call("DLG_Finalize", thread="ender")
        self.lose_display()
        self.assertEqual(FAILED, call.result())
        end.result()
        self.assertEqual(0, self.host.quit())

    def test_a_host_that_exits_without_finalising_exits(self):
        self.open(PIN, "Enter PIN")
        self.lose_display()
        self.assertEqual(0, self.host.quit())


class BreakingDisplay(SlowDisplay):
    """A display whose connections break after the server has answered so many bytes."""

    def __init__(self, display):
        self._left = None
        self._lock = threading.Lock()
        self.holds = False
        super().__init__(display)
        self.let_through()

    def hold_back(self):
        self._go.clear()

    def break_after(self, count):
        with self._lock:
            self._left = count

    @property
    def broken(self):
        with self._lock:
            return self._left == 0

    def _pump(self, source, sink, gate):
        with contextlib.suppress(OSError):
            if gate is not None:
                self._pass_on_greeting(source, sink)
            while data := source.recv(4096):
                if gate is not None and not gate.is_set():
                    self.holds = True
                    gate.wait()
                with self._lock:
                    if gate is not None and self._left is not None:
                        data = data[:self._left]
                        self._left -= len(data)
                    breaks = self._left == 0
                sink.sendall(data)
                if breaks:
                    break
        for each in (source, sink):
            with contextlib.suppress(OSError):
                each.shutdown(socket.SHUT_RDWR)

    @staticmethod
    def _pass_on_greeting(source, sink):
        """Does not count: without it the display cannot be opened at all, which is no loss."""
        head = source.recv(8, socket.MSG_WAITALL)
        length = 4 * int.from_bytes(head[6:8], "little")
        sink.sendall(head + source.recv(length, socket.MSG_WAITALL))


def times_slept(pid):
    """How often the main thread of a process has slept."""
    with open(f"/proc/{pid}/task/{pid}/status", encoding="ascii") as status:
        return next(int(line.split()[1]) for line in status
                    if line.startswith("voluntary_ctxt_switches"))


@own_process_only("is about the connection of the host's process")
class LossOnTheWay(StageTestCase):
    """The connection breaks at some moment of a start, an end or an exit."""

    def start_host_on_a_wire(self):
        wire = BreakingDisplay(os.environ["DISPLAY"])
        self.addCleanup(wire.close)
        host = self.start_host(
            environment={"DISPLAY": wire.name, "ASAN_OPTIONS": "detect_leaks=0"}, strict=False)
        return host, wire

    def expect_host_alive(self, host):
        for _ in range(2):
            host.call("DLG_Finalize").result()
            self.assertEqual(FAILED, host.call("DLG_GetLocale", bufferCapacity=16).result())
        self.assertEqual(0, host.quit(), host.stderr())

    def test_during_an_exit_the_host_ends_with_its_own_status(self):
        host, wire = self.start_host_on_a_wire()
        self.assertEqual(1, host.run("DLG_PinPadShowVerificationDialog"))
        wire.hold_back()
        host.call(PIN)  # its thread waits for the display, and the exit for that thread
        wait_until(lambda: wire.holds, what="an answer that is held back")
        sleeps = times_slept(host.pid)
        codes = []
        ending = threading.Thread(target=lambda: codes.append(host.quit()), daemon=True)
        ending.start()
        wait_until(lambda: times_slept(host.pid) > sleeps + 20, what="an exit that waits")
        wire.break_after(0)
        wire.let_through()
        ending.join()
        self.assertEqual([0], codes, host.stderr())

    def test_during_a_start_calls_fail_and_finalise_returns(self):
        for count in (1, 500, 2000, 4000):
            host, wire = self.start_host_on_a_wire()
            wire.break_after(count)
            call = host.call("DLG_ShowPinDialog")
            wait_until(lambda: wire.broken or call.done, 20, "the loss")
            with self.subTest(count=count):
                self.assertEqual(FAILED, call.result(), host.stderr())
                self.expect_host_alive(host)

    def test_during_an_end_finalise_returns_and_calls_fail(self):
        for count in (1, 40, 100, 200):
            host, wire = self.start_host_on_a_wire()
            self.assertEqual(1, host.run("DLG_PinPadShowVerificationDialog"))
            wire.break_after(count)
            with self.subTest(count=count):
                host.call("DLG_Finalize").result()
                wire.close()
                # A break between two uses is found in the second.
                wait_until(lambda: host.call("DLG_GetLocale", bufferCapacity=16).result() == FAILED)
                self.expect_host_alive(host)


if __name__ == "__main__":
    unittest.main()
