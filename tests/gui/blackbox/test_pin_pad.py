#!/usr/bin/python3
"""The window beside a reader with keys of its own, as a user and a host see it."""

import itertools
import subprocess
import tempfile
import unittest

import test_translation
from stage import CANCELLED, StageTestCase, wait_until

TITLE = "PinPad"
NOTICE = "You are about to create a legally binding digital signature!"
ENTER, NEW, CONFIRM = "Enter your PIN", "Enter the new PIN", "Confirm the new PIN"
BLANK = "_" * 15
NO_DIGITS = "Digits entered: 0"  # what a screen reader says for that

BLACK, GREY, WHITE = (0, 0, 0), (143, 143, 143), (255, 255, 255)


class PadCase(StageTestCase):
    def setUp(self):
        super().setUp()
        self.host = self.start_host()

    def show_pad(self, kind="Verification", pad="pad", title=TITLE, **arguments):
        """Shows a pad beside those that there are, and gives its window."""
        before = self.pads(title)
        call = self.host.call(f"DLG_PinPadShow{kind}Dialog", pad=pad, **arguments)
        self.assertEqual(1, call.result())
        return wait_until(lambda: [window for window in self.pads(title) if window not in before],
                          what="one more pad")[0]

    def pads(self, title=TITLE):
        return [window for window in self.screen.windows(self.host) if window.name == title]

    def go_to_pad(self, window):
        """Keys go to the window then, but to nothing in it."""
        self.screen.go_to(window)

    def go_to_abort(self, window):
        """As a user without a mouse does."""
        self.go_to_pad(window)
        self.screen.x11.key("Tab")
        return self.screen.wait_focused(window.find("push button", "Abort"))

    def tell(self, *orders, pad="pad", **arguments):
        for order in orders:
            self.host.run("DLG_PinPadKeyboardInput" + order, pad=pad, **arguments)

    def should_abort(self, pad="pad"):
        return self.host.run("DLG_PinPadKeyboardInputShouldAbort", pad=pad)

    def wait_abort(self, pad="pad"):
        wait_until(lambda: self.should_abort(pad) == 1, what="the wish to abort")

    def hide(self, window, pad="pad"):
        self.host.run("DLG_PinPadHideDialog", pad=pad)
        self.screen.wait_gone(window)

    @staticmethod
    def row(window):
        return [node for node in window.in_reading_order() if node.role == "label"][-1].text

    def expect_row(self, window, text):
        self.assertEqual(text, self.row(window))

    def expect_steps(self, window, *expected):
        """The steps with their colours, once they are painted."""
        def steps():
            found = []
            for label in window.find_all("label"):
                if label.name in (ENTER, NEW, CONFIRM):
                    pixels = set(self.screen.pixels(label))
                    found.append((label.name, BLACK if BLACK in pixels else
                                  GREY if GREY in pixels else None, WHITE in pixels))
            return found
        expected = [(name, colour, True) for name, colour in expected]
        wait_until(lambda: steps() == expected, what=f"the steps {expected}", seen=steps)


class Kinds(PadCase):
    def texts(self, *arguments, **options):
        window = self.show_pad(*arguments, **options)
        texts = [text.replace("\n", " ") for text in window.texts()]
        self.hide(window)
        return texts

    def test_each_kind_has_its_rows_in_their_order(self):
        change = [ENTER, NEW, CONFIRM]
        for kind, expected in (
                ("Verification", ["Action to perform", ENTER, NO_DIGITS]),
                ("Modification", ["Action to perform", *change, NO_DIGITS]),
                ("LegalVerification", [NOTICE, "Action to perform", ENTER, NO_DIGITS]),
                ("NoPinVerification", ["Action to perform", ENTER]),
                ("LegalNoPinVerification", [NOTICE, "Action to perform", ENTER])):
            for allow_abort, button in ((0, []), (1, ["Abort"]), (200, ["Abort"])):
                with self.subTest(kind, allowAbort=allow_abort):
                    self.assertEqual(expected + button,
                                     self.texts(kind, allowAbort=allow_abort))

    def test_it_stays_above_other_windows(self):
        number = self.screen.x11_window(self.show_pad())
        wait_until(lambda: self.screen.x11.has_state(number, "_NET_WM_STATE_ABOVE"))

    def test_the_call_returns_while_the_window_stays(self):
        window = self.show_pad()
        self.assertEqual(0, self.should_abort())
        self.assertTrue(window.showing)


