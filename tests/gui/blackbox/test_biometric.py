#!/usr/bin/python3
"""The window that asks for a finger, as a user and a host see it."""

import os
import tempfile
import unittest

import test_translation
from modeless import ModelessCase, plain
from stage import OK, wait_until

AUTHENTICATE = "DLG_ShowSupertokenAuthDlg"
ENROL = "DLG_ShowSupertokenEnrolDlg"
UPDATE = "DLG_UpdateSuperTokenEnrolDlg"
HIDE = "DLG_HideSupertokenDlg"

TITLE = "Lumora Bio Token"
WAIT = ("Please wait for the yellow light to start flashing. Then swipe your finger over the sensor "
        "of the Lumora Bio Token.")
SWIPE = ("Please swipe your finger over the Lumora Bio Token sensor when the yellow light starts "
         "flashing")
AUTHENTICATION = ("Authentication to the Lumora Bio Token is required for this operation.", WAIT,
                  "This dialog will automatically disappear once the authentication has completed.")
ENROLMENT = ("You can now enrol a new fingerprint on the Lumora Bio Token.", WAIT,
             "This dialog will automatically disappear once the enrolment has completed.")
PICTURE = (176, 120)


def scanning(scan):
    return f"{TITLE} - enrolling finger (scan {scan})"


class NotificationCase(ModelessCase):
    def show_window(self, export, title):
        call = self.host.call(export)
        self.assertEqual(OK, call.result())
        self.assertEqual(1, call.number("shown"))
        self.window = self.screen.find_window(title, self.host)
        return self.window

    def authenticate(self):
        return self.show_window(AUTHENTICATE, TITLE)

    def enrol(self):
        return self.show_window(ENROL, scanning(1))

    def run_all(self, *exports):
        for export in exports:
            self.assertEqual(OK, self.host.run(export))

    def hide(self):
        self.run_all(HIDE)
        self.screen.wait_gone(self.window)

    def main_text(self):
        return next(label for label in self.window.find_all("label") if "\n\n" in label.name)

    def paragraphs(self):
        return tuple(plain(part) for part in self.main_text().name.split("\n\n"))

    def scan_number(self):
        labels = self.window.labels()
        return labels[labels.index("Scan number:") + 1]


