#!/usr/bin/python3
"""The PIN dialog as a user and a host see it."""

import unittest

from stage import CANCELLED, FAILED, OK, StageTestCase, wait_until

PIN = "DLG_ShowPinDialog"
PIN_EX = "DLG_ShowPinDialogEx"
TITLE = "Enter PIN"

MINIMUM = "Minimum PIN length {} bytes"
MAXIMUM = "Maximum PIN length {} bytes"
INCORRECT = "PIN incorrect"
EARLIER = "The PIN has previously been entered incorrectly"
LAST = "WARNING: You have only 1 attempt left!"
MAY_LOCK = "WARNING: Repeated login failures may lock the token!"
RED = (224, 0, 0)  # a shade of pure red that can be read on a banner


class PinDialogCase(StageTestCase):
    def setUp(self):
        super().setUp()
        self.host = self.start_host()

    def open(self, export=PIN, **arguments):
        self.call, self.window = self.show(self.host, export, TITLE, **arguments)
        self.field = self.window.find("password text")
        self.screen.wait_focused(self.field)
        return self.window

    @property
    def ok(self):
        return self.window.find("push button", "OK")

    def icons(self):
        return [node.name for node in self.window.find_all("icon")]

    def expect_rules(self, minimum_met, maximum_met, minimum=4, maximum=8):
        expected = [("Met: " if met else "Not met: ") + rule
                    for met, rule in ((minimum_met, MINIMUM.format(minimum)),
                                      (maximum_met, MAXIMUM.format(maximum)))]
        wait_until(lambda: self.icons() == expected, what=f"the rule icons {expected}",
                   seen=self.icons)

    def expect_ok(self, enabled):
        wait_until(lambda: self.ok.enabled == enabled, what=f"OK enabled: {enabled}",
                   seen=self.window.dump)

    def type(self, text):
        length = self.field.length
        self.screen.type_text(text, self.field)
        wait_until(lambda: self.field.length == length + len(text), what="the typed characters")

    def cancel(self):
        self.screen.key("Escape")
        self.assertEqual(CANCELLED, self.call.result())

    def heading(self):
        return self.window.labels()[0]

    def warnings(self):
        """The red lines, without the line breaks that wrapping put in."""
        return [" ".join(label.name.split()) for label in self.window.find_all("label")
                if RED in self.screen.pixels(label)]


class Layout(PinDialogCase):
    def test_the_controls_stand_in_their_order(self):
        self.open(label="My card", noFailure=0)
        self.assertEqual(
            ['To log in to "My card"', INCORRECT, MAY_LOCK, "Enter PIN:", "OK", "Cancel",
             MINIMUM.format(4), MAXIMUM.format(8)], self.window.texts())
        self.cancel()

    def test_the_field_has_the_focus_a_name_and_a_mask(self):
        self.open()
        self.assertEqual("Enter PIN", self.field.name)
        self.type("1234")
        self.assertNotIn("1", self.field.text)
        self.assertEqual(4, len(self.field.text))
        self.cancel()

    def test_tab_goes_from_the_field_to_ok_to_cancel_and_back(self):
        self.open()
        self.type("1234")
        self.expect_ok(True)
        for name, role in (("OK", "push button"), ("Cancel", "push button"),
                           ("Enter PIN", "password text")):
            self.screen.key("Tab")
            self.screen.wait_focused(self.window.find(role, name))
        self.cancel()

    def test_an_ampersand_in_a_label_is_an_ampersand(self):
        self.open(label="Smith & Sons &OK")
        self.assertIn('To log in to "Smith & Sons &OK"', self.window.labels())
        self.cancel()

    def test_a_label_that_is_not_utf8_shows_its_bad_bytes(self):
        self.open(label=b"M\xfcller")
        self.assertIn('To log in to "M\ufffdller"', self.window.labels())
        self.cancel()

    def test_a_long_label_is_wrapped_and_stays_on_the_screen(self):
        self.open(label="Card " + "X" * 295)
        self.assertEqual('Tologinto"Card' + "X" * 295 + '"', "".join(self.heading().split()))
        x, y, width, height = self.window.extents
        self.assertLessEqual(width, 500)
        self.assertTrue(0 <= x and x + width <= 1024 and 0 <= y and y + height <= 768)
        self.cancel()

    def test_a_label_of_many_lines_leaves_all_else_on_the_screen(self):
        for label in ("A\n" * 200, "\U0001f511" * 600, "W" * 600):
            self.open(PIN_EX, label=label, maxTries=3, triesLeft=2)
            shown = f'To log in to "{label}"'[:499]
            self.assertEqual("".join(shown.split()), "".join(self.heading().split()))
            x, y, width, height = self.window.extents
            self.assertTrue(0 <= x and x + width <= 1024 and 0 <= y and y + height < 768)
            self.cancel()

    def test_a_label_beyond_the_limit_is_cut_there(self):
        self.open(label="x" * 600)
        self.assertEqual('Tologinto"' + "x" * (499 - len('To log in to "')),
                         "".join(self.heading().split()))
        self.cancel()


