#!/usr/bin/python3
"""The message boxes as a user and a host see them: every box that a host can reach."""

import time
import unittest

from stage import CANCELLED, OK, Events, StageTestCase, own_process_only, registry, wait_until

LOCKED = "DLG_ShowLockedDialog"
BIOMETRIC = "DLG_ShowSupertokenError"
AUTHENTICATION = "DLG_AuthFailRetryDialog"
ENROLMENT = "DLG_EnrolFailRetryDialog"
PUK_LOCKED = "DLG_ShowPUKIsLocked"
UNLOCK = "DLG_ShowUnlockTokenDialog"

AGAIN = "\n\nWould you like to try again?"
NO_ANSWER = 1  # of the three exports of the biometric token
SCREEN = (1024, 768)


def timeout(value):
    return registry(("Biometrics", "Automatic retry timeout", value))


class BoxCase(StageTestCase):
    timeout = None  # the setting

    def setUp(self):
        super().setUp()
        self.host = self.start_host(
            registry=None if self.timeout is None else timeout(self.timeout))

    def open(self, export, title, **arguments):
        self.call, self.window = self.show(self.host, export, title, **arguments)
        return self.window

    def text(self):
        return self.window.find("label").name

    def buttons(self):
        return [node.name for node in self.window.in_reading_order()
                if node.role == "push button"]

    def icon(self):
        return self.window.find("icon").name

    def expect(self, text, icon, *buttons):
        """The box's content; its first button is the default and has the keyboard."""
        self.assertEqual(text, self.text())
        self.assertEqual(icon, self.icon())
        self.assertEqual(list(buttons), self.buttons())
        focused = self.screen.wait_focused()
        self.assertEqual(buttons[0], focused.name)
        self.assertEqual([buttons[0]], [node.name for node in self.window.find_all("push button")
                                        if "default" in node.states])

    def end(self, result, key="Return"):
        self.screen.key(key)
        self.assertEqual(result, self.call.result())
        self.screen.wait_gone(self.window)


class Boxes(BoxCase):
    def test_token_locked(self):
        self.open(LOCKED, "Token locked", label="My card")
        self.expect('The token "My card" is locked.\nPlease use the token manager to unlock it,\n'
                    "or contact your system administrator.", "Error", "OK")
        self.end(OK)

    def test_authentication_retry(self):
        self.open(AUTHENTICATION, "Authentication failed")
        self.expect("Authentication to the Lumora Bio Token failed!\nWould you like to try again?",
                    "Error", "Yes", "No")
        self.end(NO_ANSWER)

    def test_enrolment_retry(self):
        self.open(ENROLMENT, "Enrolment failed")
        self.expect("Enrolment of (new) fingerprint(s) on the Lumora Bio Token failed!\n"
                    "Would you like to try again?", "Error", "Yes", "No")
        self.end(NO_ANSWER)

    def test_labels_are_shown_literally(self):
        for label in ("Smith & Sons && _Co", "<b>bold</b> &amp;", "100%s %d\tx",
                      "M\u00fcller \U0001f511", ""):
            with self.subTest(label=label):
                self.open(LOCKED, "Token locked", label=label)
                self.assertEqual(f'The token "{label}" is locked.', self.text().split("\n")[0])
                self.end(OK)

    def test_a_label_that_is_not_utf8_shows_its_bad_bytes(self):
        self.open(LOCKED, "Token locked", label=b"M\xfcller")
        self.assertIn('"M\ufffdller"', self.text())
        self.end(OK)

    def test_a_long_label_is_cut_with_its_sentence(self):
        self.open(LOCKED, "Token locked", label="x" * 600)
        self.assertEqual('The token "' + "x" * (499 - len('The token "')), self.text())
        self.end(OK)


