#!/usr/bin/python3
"""The dialogs on Wayland: a compositor in a window of the stage's display, and no X for the host."""

import os
import subprocess
import unittest

from stage import CANCELLED, FAILED, OK, StageTestCase, wait_until
from stage.servers import dying_with_parent

SOCKET = "wayland-of-test"


class Wayland(StageTestCase):
    def setUp(self):
        super().setUp()
        self.compositor = subprocess.Popen(
            dying_with_parent(["weston", "--backend=x11-backend.so", f"--socket={SOCKET}",
                               "--idle-time=0", "--width=900", "--height=650"], "TERM"),
            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.addCleanup(self.compositor.wait)
        self.addCleanup(self.compositor.terminate)
        wait_until(self.compositor_is_ready, 20, "the compositor", seen=self.screen.x11.windows)
        # The toolkit that is left behind when the compositor goes is no leak.
        self.host = self.start_host(environment={"DISPLAY": None, "WAYLAND_DISPLAY": SOCKET,
                                                 "ASAN_OPTIONS": "detect_leaks=0"})

    def compositor_is_ready(self):
        path = os.path.join(os.environ["XDG_RUNTIME_DIR"], SOCKET)
        return os.path.exists(path) and any(
            self.screen.x11.holds_focus(number) for number, _, _ in self.screen.x11.windows())

    def windows(self, title):
        return self.screen.accessible_windows(self.host, title)

    def window(self, title):
        return wait_until(lambda: self.windows(title), 20, f"the window {title!r}")[0]

    def field(self, window):
        field = window.find("password text")
        wait_until(lambda: field.focused, 20, "the keyboard focus", seen=window.dump)
        return field

    def test_a_typed_pin_is_delivered(self):
        call = self.host.call("DLG_ShowPinDialog")
        window = self.window("Enter PIN")
        field = self.field(window)
        self.screen.x11.type_text("2468")
        wait_until(lambda: field.length == 4, what="the typed characters")
        wait_until(lambda: window.find("push button", "OK").enabled, what="the OK button")
        self.screen.x11.key("Return")
        self.assertEqual(OK, call.result())
        self.assertEqual(b"2468", call.value("pin"))

    def test_escape_cancels(self):
        call = self.host.call("DLG_ShowPinDialog")
        self.field(self.window("Enter PIN"))
        self.screen.x11.key("Escape")
        self.assertEqual(CANCELLED, call.result())

    def test_a_modeless_window_comes_and_goes(self):
        self.assertEqual(OK, self.host.run("DLG_ShowKeyGenerationProgressDialog"))
        title = "Generating key-pair"
        self.window(title)
        self.assertEqual(OK, self.host.run("DLG_HideKeyGenerationProgressDialog"))
        wait_until(lambda: not self.windows(title), what="the end of the window")

    def expect_host_outlives_compositor(self, call=None):
        """A call that is open and every later one fail; the host ends as it wants to."""
        self.compositor.kill()
        if call is not None:
            self.assertEqual(FAILED, call.result())
            self.assertTrue(call.untouched("pin"))
        for _ in range(2):
            self.assertEqual(FAILED, self.host.run("DLG_ShowPinDialog"))
        self.host.run("DLG_Finalize")
        self.assertEqual(FAILED, self.host.run("DLG_ShowPinDialog"))
        self.assertEqual(0, self.host.quit(), self.host.stderr())
        self.assertIn("the connection to the display is lost", self.host.stderr())

    def test_a_host_with_an_open_dialog_outlives_the_compositor(self):
        call = self.host.call("DLG_ShowPinDialog")
        self.field(self.window("Enter PIN"))
        self.expect_host_outlives_compositor(call)

    def test_a_host_with_a_modeless_window_outlives_the_compositor(self):
        self.host.run("DLG_ShowKeyGenerationProgressDialog")
        self.window("Generating key-pair")
        self.expect_host_outlives_compositor()

    def test_an_idle_host_outlives_the_compositor(self):
        call = self.host.call("DLG_ShowPinDialog")
        self.field(self.window("Enter PIN"))
        self.screen.x11.key("Escape")
        self.assertEqual(CANCELLED, call.result())
        self.expect_host_outlives_compositor()


if __name__ == "__main__":
    unittest.main()