class LengthRules(PinDialogCase):
    def test_minimum_4_maximum_8(self):
        self.open(min=4, max=8)
        self.expect_rules(False, True)
        self.expect_ok(False)
        self.type("123")
        self.expect_rules(False, True)
        self.expect_ok(False)
        self.type("4")
        self.expect_rules(True, True)
        self.expect_ok(True)
        self.type("56789")
        self.expect_rules(True, False)
        self.expect_ok(False)
        self.screen.key("BackSpace")
        self.expect_rules(True, True)
        self.expect_ok(True)
        self.cancel()

    def test_with_minimum_0_ok_is_disabled_until_the_first_change(self):
        self.open(min=0, max=8)
        self.expect_rules(False, True, minimum=0)
        self.expect_ok(False)
        self.type("1")
        self.expect_rules(True, True, minimum=0)
        self.expect_ok(True)
        self.screen.key("BackSpace")
        wait_until(lambda: self.field.length == 0)
        self.expect_ok(True)
        self.screen.key("Return")
        self.assertEqual(OK, self.call.result())
        self.assertEqual(b"", self.call.value("pin"))

    def test_enter_does_nothing_while_ok_is_disabled(self):
        self.open()
        self.type("123")
        self.screen.key("Return")
        self.type("4")
        self.assertFalse(self.call.done)
        self.screen.key("Return")
        self.assertEqual(OK, self.call.result())

    def test_lengths_are_counted_in_characters(self):
        self.open(min=4, max=8)
        self.type("\u00e9\u00e9\u00e9\u00e9\u00e9\u00e9\u00e9\u00e9")
        self.expect_rules(True, True)
        self.expect_ok(True)
        self.cancel()


class Delivery(PinDialogCase):
    def test_the_typed_pin_reaches_the_host(self):
        self.open()
        self.type("12345")
        self.expect_ok(True)
        self.ok.press()
        self.assertEqual(OK, self.call.result())
        self.assertEqual(b"12345", self.call.value("pin"))

    def test_of_a_paste_the_first_line_that_is_not_empty_goes_in(self):
        for text in ("1234\n", "1234\r\n", "1234\n5678\n", "\n1234", "\r\n1234\r\n5678"):
            with self.subTest(text):
                self.open()
                self.screen.paste(text, self.field)
                wait_until(lambda: self.field.length > 0, what="the pasted characters")
                self.expect_ok(True)
                self.screen.key("Return")
                self.assertEqual(OK, self.call.result())
                self.assertEqual(b"1234", self.call.value("pin"))

    def test_a_paste_of_line_breaks_only_leaves_what_is_selected(self):
        self.open()
        self.type("1234")
        self.screen.key("ctrl+a", self.field)
        self.screen.paste("\n\r\n", self.field)
        self.screen.key("End")
        self.type("5")
        self.expect_ok(True)
        self.screen.key("Return")
        self.assertEqual(OK, self.call.result())
        self.assertEqual(b"12345", self.call.value("pin"))

    def test_the_extended_form_delivers_too(self):
        self.open(PIN_EX, maxTries=3, triesLeft=2)
        self.type("98765")
        self.screen.key("Return")
        self.assertEqual(OK, self.call.result())
        self.assertEqual(b"98765", self.call.value("pin"))

    def test_eight_two_byte_characters_need_sixteen_bytes(self):
        pin = "\u00e4\u00f6\u00fc\u00df\u00e9\u00e8\u00e0\u00f1"
        for capacity, result in ((16, OK), (15, CANCELLED)):
            self.open(min=4, max=8, pinCapacity=capacity)
            self.type(pin)
            self.expect_ok(True)
            self.screen.key("Return")
            self.assertEqual(result, self.call.result())
            if result == OK:
                self.assertEqual(pin.encode(), self.call.value("pin"))
            else:
                self.assertTrue(self.call.untouched("pin"))
                self.assertEqual(15, self.call.output("pinLength"))

    def test_a_pin_of_exactly_the_capacity_fits(self):
        self.open(pinCapacity=4)
        self.type("1234")
        self.screen.key("Return")
        self.assertEqual(OK, self.call.result())
        self.assertEqual(b"1234", self.call.value("pin"))

    def test_a_buffer_one_byte_too_small_is_left_alone_and_counts_as_cancelled(self):
        for export in (PIN, PIN_EX):
            self.open(export, pinCapacity=3)
            self.type("1234")
            self.screen.key("Return")
            self.assertEqual(CANCELLED, self.call.result())
            self.assertTrue(self.call.untouched("pin"))
            self.assertEqual(3, self.call.output("pinLength"))

    def test_a_null_buffer_with_a_capacity_fits_nothing(self):
        self.open(pin=None, pinCapacity=16)
        self.type("1234")
        self.screen.key("Return")
        self.assertEqual(CANCELLED, self.call.result())
        self.assertEqual(16, self.call.output("pinLength"))

    def test_cancel_leaves_the_length_as_it_was(self):
        self.open(pinCapacity=32)
        self.type("1234")
        self.window.find("push button", "Cancel").press()
        self.assertEqual(CANCELLED, self.call.result())
        self.assertEqual(32, self.call.output("pinLength"))
        self.assertTrue(self.call.untouched("pin"))

    def test_the_close_box_leaves_the_length_as_it_was(self):
        self.open(pinCapacity=32)
        self.type("1234")
        self.screen.close_window(self.window)
        self.assertEqual(CANCELLED, self.call.result())
        self.assertEqual(32, self.call.output("pinLength"))
        self.assertTrue(self.call.untouched("pin"))