class Row(PadCase):
    def test_digits_fill_it_and_are_deleted(self):
        window = self.show_pad()
        self.expect_row(window, BLANK)
        self.tell("AddChar", "AddChar", "AddChar")
        self.expect_row(window, "***____________")
        self.tell("DelChar")
        self.expect_row(window, "**_____________")

    def test_sixteen_digits_show_fifteen(self):
        window = self.show_pad()
        self.tell(*["AddChar"] * 16)
        self.expect_row(window, "*" * 15)
        self.tell("DelChar")
        self.expect_row(window, "*" * 14 + "_")

    def test_deleting_from_a_blank_row_changes_nothing(self):
        window = self.show_pad()
        self.tell("DelChar")
        self.expect_row(window, BLANK)

    def test_clear_and_the_next_step_blank_it(self):
        window = self.show_pad("Modification")
        for order in ("ClearChars", "NextPin"):
            self.tell("AddChar", "AddChar", order)
            self.expect_row(window, BLANK)

    def test_status_words_stand_in_the_middle(self):
        window = self.show_pad()
        for order, text in (("Cancel", "Cancel_Pressed_"), ("Timeout", "_Timer_Expired_"),
                            ("Accept", "__Ok_Pressed___")):
            self.tell("AddChar", order)
            self.expect_row(window, text)

    def test_its_name_says_how_many_digits_there_are_or_the_status(self):
        window = self.show_pad()
        for order, name in (("AddChar", "Digits entered: 1"), ("AddChar", "Digits entered: 2"),
                            ("DelChar", "Digits entered: 1"), ("Timeout", "Timer Expired"),
                            ("AddChar", "Digits entered: 1"), ("NextPin", NO_DIGITS)):
            self.tell(order)
            window.find("label", name)

    def test_its_places_stand_still_while_it_fills(self):
        window = self.show_pad()
        label = window.find("label", NO_DIGITS)
        self.screen.pixels(label)  # waits for its painting
        places = [label.character_extents(place) for place in range(15)]

        def row():
            return [self.screen.x11.pixels(place) for place in places]
        rows = [row()]
        for _ in places:
            self.tell("AddChar")
            rows.append(wait_until(lambda: (now := row()) != rows[-1] and now, what="a digit"))
        self.assertNotEqual(rows[0][0], rows[15][0])
        for filled, pictures in enumerate(rows):
            for place, picture in enumerate(pictures):
                # What is filled looks as it does in the end, what is not as at the start.
                self.assertEqual(rows[15 if place < filled else 0][place], picture,
                                 f"place {place} of a row with {filled} digits")

    def test_without_a_row_everything_is_carried_out_without_effect(self):
        for kind in ("NoPinVerification", "LegalNoPinVerification"):
            window = self.show_pad(kind)
            texts = window.texts()
            self.tell("AddChar", "DelChar", "ClearChars", "Cancel", "Timeout", "Accept")
            self.assertEqual(texts, window.texts())
            self.tell("NextPin")
            self.expect_steps(window, (ENTER, BLACK))
            self.hide(window)


class Steps(PadCase):
    def test_they_are_grey_until_the_first(self):
        window = self.show_pad("Modification")
        self.expect_steps(window, (ENTER, GREY), (NEW, GREY), (CONFIRM, GREY))

    def test_a_change_goes_through_three_and_no_further(self):
        window = self.show_pad("Modification")
        for current in (0, 1, 2, None, None):
            self.tell("AddChar", "NextPin")
            colours = [BLACK if place == current else GREY for place in range(3)]
            self.expect_steps(window, *zip((ENTER, NEW, CONFIRM), colours))
            self.expect_row(window, BLANK)

    def test_a_verification_has_one(self):
        window = self.show_pad()
        self.expect_steps(window, (ENTER, GREY))
        self.tell("NextPin")
        self.expect_steps(window, (ENTER, BLACK))
        self.tell("NextPin")
        self.expect_steps(window, (ENTER, GREY))

    def test_they_can_be_read_on_a_dark_theme(self):
        self.host = self.start_host(environment={"GTK_THEME": "Adwaita:dark"})
        window = self.show_pad("Modification")
        self.tell("NextPin")
        self.expect_steps(window, (ENTER, BLACK), (NEW, GREY), (CONFIRM, GREY))

    def test_a_screen_reader_is_told_the_current_one(self):
        window = self.show_pad("Modification")
        for name in (ENTER, NEW, CONFIRM):
            self.assertEqual([], window.find_all("panel", name))
            self.tell("NextPin")
            self.assertEqual(1, len(window.find_all("panel", name)))
        self.tell("NextPin")
        self.assertEqual([], window.find_all("panel", CONFIRM))


