#!/usr/bin/python3
"""Where the keys go when dialogs open beside a program that is being typed into."""

import contextlib
import unittest

from other_program import Editor
from stage import CANCELLED, OK, StageTestCase, wait_until

PIN = "DLG_ShowPinDialog"
PIN_TITLE = "Enter PIN"


class Keyboard(StageTestCase):
    def setUp(self):
        super().setUp()
        self.editor = Editor()
        self.addCleanup(self.editor.close)
        self.host = self.start_host()

    def type(self, text):
        self.screen.x11.type_text(text)

    def show(self, export, title, **arguments):
        """Not that of the stage: without a window manager X does not tell which windows it has."""
        call = self.host.call(export, **arguments)
        window = wait_until(lambda: self.screen.accessible_windows(self.host, title), 20,
                            f"the window {title!r}")[0]
        return call, window

    def show_pad(self):
        self.show("DLG_PinPadShowVerificationDialog", "PinPad", pad="pad", allowAbort=1)

    def pass_a_dialog(self):
        """Types elsewhere, then a PIN: all of it has to arrive in the dialog."""
        self.editor.type_into(self.type)
        call, window = self.show(PIN, PIN_TITLE)
        field = window.find("password text")
        with contextlib.suppress(AssertionError):  # what counts is where the keys arrive
            wait_until(lambda: field.focused and window.active and not self.editor.active)
        self.type("4321\n")
        with contextlib.suppress(AssertionError):
            wait_until(lambda: call.done or self.editor.keys)
        self.assertEqual([], self.editor.keys, "arrived in the other program")
        self.assertEqual(OK, call.result())
        self.assertEqual(b"4321", call.value("pin"))

    def test_every_later_dialog_of_a_process_gets_what_is_typed(self):
        for _ in range(3):
            self.pass_a_dialog()
        self.editor.type_into(self.type)

    def test_a_dialog_after_a_pad_gets_what_is_typed(self):
        self.show_pad()
        self.host.run("DLG_PinPadHideDialog", pad="pad")
        self.pass_a_dialog()

    def test_a_dialog_beside_a_pad_gets_what_is_typed(self):
        self.show_pad()
        self.pass_a_dialog()

    def test_the_user_goes_on_typing_when_a_pad_opens(self):
        self.editor.type_into(self.type)
        self.show_pad()
        self.type("a b")
        wait_until(lambda: len(self.editor.keys) == 3, 5, "the keys in the other program",
                   seen=lambda: self.editor.keys)
        self.assertEqual(["a", "space", "b"], self.editor.keys)
        self.assertEqual(0, self.host.run("DLG_PinPadKeyboardInputShouldAbort", pad="pad"))

    def test_the_keyboard_goes_back_when_a_dialog_is_cancelled(self):
        self.editor.type_into(self.type)
        call, window = self.show(PIN, PIN_TITLE)
        wait_until(lambda: window.active and not self.editor.active, what="the keyboard")
        self.screen.x11.key("Escape")
        self.assertEqual(CANCELLED, call.result())
        self.editor.type_into(self.type)


if __name__ == "__main__":
    unittest.main()
