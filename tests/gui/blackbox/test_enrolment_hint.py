#!/usr/bin/python3
"""The explanation before an enrolment, and the setting that switches it off."""

import tempfile
import unittest

import test_translation
from modeless import HINT, plain
from stage import OK, StageTestCase, require_private_mounts, wait_until

ENROL = "DLG_ShowSupertokenEnrolDlg"
ENROLLING = "Lumora Bio Token - enrolling finger (scan 1)"
TEXT = ("You are about to enrol a (new) finger on the Lumora Bio Token. This enrolment process is "
        "carried out in 3 scans. The title bar of the window prompting you to swipe your finger "
        "over the sensor and the number in the window indicates which scan is being made. The "
        "process automatically terminates when you have made the three scans. It is important that "
        "you use exactly the same finger in all three scans.")
BOX = "Show this window during the next enrolment procedure"

KEY = "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Corvenna\\Tessaly\\2.0]"
ON, OFF = '"ShowEnrolmentHint"=dword:00000001', '"ShowEnrolmentHint"=dword:00000000'


def registry(line=""):
    return f"REGEDIT4\r\n\r\n{KEY}\r\n{line}\r\n\r\n" if line else f"REGEDIT4\r\n\r\n{KEY}\r\n\r\n"


class HintCase(StageTestCase):
    def open(self, host):
        self.call, self.window = self.show(host, ENROL, HINT)
        return self.window

    @property
    def box(self):
        return self.window.find("check box", BOX)

    def tick(self, checked):
        self.box.press()
        wait_until(lambda: self.box.checked == checked, what=f"the check box at {checked}")

    def confirm(self):
        self.window.find("push button", "OK").press()

    def expect_enrolment(self, host):
        """The call has gone on to the notification, which is removed again."""
        self.assertEqual(OK, self.call.result())
        self.assertEqual(1, self.call.number("shown"))
        window = self.screen.find_window(ENROLLING, host)
        self.assertEqual([ENROLLING], self.screen.titles(host))
        self.assertEqual(OK, host.run("DLG_HideSupertokenDlg"))
        self.screen.wait_gone(window)

    def enrol_with_hint(self, host):
        self.open(host)
        self.confirm()
        self.expect_enrolment(host)

    def enrol_without_hint(self, host):
        """The call returns without anybody's doing, so there was nothing to answer."""
        self.call = host.call(ENROL)
        self.expect_enrolment(host)

    def read(self, host):
        with open(host.registry_path, newline="") as file:
            return file.read()

    def expect_stored(self, host, line):
        wait_until(lambda: line in self.read(host), what=line, seen=lambda: self.read(host))


class Window(HintCase):
    def setUp(self):
        super().setUp()
        self.host = self.start_host(registry=registry())
        self.open(self.host)

    def tearDown(self):
        self.confirm()
        self.expect_enrolment(self.host)
        super().tearDown()

    def test_text_check_box_and_button_stand_one_below_the_other(self):
        self.assertEqual([TEXT, BOX, "OK"], [plain(text) for text in self.window.texts()])
        self.assertTrue(self.box.checked)

    def test_the_text_is_wrapped_and_the_button_stands_in_the_middle(self):
        x, y, width, height = self.window.extents
        self.assertLess(width, 500)
        self.assertTrue(0 <= x and x + width <= 1024 and 0 <= y and y + height <= 768)
        left, _, button, _ = self.window.find("push button", "OK").extents
        self.assertAlmostEqual(x + width / 2, left + button / 2, delta=2)

    def test_it_is_modal_and_stays_above_other_windows(self):
        self.assertIn("modal", self.window.states)
        wait_until(lambda: self.screen.x11.has_state(self.window.x11_number,
                                                     "_NET_WM_STATE_ABOVE"))

    def test_the_keyboard_starts_at_ok_and_reaches_the_check_box(self):
        button = self.window.find("push button", "OK")
        self.screen.wait_focused(button)
        self.assertIn("default", button.states)
        self.screen.key("Tab")
        self.screen.key("space", self.box)
        wait_until(lambda: not self.box.checked)
        self.screen.key("space", self.box)
        wait_until(lambda: self.box.checked)
        self.screen.key("Tab", self.box)
        self.screen.wait_focused(button)


