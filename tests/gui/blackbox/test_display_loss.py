#!/usr/bin/python3
"""A host outlives the display that its dialogs stand on."""

import os
import signal
import unittest

from stage import FAILED, Screen, Stage, StageTestCase

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
        os.kill(self.stage.servers["Xvfb"].pid, signal.SIGKILL)

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
        self.assertIn("the connection to the display is lost", self.host.stderr())

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


if __name__ == "__main__":
    unittest.main()
