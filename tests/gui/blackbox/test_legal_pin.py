#!/usr/bin/python3
"""The PIN dialog of a legally binding signature as a user and a host see it.

What it has in common with the ordinary PIN dialog is tested with that one; here is what it adds,
and that the common parts are there.
"""

import unittest

from stage import CANCELLED, OK
from test_pin_entry import EARLIER, INCORRECT, LAST, MAXIMUM, MAY_LOCK, MINIMUM, PinDialogCase

LEGAL = "DLG_ShowLegalPinDialog"
LEGAL_EX = "DLG_ShowLegalPinDialogEx"
NOTICE = "You are about to create a legally binding digital signature!"


class LegalPinCase(PinDialogCase):
    def open(self, export=LEGAL, **arguments):
        return super().open(export, **arguments)

    @property
    def ok(self):
        return self.window.find("push button", "Sign")

    def picture(self):
        """Screen readers pass it over."""
        return self.window.find("redundant object")

    def notice(self):
        return next(label for label in self.window.find_all("label")
                    if label.name.replace("\n", " ") == NOTICE)


class Layout(LegalPinCase):
    def test_the_controls_stand_in_their_order(self):
        self.open(label="My card", noFailure=0)
        texts = [text.replace("\n", " ") for text in self.window.texts()]
        self.assertEqual(
            [NOTICE, 'To log in to "My card"', INCORRECT, MAY_LOCK, "Enter PIN:", "Sign",
             "Cancel", MINIMUM.format(4), MAXIMUM.format(8)], texts)
        self.cancel()

    def test_the_picture_stands_above_the_notice(self):
        self.open()
        _, top, width, height = self.picture().extents
        self.assertEqual((300, 248), (width, height))
        self.assertLessEqual(top + height, self.notice().extents[1])
        self.assertGreater(len(set(self.screen.pixels(self.picture()))), 100, "colours")
        self.cancel()

    def test_the_picture_stands_on_the_themes_ground(self):
        grounds = set()
        for theme in ("Adwaita", "Adwaita:dark"):
            self.host = self.start_host(environment={"GTK_THEME": theme})
            self.open()
            pixels = self.screen.pixels(self.picture())
            beside = self.screen.pixels(self.window.find("label", "Enter PIN:"))[0]
            for corner in (0, 299, 300 * 247, 300 * 248 - 1):
                self.assertEqual(beside, pixels[corner])
            grounds.add(beside)
            self.cancel()
        self.assertEqual(2, len(grounds))

    def test_the_notice_and_the_sign_button_are_bold(self):
        self.open()
        self.type("123456")
        self.expect_ok(True)
        # Bold strokes leave more ink than those of another text of the same font.
        for bold, regular in ((self.notice(), self.window.find("label", MINIMUM.format(4))),
                              (self.ok, self.window.find("push button", "Cancel"))):
            with self.subTest(bold.name):
                self.assertGreater(self.ink(bold), 1.25 * self.ink(regular))
        self.cancel()

    def ink(self, node):
        """Pixels of the text's colour for each letter: dark, on the button that stands out white."""
        white = node == self.ok
        pixels = [pixel for pixel in self.screen.pixels(node)
                  if max(pixel) < 110 or white and min(pixel) > 200]
        return len(pixels) / len(node.name)

    def test_tab_goes_from_the_field_to_sign_to_cancel_and_back(self):
        self.open()
        self.type("1234")
        self.expect_ok(True)
        for name, role in (("Sign", "push button"), ("Cancel", "push button"),
                           ("Enter PIN", "password text")):
            self.screen.key("Tab")
            self.screen.wait_focused(self.window.find(role, name))
        self.cancel()

    def test_a_long_label_stays_on_the_screen(self):
        self.open(label="Card " + "X" * 295, noFailure=0)
        x, y, width, height = self.window.extents
        self.assertLessEqual(width, 620)
        self.assertTrue(0 <= x and x + width <= 1024 and 0 <= y and y + height <= 768)
        self.cancel()


class Signing(LegalPinCase):
    def test_sign_is_enabled_exactly_between_the_limits(self):
        self.open(min=4, max=8)
        self.expect_rules(False, True)
        self.expect_ok(False)
        self.type("123")
        self.expect_ok(False)
        self.type("4")
        self.expect_rules(True, True)
        self.expect_ok(True)
        self.type("5678")
        self.expect_ok(True)
        self.type("9")
        self.expect_rules(True, False)
        self.expect_ok(False)
        self.cancel()

    def test_sign_confirms_and_the_pin_is_written_in_utf8(self):
        for export in (LEGAL, LEGAL_EX):
            self.open(export)
            self.type("p\u00efn\u20ac")
            self.expect_ok(True)
            self.ok.press()
            self.assertEqual(OK, self.call.result())
            self.assertEqual("p\u00efn\u20ac".encode(), self.call.value("pin"))

    def test_enter_and_the_letter_of_sign_confirm(self):
        for keys in ("Return", "alt+s"):
            self.open()
            self.type("12345")
            self.expect_ok(True)
            self.screen.key(keys)
            self.assertEqual(OK, self.call.result())
            self.assertEqual(b"12345", self.call.value("pin"))

    def test_a_buffer_that_is_too_small_counts_as_cancelled(self):
        for export in (LEGAL, LEGAL_EX):
            self.open(export, pinCapacity=3)
            self.type("1234")
            self.screen.key("Return")
            self.assertEqual(CANCELLED, self.call.result())
            self.assertTrue(self.call.untouched("pin"))
            self.assertEqual(3, self.call.output("pinLength"))

    def test_cancel_and_the_close_box_leave_the_buffer_alone(self):
        for end in (lambda: self.window.find("push button", "Cancel").press(),
                    lambda: self.screen.close_window(self.window)):
            self.open(pinCapacity=32)
            self.type("1234")
            end()
            self.assertEqual(CANCELLED, self.call.result())
            self.assertTrue(self.call.untouched("pin"))
            self.assertEqual(32, self.call.output("pinLength"))


class Warnings(LegalPinCase):
    def test_the_last_try_is_told_in_red_under_the_notice(self):
        self.open(LEGAL_EX, maxTries=3, triesLeft=1)
        self.assertEqual([INCORRECT, LAST], self.warnings())
        self.assertGreater(self.window.find("label", LAST).extents[1],
                           self.notice().extents[1] + self.notice().extents[3])
        self.cancel()

    def test_both_forms_have_the_warnings_of_the_pin_dialog(self):
        tries = f"{MAY_LOCK} You have 2 tries remaining"
        for export, arguments, expected in (
                (LEGAL, {}, []), (LEGAL, {"finalTry": 1, "failedEarlier": 1}, [EARLIER, LAST]),
                (LEGAL_EX, {"maxTries": 3, "triesLeft": 3}, []),
                (LEGAL_EX, {"maxTries": 3, "triesLeft": 2}, [INCORRECT, tries])):
            with self.subTest(export, **arguments):
                self.open(export, **arguments)
                self.assertEqual(expected, self.warnings())
                self.cancel()


if __name__ == "__main__":
    unittest.main()