class Setting(HintCase):
    def test_with_the_value_absent_the_hint_is_shown(self):
        for text in (None, "REGEDIT4\r\n\r\n", registry(),
                     "REGEDIT4\r\n\r\n[HKEY_LOCAL_MACHINE\\Other]\r\n" + OFF + "\r\n\r\n"):
            with self.subTest(text):
                self.enrol_with_hint(self.start_host(registry=text))

    def test_any_other_number_than_0_shows_it(self):
        for digits in ("00000001", "00000002", "80000000", "ffffffff"):
            with self.subTest(digits):
                self.enrol_with_hint(self.start_host(
                    registry=registry(f'"ShowEnrolmentHint"=dword:{digits}')))

    def test_a_value_of_another_type_shows_it(self):
        for data in ('"0"', '""', "hex:00,00,00,00"):
            with self.subTest(data):
                self.enrol_with_hint(self.start_host(
                    registry=registry(f'"ShowEnrolmentHint"={data}')))

    def test_with_the_value_0_no_window_appears_and_the_enrolment_follows(self):
        host = self.start_host(registry=registry(OFF))
        self.enrol_without_hint(host)
        self.assertIn(OFF, self.read(host))

    def test_it_is_read_at_every_enrolment(self):
        host = self.start_host(registry=registry(OFF))
        self.enrol_without_hint(host)
        host.write_registry(registry(ON))
        self.enrol_with_hint(host)
        host.write_registry(registry(OFF))
        self.enrol_without_hint(host)

    def test_a_file_that_is_no_registry_shows_it_and_is_left_alone(self):
        host = self.start_host(registry="something else")
        self.open(host)
        self.tick(False)
        self.confirm()
        self.expect_enrolment(host)
        self.assertEqual("something else", self.read(host))
        self.enrol_with_hint(host)


class CheckBox(HintCase):
    def test_a_cleared_box_is_stored_at_once_and_the_next_enrolment_has_no_hint(self):
        host = self.start_host(registry=registry())
        self.open(host)
        self.tick(False)
        self.expect_stored(host, OFF)
        self.assertFalse(self.call.done)
        self.confirm()
        self.expect_enrolment(host)
        self.enrol_without_hint(host)

    def test_clearing_and_ticking_again_leaves_1(self):
        host = self.start_host(registry=registry())
        self.open(host)
        for checked, line in ((False, OFF), (True, ON), (False, OFF), (True, ON)):
            self.tick(checked)
            self.expect_stored(host, line)
        self.confirm()
        self.expect_enrolment(host)
        self.assertIn(ON, self.read(host))
        self.enrol_with_hint(host)

    def test_an_untouched_box_stores_nothing(self):
        host = self.start_host(registry=registry())
        self.enrol_with_hint(host)
        self.assertEqual(registry(), self.read(host))

    def test_the_choice_survives_a_restart_of_the_host(self):
        home = self.start_host(registry=registry())
        self.open(home)
        self.tick(False)
        self.confirm()
        self.expect_enrolment(home)
        home.run("DLG_Finalize")
        self.assertEqual(0, home.quit())
        again = self.start_host(environment={"ZEL_HOME": home.zel_home})
        self.enrol_without_hint(again)
        again.run("DLG_Finalize")
        self.assertEqual(0, again.quit())

    def test_the_choice_survives_finalise(self):
        host = self.start_host(registry=registry())
        self.open(host)
        self.tick(False)
        self.confirm()
        self.expect_enrolment(host)
        host.run("DLG_Finalize")
        self.enrol_without_hint(host)

    def test_other_settings_stay_as_they_are(self):
        others = ('"LimitPinToAscii"=dword:00000000\r\n\r\n'
                  f'{KEY[:-1]}\\Biometrics]\r\n"Automatic retry timeout"=dword:00000007')
        host = self.start_host(registry=registry(others))
        self.open(host)
        self.tick(False)
        self.expect_stored(host, OFF)
        self.confirm()
        self.expect_enrolment(host)
        text = self.read(host)
        for line in others.split("\r\n"):
            self.assertIn(line, text)

    def test_without_the_key_the_choice_is_dropped_and_the_enrolment_goes_on(self):
        host = self.start_host(registry="REGEDIT4\r\n\r\n")
        self.open(host)
        self.tick(False)
        self.confirm()
        self.expect_enrolment(host)
        self.assertEqual("REGEDIT4\r\n\r\n", self.read(host))
        self.enrol_with_hint(host)