class Warnings(PinDialogCase):
    def test_ordinary_form(self):
        # noFailure, finalTry, failedEarlier
        for flags, expected in (((1, 0, 0), []), ((1, 0, 1), []),
                                ((1, 1, 0), [INCORRECT, LAST]), ((1, 1, 1), [EARLIER, LAST]),
                                ((0, 0, 0), [INCORRECT, MAY_LOCK]),
                                ((0, 0, 1), [EARLIER, MAY_LOCK]),
                                ((0, 1, 0), [INCORRECT, LAST]), ((0, 1, 1), [EARLIER, LAST]),
                                ((7, 9, 200), [EARLIER, LAST])):
            with self.subTest(flags=flags):
                self.open(noFailure=flags[0], finalTry=flags[1], failedEarlier=flags[2])
                self.assertEqual(expected, self.warnings())
                self.cancel()

    def test_extended_form(self):
        def tries(count):
            return f"{MAY_LOCK} You have {count} tries remaining"
        # maxTries, triesLeft, failedEarlier
        for values, expected in (((3, 3, 0), []), ((3, 3, 1), []),
                                 ((3, 2, 0), [INCORRECT, tries(2)]),
                                 ((3, 2, 1), [EARLIER, tries(2)]),
                                 ((3, 1, 0), [INCORRECT, LAST]), ((3, 1, 1), [EARLIER, LAST]),
                                 ((1, 1, 0), [INCORRECT, LAST]), ((0, 0, 0), []),
                                 ((3, 0, 0), [INCORRECT, tries(0)]),
                                 ((3, 15, 1), [EARLIER, tries(15)])):
            with self.subTest(values=values):
                self.open(PIN_EX, maxTries=values[0], triesLeft=values[1],
                          failedEarlier=values[2])
                self.assertEqual(expected, self.warnings())
                self.cancel()

    def test_the_tries_stand_on_a_line_of_their_own(self):
        self.open(PIN_EX, maxTries=3, triesLeft=2)
        self.window.find("label", f"{MAY_LOCK}\nYou have 2 tries remaining")
        self.cancel()


class BadArguments(PinDialogCase):
    def test_nothing_is_shown_for_a_null_record_output_or_label(self):
        for export in (PIN, PIN_EX):
            for arguments in ({"record": None}, {"out": None}, {"label": None}):
                with self.subTest(export=export, **arguments):
                    call = self.host.call(export, **arguments)
                    self.assertEqual(FAILED, call.result())
                    self.assertTrue(call.untouched("pin"))
        self.assertEqual([], self.screen.titles(self.host))

    def test_the_library_goes_on_after_a_failed_call(self):
        self.assertEqual(FAILED, self.host.run(PIN, label=None))
        self.open()
        self.cancel()


class Neighbours(PinDialogCase):
    def test_a_press_on_the_dialogs_surface_changes_nothing(self):
        self.open()
        self.type("12")
        x, y, width, height = self.window.extents
        for button in (1, 2, 3):
            self.screen.x11.click(x + width - 8, y + height - 8, button)
        self.type("34")
        self.screen.key("Return")
        self.assertEqual(OK, self.call.result())
        self.assertEqual(b"1234", self.call.value("pin"))


if __name__ == "__main__":
    unittest.main()
