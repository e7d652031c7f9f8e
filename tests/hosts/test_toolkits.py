#!/usr/bin/python3
"""Programs with a window of their own, whose main thread runs a toolkit, and whose other threads
call the library: their dialogs come, and their own windows go on.
"""

import time
import unittest

from evidence import photograph, process_of, record
from stage import OK, StageTestCase, wait_until

PIN = "DLG_ShowPinDialog"
TITLE = "Enter PIN"
OWN_TITLE = "Host window"
SEEN_FRAMES = 10
# Of the toolkits, for a display without accelerators.
ENVIRONMENT = {"GSK_RENDERER": "cairo", "LIBGL_ALWAYS_SOFTWARE": "1"}


class Toolkit:
    """The tests of every toolkit; its host runs none at first."""

    name = ""
    toolkit = ""
    # Which process shows the windows before the toolkit's first start, and after its end.
    before = "own"
    after = "helper"

    def setUp(self):
        super().setUp()
        self.host = self.start_host(toolkit=self.toolkit, environment=ENVIRONMENT)
        self.own_window = None

    def start_toolkit(self):
        self.assertTrue(self.host.command("toolkit start")["started"])
        self.own_window = wait_until(
            lambda: next((number for number, owner, title in self.screen.x11.windows()
                          if (owner, title) == (self.host.pid, OWN_TITLE)), None),
            what="the host's own window", seen=self.screen.x11.windows)
        self.assert_goes_on()

    def stop_toolkit(self):
        self.host.command("toolkit stop")
        wait_until(lambda: OWN_TITLE not in self.screen.titles(self.host), what="no window")
        self.own_window = None

    def seen(self):
        """A strip of what is painted in the host's own window: a dialog may cover a part."""
        x, y, width, height = self.screen.x11.geometry(self.own_window)
        return self.screen.x11.bytes((x, y + height - 24, width, 2))

    def assert_goes_on(self):
        """That the host's own window is painted, again and again, and is seen to be; how often a
        second.
        """
        began, frames = time.monotonic(), self.host.frames()
        wait_until(lambda: self.host.frames() >= frames + SEEN_FRAMES,
                   what="frames of the host's own window")
        rate = SEEN_FRAMES / (time.monotonic() - began)
        before = self.seen()
        wait_until(lambda: self.seen() != before, what="another colour in the host's window")
        return rate

    def enter_pin(self, process="helper", what=""):
        """Types a PIN into a dialog, which is shown by that process, while the host's own window,
        where it has one, goes on; `what` says of which situation that tells.
        """
        before = self.assert_goes_on() if self.own_window else None
        call, window = self.show(self.host, PIN, TITLE)
        field = window.find("password text")
        self.screen.wait_focused(field)
        self.assertTrue(self.screen.x11.holds_focus(self.screen.x11_window(window)))
        self.assertEqual(process, process_of(self.screen, window, self.host))
        frames = self.assert_goes_on() if self.own_window else None
        if what:
            record(f"{self.name}, {what}", process, before=before, frames=frames)
        if self.own_window:
            photograph(self.screen, self.toolkit, self.own_window, self.screen.x11_window(window))
        self.screen.type_text("2468", field)
        wait_until(lambda: window.find("push button", "OK").enabled, what="OK")
        self.screen.key("Return")
        self.assertEqual(OK, call.result())
        self.assertEqual(b"2468", call.value("pin"))
        self.screen.wait_gone(window)

    def test_a_pin_is_asked_for_while_its_own_window_goes_on(self):
        self.start_toolkit()
        self.enter_pin(what="while its loop runs")
        wait_until(lambda: self.screen.x11.holds_focus(self.own_window),
                   what="the keyboard back in the host's own window")
        self.assert_goes_on()
        self.enter_pin()

    def test_pads_are_told_what_to_show_while_its_own_window_goes_on(self):
        self.start_toolkit()
        pads = []
        for export in ("DLG_PinPadShowVerificationDialog", "DLG_PinPadShowModificationDialog"):
            call = self.host.call(export, allowAbort=1)
            self.assertEqual(1, call.result())
            pads.append({"handle": call.number("handle")})
        wait_until(lambda: self.screen.titles(self.host).count("PinPad") == 2, what="two pads")
        for pad in pads:
            for _ in range(4):
                self.host.run("DLG_PinPadKeyboardInputAddChar", **pad)
            self.assertEqual(0, self.host.run("DLG_PinPadKeyboardInputShouldAbort", **pad))
        self.assert_goes_on()
        for pad in pads:
            self.host.run("DLG_PinPadHideDialog", **pad)
        wait_until(lambda: "PinPad" not in self.screen.titles(self.host), what="no pad")
        self.assert_goes_on()

    def test_a_key_is_generated_while_its_own_window_goes_on(self):
        self.start_toolkit()
        self.assertEqual(OK, self.host.run("DLG_ShowKeyGenerationProgressDialog"))
        window = self.screen.find_window("Generating key-pair", self.host)
        picture = self.screen.pixels(window)
        wait_until(lambda: self.screen.pixels(window) != picture, what="progress")
        self.assert_goes_on()
        self.assertEqual(OK, self.host.run("DLG_HideKeyGenerationProgressDialog"))
        self.screen.wait_gone(window)
        self.assert_goes_on()

    def test_its_loop_starts_after_the_first_call(self):
        self.enter_pin(self.before)
        self.start_toolkit()
        self.enter_pin(what="which starts its loop after the first call")
        self.host.run("DLG_Finalize")
        self.assert_goes_on()
        self.enter_pin()

    def test_its_loop_ends_before_the_first_call(self):
        self.start_toolkit()
        self.stop_toolkit()
        self.enter_pin(self.after, "whose loop has ended before the first call")
        self.host.run("DLG_Finalize")
        self.enter_pin(self.after)


class Gtk3(Toolkit, StageTestCase):
    name, toolkit = "GTK 3", "gtk3"


class Gtk4(Toolkit, StageTestCase):
    # GTK 3 cannot be in one process with it.
    name, toolkit, before = "GTK 4", "gtk4", "helper"


class Qt5(Toolkit, StageTestCase):
    name, toolkit, after = "Qt 5", "qt5", "own"


class Qt6(Toolkit, StageTestCase):
    name, toolkit, after = "Qt 6", "qt6", "own"


class Wx(Toolkit, StageTestCase):
    # There is one instance in a process.
    name, toolkit, before = "wxWidgets", "wx", "helper"


if __name__ == "__main__":
    unittest.main()