class Keyboard(PadCase):
    """Whoever types elsewhere when a pad appears must not abort by it."""

    KINDS = ("Verification", "Modification", "LegalVerification", "NoPinVerification",
             "LegalNoPinVerification")

    def type_blindly(self, window):
        """What somebody types who has not seen the pad come; done when all of it is served."""
        button = window.find("push button", "Abort")
        self.go_to_pad(window)
        self.assertFalse(button.focused)
        for key in ("space", "Return", "KP_Enter", "1", "space", "Return"):
            self.screen.x11.key(key)
        # Served after all of these, and the first to give something the keyboard.
        self.screen.x11.key("Tab")
        self.screen.wait_focused(button)
        self.assertEqual(0, self.should_abort())

    def test_what_is_typed_when_a_pad_opens_does_not_abort(self):
        for kind in self.KINDS:
            with self.subTest(kind):
                window = self.show_pad(kind, allowAbort=1)
                self.type_blindly(window)
                self.hide(window)

    def test_abort_is_reached_by_tab_and_pressed_by_space_or_enter(self):
        for kind in self.KINDS:
            for key in ("space", "Return", "KP_Enter"):
                with self.subTest(kind, key=key):
                    window = self.show_pad(kind, allowAbort=1)
                    self.go_to_abort(window)
                    self.assertEqual(0, self.should_abort())
                    self.screen.x11.key(key)
                    self.wait_abort()
                    self.hide(window)

    def test_alt_a_aborts_at_once(self):
        for kind in self.KINDS:
            with self.subTest(kind):
                window = self.show_pad(kind, allowAbort=1)
                self.go_to_pad(window)
                self.assertEqual(0, self.should_abort())
                self.screen.x11.key("alt+a")
                self.wait_abort()
                self.hide(window)

    def test_abort_keeps_the_keyboard_once_it_has_it(self):
        window = self.show_pad(allowAbort=1)
        button = self.go_to_abort(window)
        for key in ("Tab", "shift+Tab"):
            self.screen.key(key)
            self.screen.wait_focused(button)

    def test_the_reports_of_a_reader_do_not_move_the_keyboard(self):
        window = self.show_pad("Modification", allowAbort=1)
        self.go_to_pad(window)
        self.tell("NextPin", "AddChar", "Timeout")
        self.type_blindly(window)

    def test_a_pad_that_gets_the_keyboard_back_has_nothing_focused_either(self):
        window = self.show_pad(allowAbort=1)
        self.go_to_pad(window)
        call, dialog = self.show(self.host, "DLG_ShowPinDialog", "Enter PIN")
        self.screen.key("Escape", dialog.find("password text"))
        self.assertEqual(CANCELLED, call.result())
        self.screen.wait_gone(dialog)
        self.screen.x11.ask_manager_to_activate(self.screen.x11_window(window))
        self.type_blindly(window)

    def test_of_two_pads_none_aborts(self):
        first = self.show_pad(allowAbort=1)
        self.go_to_pad(first)
        second = self.show_pad(pad="second", allowAbort=1)
        self.go_to_pad(second)
        for key in ("space", "Return"):
            self.screen.x11.key(key)
        self.go_to_abort(second)
        self.assertEqual([0, 0], [self.should_abort("pad"), self.should_abort("second")])