class BiometricErrors(BoxCase):
    def expect_question(self, code, text):
        self.open(BIOMETRIC, "Error", number=code)
        self.expect(text + AGAIN, "Error", "Yes", "No")
        self.end(NO_ANSWER)

    def expect_error(self, code, text):
        self.open(BIOMETRIC, "Error", number=code)
        self.expect(text, "Error", "OK")
        self.end(NO_ANSWER)

    def test_63c0_is_blocked_without_a_question(self):
        self.expect_error(0x63C0, "Verification failed!\nThe authentication method is now blocked!")

    def test_63c1_has_one_final_try(self):
        self.expect_question(0x63C1, "Verification failed!\nYou have only 1 final try remaining!")

    def test_63c5_has_five_tries(self):
        self.expect_question(0x63C5, "Verification failed!\nYou have 5 tries remaining")

    def test_6400_is_a_device_error(self):
        self.expect_question(0x6400, "Device error (0x6400)")

    def test_a71c_is_a_device_error(self):
        self.expect_question(0xA71C, "Device error (0xA71C)")

    def test_codes_of_the_token_and_of_cards(self):
        self.expect_question(0xA712, "The sweep was too slow")
        self.expect_error(0xA716, "The sensor is broken: too many defect lines on sensor")
        self.expect_error(0x6983, "The authentication method is blocked")
        self.expect_error(0x6A82, "Cannot verify, no fingerprint enrolled (0x6A82)")

    def test_a_code_of_64_bits_is_not_mistaken_for_its_lower_half(self):
        self.expect_question(1 << 32 | 0x6983, "Device error (0x6983)")


class Ends(BoxCase):
    """However a box ends, the host hears the same; only the way out differs."""

    def test_every_way_out_of_a_question(self):
        for way in (lambda: self.window.find("push button", "Yes").press(),
                    lambda: self.window.find("push button", "No").click(),
                    lambda: self.screen.key("Return"), lambda: self.screen.key("Escape"),
                    lambda: self.screen.key("alt+y"), lambda: self.screen.key("alt+n"),
                    lambda: self.screen.close_window(self.window)):
            self.open(UNLOCK, "Question")
            self.screen.wait_focused()
            way()
            self.assertEqual(CANCELLED, self.call.result())
            self.screen.wait_gone(self.window)

    def test_a_retry_question_answers_the_same_whichever_button_is_pressed(self):
        for export, title, arguments in (
                (AUTHENTICATION, "Authentication failed", {}),
                (ENROLMENT, "Enrolment failed", {}),
                (BIOMETRIC, "Error", {"number": 0x63C5})):
            for way in (lambda: self.window.find("push button", "Yes").press(),
                        lambda: self.window.find("push button", "No").press(),
                        lambda: self.screen.key("alt+n"), lambda: self.screen.key("Escape"),
                        lambda: self.screen.close_window(self.window)):
                self.open(export, title, **arguments)
                self.screen.wait_focused()
                way()
                self.assertEqual(NO_ANSWER, self.call.result(), export)
                self.screen.wait_gone(self.window)

    def test_every_way_out_of_a_box_with_ok_alone(self):
        for way in (lambda: self.window.find("push button", "OK").click(),
                    lambda: self.screen.key("Return"), lambda: self.screen.key("Escape"),
                    lambda: self.screen.key("space"),
                    lambda: self.screen.close_window(self.window)):
            self.open(PUK_LOCKED, "Error")
            self.screen.wait_focused()
            way()
            self.assertEqual(CANCELLED, self.call.result())
            self.screen.wait_gone(self.window)

    def test_tab_goes_from_yes_to_no_and_back(self):
        self.open(UNLOCK, "Question")
        for name in ("Yes", "No", "Yes"):
            self.screen.wait_focused(self.window.find("push button", name))
            self.screen.key("Tab")
        self.end(CANCELLED)