class Look(NotificationCase):
    def test_an_authentication_has_its_texts(self):
        self.authenticate()
        self.assertEqual(AUTHENTICATION, self.paragraphs())
        self.assertEqual([" ".join(AUTHENTICATION), SWIPE],
                         [plain(text) for text in self.window.texts()])

    def test_an_enrolment_has_its_texts_and_the_scan_number(self):
        self.enrol()
        self.assertEqual(ENROLMENT, self.paragraphs())
        self.assertEqual([" ".join(ENROLMENT), SWIPE, "Scan number:", "1"],
                         [plain(text) for text in self.window.texts()])

    def test_the_headline_is_bold_and_has_12_points(self):
        for show in (self.authenticate, self.enrol):
            show()
            text = self.main_text()
            end = text.name.index("\n\n")
            for place in (0, end - 1):
                found = text.text_attributes_at(place)
                self.assertEqual(("700", "12"), (found.get("weight"), found.get("size")), place)
            self.assertNotIn("weight", text.text_attributes_at(end + 2))

    def test_everything_stands_in_the_middle_of_a_compact_window(self):
        for show in (self.authenticate, self.enrol):
            x, y, width, height = show().extents
            self.assertTrue(380 <= width <= 460, width)
            self.assertTrue(0 <= x and x + width <= 1024 and 0 <= y and y + height <= 768)
            self.assertAlmostEqual(1024 / 2, x + width / 2, delta=12)
            self.assertAlmostEqual(768 / 2, y + height / 2, delta=25)
            middle = x + width / 2
            for node in [self.window.find("icon"), *self.window.find_all("label")]:
                if node.name not in ("Scan number:", "1"):
                    left, _, size, _ = node.extents
                    self.assertAlmostEqual(middle, left + size / 2, delta=2)
        left = self.window.find("label", "Scan number:").extents[0]
        number = self.window.find("label", "1").extents
        self.assertAlmostEqual(middle, (left + number[0] + number[2]) / 2, delta=2)

    def test_the_texts_are_drawn_around_the_middle(self):
        label = self.authenticate().find_all("label")[-1]
        left, _, width, height = label.extents
        pixels = self.screen.pixels(label)
        last = [x for x in range(width) if len({pixels[y * width + x]
                                                for y in range(height - height // 3, height)}) > 1]
        self.assertAlmostEqual(width / 2, (last[0] + last[-1]) / 2, delta=4)
        self.assertGreater(last[0], 10, "the last line is shorter than the first")

    def test_the_picture_has_a_name_and_stands_above_the_texts(self):
        for show in (self.authenticate, self.enrol):
            picture = show().find("icon", TITLE)
            _, top, *size = picture.extents
            self.assertEqual(PICTURE, tuple(size))
            self.assertLess(top + size[1], self.main_text().extents[1])
            self.assertGreater(len(set(self.screen.pixels(picture))), 100, "colours")

    def test_the_picture_stands_on_the_themes_ground(self):
        grounds = set()
        width, height = PICTURE
        for theme in ("Adwaita", "Adwaita:dark"):
            self.host = self.start_host(environment={"GTK_THEME": theme})
            self.authenticate()
            pixels = self.screen.pixels(self.window.find("icon"))
            beside = self.screen.pixels(self.main_text())[0]
            for corner in (0, width - 1, width * (height - 1), width * height - 1):
                self.assertEqual(beside, pixels[corner])
            grounds.add(beside)
            self.hide()
        self.assertEqual(2, len(grounds))

    def test_it_stays_above_other_windows(self):
        for show in (self.authenticate, self.enrol):
            self.expect_stays_on_top(show())


class Scans(NotificationCase):
    def test_three_scans_after_an_enrolment_show(self):
        """The show itself counts the first."""
        window = self.enrol()
        label = window.find("label", "1")
        for scan in (1, 2, 3):
            self.expect_titles(scanning(scan))
            self.assertEqual(scanning(scan), window.name)
            self.assertEqual(str(scan), self.scan_number())
            # A screen reader that watches the number is told of the same object's new name.
            self.assertEqual(str(scan), label.name)
            if scan < 3:
                self.run_all(UPDATE)

    def test_many_scans_are_counted_and_their_number_has_room(self):
        self.enrol()
        for _ in range(2, 13):
            self.run_all(UPDATE)
        self.expect_titles(scanning(12))
        self.assertEqual("12", self.scan_number())
        number = self.window.find("label", "12")
        x, _, width, _ = self.window.extents
        left = self.window.find("label", "Scan number:").extents[0]
        wait_until(lambda: abs(x + width / 2 - (left + sum(number.extents[0::2])) / 2) <= 2,
                   what="the number in the middle", seen=self.window.dump)

    def test_a_scan_is_painted_while_the_host_does_nothing_more(self):
        self.enrol()
        number = self.window.find("label", "1")
        before = self.screen.pixels(number)
        self.run_all(UPDATE)
        wait_until(lambda: self.screen.pixels(number) != before, what="another number")

    def test_nothing_moves_when_a_scan_is_counted(self):
        self.enrol()
        places = [node.extents for node in self.window.walk()]
        self.run_all(UPDATE, UPDATE)
        self.expect_titles(scanning(3))
        self.assertEqual(places, [node.extents for node in self.window.walk()])

    def test_an_update_during_an_authentication_changes_the_title_only(self):
        self.authenticate()
        texts = self.window.texts()
        self.run_all(UPDATE)
        self.expect_titles(scanning(1))
        self.assertEqual(texts, self.window.texts())

    def test_a_new_window_counts_from_the_start(self):
        self.enrol()
        self.run_all(UPDATE, UPDATE)
        self.enrol()
        self.assertEqual("1", self.scan_number())


class Life(NotificationCase):
    def test_the_call_returns_while_the_window_stays(self):
        self.assertTrue(self.authenticate().showing)
        self.run_all(HIDE)
        self.screen.wait_gone(self.window)

    def test_two_shows_in_a_row_leave_one_window_in_the_mode_of_the_second(self):
        for first, second, expected in ((self.authenticate, self.enrol, ENROLMENT),
                                        (self.enrol, self.authenticate, AUTHENTICATION),
                                        (self.authenticate, self.authenticate, AUTHENTICATION),
                                        (self.enrol, self.enrol, ENROLMENT)):
            first()
            title = second().name
            self.expect_titles(title)
            self.window = self.screen.find_window(title, self.host)
            self.assertEqual(expected, self.paragraphs())
            self.assertEqual(expected is ENROLMENT, "Scan number:" in self.window.labels())
            self.hide()
            self.expect_titles()

    def test_hide_and_update_with_no_window_open_return_0_and_change_nothing(self):
        self.run_all(HIDE, UPDATE, HIDE)
        self.expect_titles()
        self.authenticate()
        self.hide()
        self.run_all(UPDATE, HIDE)
        self.expect_titles()
        self.enrol()
        self.assertEqual("1", self.scan_number())

    def test_the_user_cannot_close_it(self):
        for show in (self.authenticate, self.enrol):
            window = show()
            title = window.name
            self.try_to_close(window)
            self.assertTrue(window.showing)
            self.assertEqual([title], self.screen.titles(self.host))

    def test_many_threads_drive_it(self):
        self.assertEqual(OK, self.host.run(ENROL, thread="shower"))
        calls = [self.host.call(UPDATE, thread=f"scanner{number}") for number in range(8)]
        self.assertEqual([OK] * 8, [call.result() for call in calls])
        self.window = self.screen.find_window(scanning(9), self.host)
        self.assertEqual(OK, self.host.run(HIDE, thread="hider"))
        self.screen.wait_gone(self.window)

    def test_finalise_removes_it_and_another_can_be_shown(self):
        for show in (self.authenticate, self.enrol) * 2:
            show()
            self.host.run("DLG_Finalize")
            self.expect_titles()
            self.run_all(UPDATE, HIDE)
            self.expect_titles()

    def test_many_windows_and_ends_leave_nothing_behind(self):
        sizes = []
        for cycle in range(15):
            self.authenticate()
            self.enrol()
            self.run_all(UPDATE)
            self.host.run("DLG_Finalize")
            if cycle in (4, 14):
                sizes.append((self.host.rss(), len(self.host.threads()), len(self.host.fds())))
        (rss, threads, files), (last_rss, last_threads, last_files) = sizes
        self.assertLessEqual(last_threads, threads)
        self.assertLessEqual(last_files, files)
        if not os.environ.get("ZELDLG_INSTRUMENTED"):
            self.assertLess(last_rss - rss, 2048, "kB in ten cycles")

    def test_a_process_may_exit_with_it_on_the_screen(self):
        # A toolkit that is still running at the end of its process is no leak.
        self.host = self.start_host(environment={"ASAN_OPTIONS": "detect_leaks=0"})
        window = self.authenticate()
        self.assertEqual(0, self.host.quit())
        self.screen.wait_gone(window)


class Neighbours(NotificationCase):
    QUESTIONS = (("DLG_AuthFailRetryDialog", "Authentication failed", {}),
                 ("DLG_EnrolFailRetryDialog", "Enrolment failed", {}),
                 ("DLG_ShowSupertokenError", "Error", {"number": 0x63C1}))

    def test_questions_and_errors_open_over_it(self):
        for show in (self.authenticate, self.enrol):
            window = show()
            painted = self.painted(window)
            for export, title, arguments in self.QUESTIONS:
                call, box = self.show(self.host, export, title, **arguments)
                self.expect_on_top(box)
                self.screen.key("Return", box.find("push button", "Yes"))
                self.assertEqual(1, call.result())
                self.screen.wait_gone(box)
                self.assertTrue(window.showing)
                self.expect_painted(window, painted)
            self.hide()

    def test_what_opens_over_it_does_not_belong_to_it(self):
        self.authenticate()
        call, box = self.show(self.host, *self.QUESTIONS[0][:2])
        hider = self.host.call(HIDE, thread="hider")  # served once the box has been answered
        self.screen.key("Return", box.find("push button", "Yes"))
        self.assertEqual(1, call.result())
        self.assertEqual(OK, hider.result())
        self.screen.wait_gone(self.window)
        self.pass_a_dialog()

    def test_a_box_without_such_a_window_does_not_stay_on_top(self):
        for show in (self.authenticate, self.enrol):
            show()
            self.hide()
        call, box = self.show(self.host, *self.QUESTIONS[0][:2])
        number = self.screen.x11_window(box)
        self.screen.wait_focused()
        self.assertFalse(self.screen.x11.has_state(number, "_NET_WM_STATE_ABOVE"))
        self.screen.key("Return")
        self.assertEqual(1, call.result())

    def test_it_is_painted_again_after_a_dialog_of_the_same_host(self):
        window = self.enrol()
        painted = self.painted(window)
        self.pass_a_dialog()
        self.expect_painted(window, painted)

    def test_it_is_painted_again_after_another_program(self):
        window = self.authenticate()
        painted = self.painted(window)
        other = self.start_host()
        call, cover = self.show(other, "DLG_ShowPinDialog", "Enter PIN")
        self.expect_on_top(cover)
        wait_until(lambda: self.content(window) != painted)
        self.screen.key("Escape", cover.find("password text"))
        call.result()
        self.expect_painted(window, painted)

    def test_windows_of_other_kinds_are_left_alone(self):
        self.enrol()
        self.run_all("DLG_ShowKeyGenerationProgressDialog")
        self.host.run("DLG_PinPadShowVerificationDialog")
        everything = [scanning(1), "Generating key-pair", "PinPad"]
        self.expect_titles(*everything)
        self.run_all(UPDATE)
        self.host.run("DLG_PinPadKeyboardInputAddChar")
        self.expect_titles(scanning(2), *everything[1:])
        self.run_all(HIDE, HIDE)
        self.expect_titles(*everything[1:])
        self.authenticate()
        self.run_all("DLG_HideKeyGenerationProgressDialog")
        self.expect_titles(TITLE, "PinPad")
        self.host.run("DLG_PinPadHideDialog")
        self.expect_titles(TITLE)
        self.hide()


class Translated(test_translation.TranslationCase):
    MAIN = "Ein & zwei_\n\nDrei <b>vier</b>."
    GERMAN = {TITLE: "Finger-Token", "\n\n".join(ENROLMENT): MAIN, SWIPE: "Jetzt & hier streichen",
              "\n\n".join(AUTHENTICATION): "Nur ein Absatz " * 20, "Scan number:": "Nummer & Zahl:",
              f"{TITLE} - enrolling finger (scan %d)": "Finger-Token: Scan %d"}

    def host_with(self, texts):
        directory = tempfile.mkdtemp(dir=self.directory)
        self.compile(directory, "de", texts)
        registry = (self.registry(directory)
                    + f"[{test_translation.KEY}\\2.0]\r\n\"ShowEnrolmentHint\"=dword:00000000\r\n")
        return self.host_in("de_DE.UTF-8", registry)

    def test_every_text_is_translated_and_shown_literally(self):
        host = self.host_with(self.GERMAN)
        self.assertEqual(OK, host.run(ENROL))
        window = self.screen.find_window("Finger-Token: Scan 1", host)
        self.assertEqual([self.MAIN, "Jetzt & hier streichen", "Nummer & Zahl:", "1"],
                         window.texts())
        label = window.find("label", self.MAIN)
        end = self.MAIN.index("\n")
        self.assertEqual("700", label.text_attributes_at(end - 1).get("weight"))
        self.assertNotIn("weight", label.text_attributes_at(end + 2))
        window.find("icon", "Finger-Token")

    def test_a_text_of_one_paragraph_is_all_headline(self):
        host = self.host_with(self.GERMAN)
        self.assertEqual(OK, host.run(AUTHENTICATE))
        window = self.screen.find_window("Finger-Token", host)
        text = window.find_all("label")[0]
        self.assertEqual(("Nur ein Absatz " * 20).strip(), plain(text.name).strip())
        self.assertEqual("700", text.text_attributes_at(len(text.name) - 2).get("weight"))
        self.assertLess(window.extents[2], 500)

    def test_a_title_with_other_conversions_is_not_used(self):
        title = f"{TITLE} - enrolling finger (scan %d)"
        host = self.host_with({**self.GERMAN, title: "Scan %s"})
        self.assertEqual(OK, host.run(ENROL))
        self.screen.find_window(scanning(1), host)


if __name__ == "__main__":
    unittest.main()