class Abort(PadCase):
    def test_it_is_0_before_the_press_and_stays_1_after_it(self):
        window = self.show_pad("Modification", allowAbort=1)
        self.assertEqual([0, 0], [self.should_abort(), self.should_abort()])
        window.find("push button", "Abort").press()
        self.wait_abort()
        self.tell("AddChar", "NextPin", "Cancel", "ClearChars")
        self.assertEqual([1, 1], [self.should_abort(), self.should_abort()])
        self.assertTrue(window.showing)

    def test_the_mouse_and_the_keyboard_press_it(self):
        for press in (lambda button: button.click(),
                      lambda button: self.screen.key("space", button),
                      lambda button: self.screen.key("Return", button),
                      lambda button: self.screen.key("alt+a", button)):
            window = self.show_pad(allowAbort=1)
            self.assertEqual(0, self.should_abort())
            press(self.go_to_abort(window))
            self.wait_abort()
            self.hide(window)

    def test_a_press_changes_nothing_else(self):
        window = self.show_pad("Modification", allowAbort=1)
        self.tell("NextPin", "AddChar", "AddChar")
        window.find("push button", "Abort").press()
        self.wait_abort()
        self.expect_row(window, "**_____________")
        self.expect_steps(window, (ENTER, BLACK), (NEW, GREY), (CONFIRM, GREY))

    def test_the_user_cannot_close_the_window(self):
        window = self.show_pad(allowAbort=1)
        self.tell("NextPin", "AddChar")
        self.go_to_abort(window)
        for attempt in (lambda: self.screen.close_window(window),
                        lambda: self.screen.x11.ask_manager_to_close(window.x11_number),
                        lambda: self.screen.x11.key("Escape"),
                        lambda: self.screen.x11.key("alt+F4")):
            attempt()
        # Served after all of these, as it reaches the window on the same way.
        self.screen.x11.key("space")
        self.wait_abort()
        self.assertTrue(window.showing)
        self.tell("AddChar")
        self.expect_row(window, "**_____________")

    def test_a_window_without_a_button_cannot_be_closed_either(self):
        window = self.show_pad("NoPinVerification")
        self.screen.close_window(window)
        other = self.show_pad(pad="other", allowAbort=1)
        self.screen.key("space", self.go_to_abort(other))
        self.wait_abort("other")
        self.assertTrue(window.showing)
        self.assertEqual(0, self.should_abort())