class ReadOnly(HintCase):
    """Nothing of the file system can be written."""

    PREFIX = ("bwrap", "--die-with-parent", "--ro-bind", "/", "/", "--dev-bind", "/dev", "/dev")

    def setUp(self):
        super().setUp()
        require_private_mounts(*self.PREFIX)

    def test_a_choice_that_cannot_be_written_is_dropped_and_the_enrolment_goes_on(self):
        for text in (registry(), registry(ON)):
            with self.subTest(text):
                host = self.start_host(registry=text, prefix=self.PREFIX)
                self.open(host)
                for checked in (False, True, False):
                    self.tick(checked)
                self.confirm()
                self.expect_enrolment(host)
                self.assertEqual(text, self.read(host))
                again = self.start_host(environment={"ZEL_HOME": host.zel_home},
                                        prefix=self.PREFIX)
                self.enrol_with_hint(again)

    def test_a_home_that_cannot_be_made_shows_the_hint(self):
        host = self.start_host(environment={"ZEL_HOME": "/proc/no such place"},
                               prefix=self.PREFIX)
        self.open(host)
        self.tick(False)
        self.confirm()
        self.expect_enrolment(host)


class WaysOut(HintCase):
    def test_escape_and_a_close_message_end_it_and_the_enrolment_goes_on(self):
        host = self.start_host(registry=registry())
        for end in (lambda: self.screen.key("Escape"), lambda: self.screen.key("Return"),
                    lambda: self.screen.close_window(self.window)):
            self.open(host)
            end()
            self.expect_enrolment(host)

    def test_they_leave_what_was_chosen(self):
        for end in (lambda: self.screen.key("Escape"),
                    lambda: self.screen.close_window(self.window)):
            host = self.start_host(registry=registry())
            self.open(host)
            self.tick(False)
            end()
            self.expect_enrolment(host)
            self.assertIn(OFF, self.read(host))
            self.enrol_without_hint(host)

    def test_it_opens_over_a_notification_that_it_replaces_afterwards(self):
        host = self.start_host(registry=registry())
        self.assertEqual(OK, host.run("DLG_ShowSupertokenAuthDlg"))
        old = self.screen.find_window("Lumora Bio Token", host)
        self.open(host)
        wait_until(lambda: self.screen.x11.stacking()[-1] == self.window.x11_number)
        self.screen.wait_focused(self.window.find("push button", "OK"))
        self.assertTrue(old.showing)
        self.screen.key("Return")
        self.expect_enrolment(host)

    def test_nothing_is_shown_without_a_place_for_the_answer(self):
        host = self.start_host(registry=registry())
        self.assertNotEqual(OK, host.run(ENROL, shown=None))
        self.assertEqual([], self.screen.titles(host))


class Translated(test_translation.TranslationCase):
    GERMAN = {HINT: "Wissenswertes & mehr", TEXT: "Ein Finger wird dreimal gelesen. " * 20,
              BOX: "N\u00e4chstes Mal wieder zeigen", "OK": "Gut"}

    def test_every_text_is_translated(self):
        directory = tempfile.mkdtemp(dir=self.directory)
        self.compile(directory, "de", self.GERMAN)
        host = self.host_in("de_DE.UTF-8", self.registry(directory))
        call, window = self.show(host, ENROL, "Wissenswertes & mehr")
        self.assertEqual([self.GERMAN[TEXT].strip(), self.GERMAN[BOX], "Gut"],
                         [plain(text).strip() for text in window.texts()])
        self.assertLess(window.extents[2], 500)
        window.find("push button", "Gut").press()
        self.assertEqual(OK, call.result())


if __name__ == "__main__":
    unittest.main()