class Looks(BoxCase):
    def x_property(self, name):
        x11 = self.screen.x11
        return x11._property(self.screen.x11_window(self.window), name)

    def icon_pixels(self, export, title, **arguments):
        self.open(export, title, **arguments)
        self.screen.wait_focused()
        icon = self.window.find("icon")

        def picture():
            pixels = self.screen.pixels(icon)
            return pixels if len(set(pixels)) > 5 else None
        pixels = wait_until(picture, what="a picture in the icon's place")
        self.screen.key("Escape")
        self.call.result()
        self.screen.wait_gone(self.window)
        return pixels

    def test_errors_and_retry_questions_share_a_picture_that_questions_do_not_have(self):
        question = self.icon_pixels(UNLOCK, "Question")
        error = self.icon_pixels(PUK_LOCKED, "Error")
        retry = self.icon_pixels(AUTHENTICATION, "Authentication failed")
        self.assertEqual(error, retry)
        self.assertNotEqual(error, question)

    def test_the_box_stands_in_the_middle_and_cannot_be_resized(self):
        self.open(UNLOCK, "Question")
        number = self.screen.x11_window(self.window)
        x, y, width, height = self.screen.x11.geometry(number)
        self.assertAlmostEqual(SCREEN[0] / 2, x + width / 2, delta=2)
        self.assertAlmostEqual(SCREEN[1] / 2, y + height / 2, delta=24)  # the title bar
        hints = self.x_property("WM_NORMAL_HINTS")
        minimum, maximum = hints[5:7], hints[7:9]
        self.assertEqual([width, height], minimum)
        self.assertEqual([width, height], maximum)
        self.end(CANCELLED)

    def test_the_box_belongs_to_no_modeless_window(self):
        self.assertEqual(1, self.host.run("DLG_PinPadShowVerificationDialog"))
        wait_until(lambda: self.screen.titles(self.host), what="the PIN pad's window")
        self.open(UNLOCK, "Question")
        self.assertEqual(2, len(self.screen.titles(self.host)))
        self.assertIsNone(self.x_property("WM_TRANSIENT_FOR"))
        self.end(CANCELLED)


class LongTexts(BoxCase):
    def expect_buttons_on_screen(self):
        for button in self.window.find_all("push button"):
            x, y, width, height = button.extents
            self.assertTrue(x >= 0 and y >= 0 and x + width <= SCREEN[0]
                            and y + height <= SCREEN[1], button.extents)

    def label(self):
        return next(node for node in self.window_tree() if node.role == "label")

    def window_tree(self):
        """Everything in the window, also what is scrolled out of sight."""
        nodes = [self.window]
        for node in nodes:
            nodes += node.children
        return nodes

    def open_certificate(self, **arguments):
        self.open("DLG_ShowConfirmDeleteCertificate", "Question", **arguments)
        self.screen.wait_focused()

    def test_200_lines_leave_the_buttons_on_the_screen_and_scroll_by_keyboard(self):
        self.open_certificate(issuedTo="x\n" * 200)
        self.expect_buttons_on_screen()
        label = self.label()
        self.assertEqual(200, label.name.count("x\n"))
        self.assertTrue(label.name.endswith("Do you wish to allow this?"))
        self.assertEqual("Yes", self.screen.focused().name)
        before = label.extents[1]
        self.screen.key("shift+Tab")
        wait_until(lambda: any(node.focused for node in self.window_tree()
                               if node.role in ("panel", "scroll pane")),
                   what="the text to have the keyboard")
        self.screen.key("Next")
        wait_until(lambda: label.extents[1] < before, what="the text scrolled up",
                   seen=lambda: label.extents)
        self.end(CANCELLED, "Return")

    def test_a_line_that_is_wider_than_the_screen_is_wrapped_there(self):
        self.open(LOCKED, "Token locked", label="W" * 470)
        self.screen.wait_focused()
        self.expect_buttons_on_screen()
        self.assertLessEqual(self.window.extents[2], SCREEN[0])
        label = self.label()
        x, _, width, _ = label.extents
        self.assertTrue(SCREEN[0] / 2 < width < SCREEN[0] and x >= 0, label.extents)
        self.assertNotIn("\n", self.label().name[:480])
        self.end(OK, "Escape")

    def test_wide_and_high_at_once(self):
        self.open_certificate(issuedTo="x\n" * 200, issuedBy="long " * 90)
        self.expect_buttons_on_screen()
        x, y, width, height = self.window.extents
        self.assertTrue(x >= 0 and y >= 0 and x + width <= SCREEN[0] and y + height <= SCREEN[1])
        self.end(CANCELLED, "Escape")