class Life(PadCase):
    def test_many_threads_drive_one_pad(self):
        window = self.show_pad("Modification", thread="shower", allowAbort=1)
        self.tell("NextPin", thread="stepper")
        calls = [self.host.call("DLG_PinPadKeyboardInputAddChar", thread=f"typist{number}")
                 for number in range(8)]
        for call in calls:
            call.result()
        self.expect_row(window, "*" * 8 + "_" * 7)
        self.tell("DelChar", thread="typist0")
        self.expect_row(window, "*" * 7 + "_" * 8)
        self.tell("Accept", thread="stepper")
        self.expect_row(window, "__Ok_Pressed___")
        self.assertEqual(0, self.should_abort())
        self.host.run("DLG_PinPadHideDialog", thread="hider")
        self.screen.wait_gone(window)

    def test_after_hiding_another_can_be_shown(self):
        for _ in range(3):
            window = self.show_pad(allowAbort=1)
            self.expect_row(window, BLANK)
            self.expect_steps(window, (ENTER, GREY))
            self.assertEqual(0, self.should_abort())
            self.tell("NextPin", "AddChar")
            self.hide(window)

    def test_two_pads_live_side_by_side(self):
        first = self.show_pad(pad="first", allowAbort=1)
        second = self.show_pad("Modification", pad="second", allowAbort=1)
        self.assertNotEqual(first.extents[:2], second.extents[:2])
        self.tell("AddChar", pad="first")
        self.tell("NextPin", "AddChar", "AddChar", pad="second")
        self.expect_row(first, "*______________")
        self.expect_row(second, "**_____________")
        self.expect_steps(second, (ENTER, BLACK), (NEW, GREY), (CONFIRM, GREY))
        second.find("push button", "Abort").press()
        wait_until(lambda: self.should_abort("second") == 1)
        self.assertEqual(0, self.should_abort("first"))
        self.hide(first, pad="first")
        self.tell("AddChar", pad="second")
        self.expect_row(second, "***____________")
        self.hide(second, pad="second")

    def test_a_handle_that_is_not_that_of_a_live_pad_is_ignored(self):
        gone = self.show_pad(pad="gone", allowAbort=1)
        self.hide(gone, pad="gone")
        window = self.show_pad(allowAbort=1)
        self.tell("NextPin", "AddChar")
        for handle in (0, 1, 0x1234, 2**64 - 1):
            for order in ("NextPin", "Cancel", "Timeout", "Accept", "AddChar", "DelChar",
                          "ClearChars"):
                self.tell(order, handle=handle)
            self.assertEqual(0, self.host.run("DLG_PinPadKeyboardInputShouldAbort",
                                              handle=handle))
            self.host.run("DLG_PinPadHideDialog", handle=handle)
        self.expect_row(window, "*______________")
        self.expect_steps(window, (ENTER, BLACK))

    def test_a_hidden_pad_is_ignored(self):
        # Held open, so that no later pad gets the place in memory of the hidden one.
        keeper = self.show_pad(pad="keeper")
        window = self.show_pad(allowAbort=1)
        self.hide(window)
        self.host.run("DLG_PinPadHideDialog")
        self.tell("NextPin", "Cancel", "Timeout", "Accept", "AddChar", "DelChar", "ClearChars")
        self.assertEqual(0, self.should_abort())
        self.expect_row(keeper, BLANK)

    def test_a_pad_is_dead_as_soon_as_it_is_hidden(self):
        for _ in range(5):
            window = self.show_pad(allowAbort=1)
            window.find("push button", "Abort").press()
            wait_until(lambda: self.should_abort() == 1, what="the wish to abort")
            self.host.call("DLG_PinPadHideDialog")
            self.assertEqual(0, self.should_abort())
            self.screen.wait_gone(window)

    def test_finalise_removes_a_pad_and_its_handle_is_dead(self):
        self.show_pad(allowAbort=1)
        self.tell("NextPin", "AddChar")
        self.host.run("DLG_Finalize")
        # Nobody is left who would answer an assistive program.
        wait_until(lambda: not self.screen.titles(self.host), what="no window")
        self.tell("NextPin", "AddChar", "Cancel")
        self.assertEqual(0, self.should_abort())
        self.host.run("DLG_PinPadHideDialog")
        window = self.show_pad(pad="other")
        self.expect_row(window, BLANK)
        self.hide(window, pad="other")

    def test_a_process_may_exit_with_a_pad_on_the_screen(self):
        # A toolkit that is still running at the end of its process is no leak.
        self.host = self.start_host(environment={"ASAN_OPTIONS": "detect_leaks=0"})
        window = self.show_pad()
        self.assertEqual(0, self.host.quit())
        self.screen.wait_gone(window)

    def test_the_place_for_the_handle_must_be_there(self):
        for kind in ("Verification", "Modification", "LegalVerification", "NoPinVerification",
                     "LegalNoPinVerification"):
            call = self.host.call(f"DLG_PinPadShow{kind}Dialog", handle=None)
            self.assertEqual(0, call.result())
        self.assertEqual([], self.screen.titles(self.host))


class Places(PadCase):
    def expect_there(self, window, place):
        """But for the frame, which the toolkit counts only where it knows it: pads are 32 apart."""
        at = self.screen.x11.geometry(self.screen.x11_window(window), frame=True)
        self.assertLess(max(abs(at[0] - place[0]), abs(at[1] - place[1])), 16, (at, place))

    def places(self, *windows):
        """Where their frames stand, once the window manager has put them there."""
        found = [self.screen.x11.geometry(self.screen.x11_window(window), frame=True)
                 for window in windows]
        self.assertEqual(len(windows), len({place[:2] for place in found}), found)
        return found

    def test_a_pad_comes_where_the_first_was_and_not_on_the_second(self):
        first = self.show_pad(pad="a")
        [place] = self.places(first)
        second = self.show_pad(pad="b")
        self.places(first, second)
        self.hide(first, pad="a")
        third = self.show_pad(pad="c")
        self.places(second, third)
        self.expect_there(third, place)

    def test_pads_of_all_kinds_stand_on_different_places(self):
        kinds = ("Verification", "Modification", "Verification", "LegalVerification",
                 "NoPinVerification", "LegalNoPinVerification", "Modification")
        windows = [self.show_pad(kind, pad=f"pad{number}", allowAbort=number % 2)
                   for number, kind in enumerate(kinds)]
        for one, other in itertools.permutations(self.places(*windows), 2):
            (x, y, w, h), (left, top, width, height) = one, other
            self.assertFalse(left <= x and top <= y and x + w <= left + width
                             and y + h <= top + height, f"{one} behind {other}")

    def test_a_pad_that_the_user_has_moved_leaves_its_place(self):
        first = self.show_pad(pad="a")
        [place] = self.places(first)
        self.screen.x11.move(self.screen.x11_window(first), 5, 5)
        wait_until(lambda: self.places(first) != [place], what="a moved window")
        # The program hears of the move before this.
        wait_until(lambda: first.extents[:2] != place[:2], what="a window that knows it")
        self.expect_there(self.show_pad(pad="b"), place)

    def test_many_pads_stay_on_the_screen(self):
        windows = [self.show_pad("Modification", pad=f"pad{number}") for number in range(18)]
        width, height = self.screen.x11.geometry(self.screen.x11.root)[2:]
        for place in self.places(*windows):
            x, y, w, h = place
            self.assertTrue(0 <= x and 0 <= y and x + w <= width and y + h <= height, place)