class CountDown(BoxCase):
    timeout = "dword:00000003"

    def wait_tick(self, yes):
        """Waits until the button shows another number."""
        before = self.screen.pixels(yes)
        wait_until(lambda: self.screen.pixels(yes) != before, what="a second to pass")

    def test_four_steps_in_four_seconds_while_the_name_stands_still(self):
        for export, title, arguments in (
                (AUTHENTICATION, "Authentication failed", {}),
                (ENROLMENT, "Enrolment failed", {}),
                (BIOMETRIC, "Error", {"number": 0x63C5})):
            with self.subTest(export=export), Events(self.screen.bus) as events:
                self.open(export, title, **arguments)
                yes = self.screen.wait_focused()
                self.assertEqual("Seconds left: 3", yes.description)
                self.wait_tick(yes)
                began = time.monotonic()
                for _ in range(3):
                    self.wait_tick(yes)
                took = time.monotonic() - began
                self.assertGreaterEqual(took, 2.5)
                self.assert_takes_at_most(4, took)
                self.assertFalse(self.call.done)
                self.assertEqual([], events.names("Yes ("))
                self.assertEqual("Yes", self.screen.wait_focused().name)
                self.end(NO_ANSWER)

    def test_it_neither_resizes_the_box_nor_cuts_the_label(self):
        self.open(AUTHENTICATION, "Authentication failed")
        yes = self.screen.wait_focused()
        places = self.window.extents, yes.extents
        self.screen.key("Tab", yes)  # what has not the keyboard is described each second
        wait_until(lambda: yes.description == "Seconds left: 0", what="0 seconds", seen=self.window.dump)
        self.wait_tick(yes)
        self.assertEqual(places, (self.window.extents, yes.extents))
        self.end(NO_ANSWER, "Escape")

    def test_an_error_box_and_a_question_do_not_count(self):
        self.open(BIOMETRIC, "Error", number=0x6983)
        self.assertEqual(["OK"], self.buttons())
        self.end(NO_ANSWER)
        self.open(UNLOCK, "Question")
        self.assertEqual(["Yes", "No"], self.buttons())
        self.end(CANCELLED)

    @own_process_only("a helper lives from one DLG_Finalize to the next")
    def test_the_setting_is_read_once_in_the_life_of_the_process(self):
        self.expect_from_3()
        self.host.write_registry(timeout(100))
        self.host.run("DLG_Finalize")
        self.expect_from_3()

    def expect_from_3(self):
        self.open(AUTHENTICATION, "Authentication failed")
        self.assertEqual("Seconds left: 3", self.screen.wait_focused().description)
        self.end(NO_ANSWER)


class NoCountDown(BoxCase):
    def expect_none(self, value):
        self.host = self.start_host(registry=None if value is None else timeout(value))
        self.open(AUTHENTICATION, "Authentication failed")
        self.assertEqual(["Yes", "No"], self.buttons())
        self.end(NO_ANSWER)

    def test_without_the_setting(self):
        self.expect_none(None)

    def test_with_0(self):
        self.expect_none("dword:00000000")

    def test_with_a_value_of_another_type(self):
        self.expect_none('"5"')

    def test_a_first_answer_of_none_is_kept(self):
        self.open(AUTHENTICATION, "Authentication failed")
        self.end(NO_ANSWER)
        self.host.write_registry(timeout(3))
        self.open(AUTHENTICATION, "Authentication failed")
        self.assertEqual(["Yes", "No"], self.buttons())
        self.end(NO_ANSWER)


if __name__ == "__main__":
    unittest.main()