class Neighbours(PadCase):
    def test_a_dialog_that_comes_later_stands_on_its_own(self):
        pad = self.show_pad(allowAbort=1)
        self.go_to_abort(pad)
        call, window = self.show(self.host, "DLG_ShowPinDialog", "Enter PIN")
        number = str(self.screen.x11_window(window))
        said = subprocess.run(["xprop", "-id", number, "WM_TRANSIENT_FOR"], text=True,
                              stdout=subprocess.PIPE, check=True).stdout
        self.assertNotIn(hex(self.screen.x11_window(pad)), said)
        self.screen.wait_focused(window.find("password text"))
        self.screen.key("Escape")
        self.assertEqual(CANCELLED, call.result())
        self.screen.wait_gone(window)
        self.assertTrue(pad.showing)
        pad.find("push button", "Abort").click()
        wait_until(lambda: self.should_abort() == 1, what="the wish to abort")

    def test_the_pad_can_be_hidden_after_a_dialog_over_it(self):
        pad = self.show_pad()
        for _ in range(2):
            call, window = self.show(self.host, "DLG_ShowPinDialog", "Enter PIN")
            self.screen.close_window(window)
            self.assertEqual(CANCELLED, call.result())
        self.tell("NextPin", "AddChar")
        self.expect_row(pad, "*______________")
        self.hide(pad)


class Translated(test_translation.TranslationCase):
    GERMAN = {"PinPad": "Kartenleser", "Action to perform": "Was zu tun ist",
              "Enter your PIN": "Geben Sie Ihre PIN ein", "&Abort": "&Abbrechen",
              "Cancel Pressed": "  Abgebrochen ", "Timer Expired": "Zeit\u00fcberschreitung!",
              "Ok Pressed": "\u6642\u9593\u5207\u308c" * 5}

    def test_words_are_translated_cut_and_put_in_the_middle(self):
        directory = tempfile.mkdtemp(dir=self.directory)
        self.compile(directory, "de", self.GERMAN)
        host = self.host_in("de_DE.UTF-8", self.registry(directory))
        self.assertEqual(1, host.run("DLG_PinPadShowVerificationDialog", allowAbort=1))
        window = self.screen.find_window("Kartenleser", host)
        texts = ["Was zu tun ist", "Geben Sie Ihre PIN ein"]
        self.assertEqual([*texts, NO_DIGITS, "Abbrechen"], window.texts())
        place = window.extents
        for order, text in (("Cancel", "__Abgebrochen__"), ("Timeout", "Zeit\u00fcberschreit")):
            host.run("DLG_PinPadKeyboardInput" + order)
            self.assertEqual(text, PadCase.row(window))
        self.assertEqual(place, window.extents)
        host.run("DLG_PinPadKeyboardInputAccept")
        self.assertEqual(("\u6642\u9593\u5207\u308c" * 5)[:15], PadCase.row(window))
        # Wide characters: the window makes room for them.
        wait_until(lambda: window.extents[2] > place[2], what="a wider window",
                   seen=lambda: (place, window.extents))


if __name__ == "__main__":
    unittest.main()
