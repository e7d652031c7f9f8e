#!/usr/bin/python3
"""The dialogs that let a user pick a token or a digital ID."""

import time
import unittest

from stage import (CANCELLED, FAILED, OK, Events, StageTestCase, own_process_only, registry,
                   wait_until)

TOKENS = "DLG_ShowTokenSelectionDialog"
DIGITAL_IDS = "DLG_ShowDigitalIDSelection"
TOKEN_TITLE = "Select a token"
ID_TITLE = "Select Digital ID"

CARDS = [("Card A", "Reader 1", 0xFFFFFFFFFFFFFFFF), ("Card B", "Reader 2", 7),
         ("Card C", "Reader 3", 0)]
SCREEN = (1024, 768)
ALWAYS = "Always use this Digital ID (this dialog will not be displayed again)"
LEFT = "Seconds left: "
DIRECTORY = "This computer is a member of the following Active Directory:"


def timeout(value):
    return registry(("CSP", "Automatic default selection timeout", value))


class SelectionCase(StageTestCase):
    registry = None

    def setUp(self):
        super().setUp()
        self.host = self.start_host(registry=self.registry)

    def open(self, export, title, **arguments):
        self.call, self.window = self.show(self.host, export, title, **arguments)
        self.list = self.window.find("table")
        self.screen.wait_focused()

    def open_tokens(self, *entries, **arguments):
        self.open(TOKENS, TOKEN_TITLE, entry=list(entries), **arguments)

    def open_ids(self, **arguments):
        self.open(DIGITAL_IDS, ID_TITLE, **arguments)

    def rows(self):
        return [node.name for node in self.list.find_all("table cell")]

    def selected(self):
        return [node.name for node in self.list.find_all("table cell")
                if "selected" in node.states]

    def selected_places(self):
        return [place for place, node in enumerate(self.list.find_all("table cell"))
                if "selected" in node.states]

    def expect_selected(self, place):
        wait_until(lambda: self.selected_places() == [place], what=f"row {place} selected",
                   seen=self.selected_places)

    def ok(self):
        return self.window.find("push button", "OK")

    def left(self):
        """What is told of the count-down; nothing when there is none."""
        return self.ok().description

    def wait_stopped(self):
        wait_until(lambda: not self.left(), what="the end of the count-down", seen=self.left)

    def end(self, result, key=None):
        if key is not None:
            self.screen.key(key)
        self.assertEqual(result, self.call.result())
        self.screen.wait_gone(self.window)

    def close(self):
        self.screen.close_window(self.window)
        self.end(CANCELLED)


class Tokens(SelectionCase):
    def test_what_is_shown(self):
        self.open_tokens(*CARDS)
        self.assertEqual(["Please select a token:", "OK"],
                         self.window.texts(("label", "push button")))
        self.assertEqual(["Card A (Reader 1)", "Card B (Reader 2)", "Card C (Reader 3)"],
                         self.rows())
        self.assertEqual("Please select a token", self.list.name)
        self.assertEqual(self.list, self.screen.focused())
        self.expect_selected(0)
        self.assertIn("default", self.ok().states)
        self.close()

    def test_names_with_trailing_blanks_show_without_them(self):
        self.open_tokens(("Card A   ", "Reader 1", 1), (" B\t\n", "  ", 2))
        self.assertEqual(["Card A (Reader 1)", " B ()"], self.rows())
        self.close()

    def test_ok_returns_the_identifier_of_the_first_row_unless_another_is_chosen(self):
        for downs, identifier in ((0, 0xFFFFFFFFFFFFFFFF), (1, 7), (2, 0)):
            self.open_tokens(*CARDS)
            for place in range(downs):
                self.screen.key("Down")
                self.expect_selected(place + 1)
            self.end(OK, "Return")
            self.assertEqual(identifier, self.call.number("identifier"))

    def test_closing_by_the_title_bar_is_cancel_and_leaves_the_identifier_untouched(self):
        self.open_tokens(*CARDS)
        self.close()
        self.assertTrue(self.call.untouched("identifier"))

    def test_escape_is_cancel(self):
        self.open_tokens(*CARDS)
        self.end(CANCELLED, "Escape")
        self.assertTrue(self.call.untouched("identifier"))

    def test_ctrl_and_a_click_do_not_leave_nothing_selected(self):
        self.open_tokens(*CARDS)
        self.screen.key("ctrl+space")
        self.screen.key("Down")
        self.expect_selected(1)
        self.end(OK, "Return")

    def test_tab_goes_from_the_list_to_ok_and_back(self):
        self.open_tokens(*CARDS)
        for node in (self.ok(), self.list, self.ok()):
            self.screen.key("Tab")
            self.screen.wait_focused(node)
        self.end(OK, "space")

    def test_without_entries_ok_is_disabled(self):
        for arguments in ({}, {"entries": None}):
            self.open_tokens(**arguments)
            self.assertEqual([], self.rows())
            self.assertFalse(self.ok().enabled)
            self.assertGreaterEqual(self.list.extents[2], 300, "a list that can be told as one")
            self.screen.key("Return")
            self.screen.key("Escape")
            self.end(CANCELLED)

    def test_null_texts_fail_before_anything_is_shown(self):
        for arguments in ({"entry": [(None, "x", 1)]}, {"entry": [("x", None, 1)]},
                          {"entry": [("x", "y", 1), ("x", None, 1)]},
                          {"entry": [("x", "y", 1)], "entries": None},
                          {"record": None}, {"identifier": None}):
            with self.subTest(**arguments):
                call = self.host.call(TOKENS, **arguments)
                self.assertEqual(FAILED, call.result())
                self.assertEqual([], self.screen.titles(self.host))

    def test_texts_are_shown_literally(self):
        self.open_tokens(("Smith & Sons && _Co", "100%s %d", 1), ("<b>bold</b>", "&amp;", 2),
                         (b"M\xfcller", "\U0001f511", 3), ("two\nlines", "a\tb", 4))
        self.assertEqual(["Smith & Sons && _Co (100%s %d)", "<b>bold</b> (&amp;)",
                          "M\ufffdller (\U0001f511)", "two\nlines (a\tb)"], self.rows())
        cells = self.list.find_all("table cell")
        self.assertLess(cells[3].extents[3], 1.5 * cells[0].extents[3], "a line break in a row")
        self.close()


class Confirming(SelectionCase):
    """What holds for both lists."""

    def open_each(self):
        for name, show in (("tokens", lambda: self.open_tokens(*CARDS)),
                           ("digital IDs", lambda: self.open_ids(count=3, value=7))):
            with self.subTest(list=name):
                show()
                yield name

    def chosen(self, name):
        return (self.call.number("identifier") if name == "tokens"
                else int.from_bytes(self.call.output("chosen")[:8], "little"))

    def test_a_double_click_confirms(self):
        for name in self.open_each():
            self.list.find_all("table cell")[1].double_click()
            self.end(OK)
            self.assertEqual(7, self.chosen(name))

    def test_each_enter_key_confirms(self):
        for key in ("Return", "KP_Enter"):
            for name in self.open_each():
                self.screen.key("Down")
                self.expect_selected(1)
                self.end(OK, key)
                self.assertEqual(7, self.chosen(name))

    def test_the_space_bar_does_not_confirm(self):
        for key in ("space", "shift+space", "ctrl+space", "KP_Space"):
            for _ in self.open_each():
                self.screen.key(key)
                self.screen.key("Down")
                self.expect_selected(1)
                self.assertFalse(self.call.done, key)
                self.close()


class LongLists(SelectionCase):
    ENTRIES = [(f"Card {number}", "Reader", number) for number in range(800)]

    def expect_on_screen(self):
        x, y, width, height = self.window.extents
        self.assertTrue(x >= 0 and y >= 0 and x + width <= SCREEN[0] and y + height <= SCREEN[1],
                        self.window.extents)

    def test_hundreds_of_entries_fit_the_screen_and_the_keyboard_reaches_each(self):
        began = time.monotonic()
        self.open_tokens(*self.ENTRIES)
        self.assert_takes_at_most(10, time.monotonic() - began)
        self.expect_on_screen()
        self.screen.key("End")
        self.screen.key("Up")
        self.end(OK, "Return")
        self.assertEqual(798, self.call.number("identifier"))

    def test_typing_finds_an_entry(self):
        self.open_tokens(*self.ENTRIES)
        self.screen.type_text("Card 555")
        wait_until(lambda: self.selected() == ["Card 555 (Reader)"], what="the typed entry",
                   seen=self.selected)
        self.end(OK, "Return")
        self.assertEqual(555, self.call.number("identifier"))

    def test_a_long_name_scrolls_sideways_with_the_arrow_keys(self):
        self.open_tokens(("W" * 480, "Reader", 1), ("x", "y", 2))
        self.expect_on_screen()
        cell = self.list.find_all("table cell")[0]
        place = cell.extents[0]
        self.screen.key("Right")
        wait_until(lambda: cell.extents[0] < place, what="the row scrolled to the left",
                   seen=lambda: cell.extents)
        self.screen.key("Left")
        wait_until(lambda: cell.extents[0] == place, what="the row at its place",
                   seen=lambda: cell.extents)
        self.close()

    def test_a_default_far_down_is_in_sight(self):
        self.open_ids(count=500, defaultIndex=400, name="x" * 300, directory="d" * 300)
        self.expect_on_screen()
        self.expect_selected(self.selected_places()[0])
        cell = next(node for node in self.list.find_all("table cell") if "selected" in node.states)
        top, height = self.list.extents[1], self.list.extents[3]
        self.assertTrue(top <= cell.extents[1] < top + height)
        self.screen.key("Down")
        self.end(OK, "Return")

    def test_the_list_is_as_wide_as_its_rows_within_limits(self):
        widths = []
        for name in "x", "n" * 42, "W" * 300:
            self.open_tokens(("y", "Reader", 1), (name, "Reader", 2))
            widths.append(self.list.extents[2])
            self.close()
        self.assertLess(widths[0], widths[1])
        self.assertLess(widths[1], widths[2])

    @own_process_only("the heap that is looked at is the host's")
    def test_long_rows_go_with_their_dialog(self):
        """The toolkit lays rows out whenever it has nothing else to do. A dialog that had to wait
        for that moment to be freed would hold up every one that comes after it.
        """
        # A screen reader may hold what it has read of them some seconds longer.
        host = self.start_host(environment={"NO_AT_BRIDGE": "1"})

        def show_and_close(**arguments):
            call = host.call(DIGITAL_IDS, **arguments)
            window = wait_until(lambda: next(
                (each for each, owner, _ in self.screen.x11.windows() if owner == host.pid), None))
            self.screen.x11.send_delete(window)
            self.assertEqual(CANCELLED, call.result())
            return host.heap()

        before = show_and_close()
        self.assertLess(show_and_close(count=500, name="Ж漢字 z " * 1600), before + 2**22)


class DigitalIds(SelectionCase):
    def test_what_is_shown(self):
        self.open_ids(name="Jane & Co", count=2, validFrom="2024-05-06", validTo="2034-05-06")
        self.assertEqual(
            ["Multiple Digital IDs found; please select an appropriate "
             "Digital ID from the list below:", "Valid From: ", "2024-05-06", "Valid To: ",
             "2034-05-06", ALWAYS, "OK", "Cancel"],
            self.window.texts(("label", "check box", "push button")))
        self.assertEqual(["Jane & Co", "Jane & Co"], self.rows())
        self.assertEqual(self.list, self.screen.focused())
        self.assertIn("default", self.ok().states)
        self.assertFalse(self.window.find("check box").checked)
        self.close()

    def test_the_directory_and_the_user_name_are_shown_when_there_is_a_directory(self):
        self.open_ids(name="Jane", count=2, directory="corp.example")
        texts = self.window.labels()
        at = texts.index(DIRECTORY)
        self.assertEqual(["corp.example", "User Principal Name (UPN)", "Jane"],
                         texts[at + 1:at + 4])
        self.close()

    def test_the_chosen_value_and_the_box_are_returned(self):
        for preset, toggle, expected in ((0, False, 0), (1, False, 1), (0, True, 1), (1, True, 0),
                                         (256, False, 1)):
            with self.subTest(preset=preset, toggle=toggle):
                self.open_ids(count=3, value=0xFEDCBA9876543210, alwaysUse=preset)
                box = self.window.find("check box")
                self.assertEqual(preset != 0, box.checked)
                if toggle:
                    self.screen.key("Tab")
                    self.screen.wait_focused(box)
                    self.screen.key("space")
                    wait_until(lambda: box.checked == (preset == 0))
                self.end(OK, "Return")
                chosen = self.call.output("chosen")
                self.assertEqual(0xFEDCBA9876543210, int.from_bytes(chosen[:8], "little"))
                self.assertEqual(expected, chosen[8])

    def test_every_way_out_without_ok_writes_nothing(self):
        for way in (lambda: self.window.find("push button", "Cancel").press(),
                    lambda: self.screen.key("Escape"),
                    lambda: self.screen.close_window(self.window)):
            self.open_ids(count=2, alwaysUse=1)
            way()
            self.end(CANCELLED)
            self.assertTrue(self.call.untouched("chosen"))

    def test_the_default_is_selected(self):
        for index, selected in ((0, 0), (2, 2), (3, 0), (4, 0), (0xFFFFFFFF, 0)):
            with self.subTest(index=index):
                self.open_ids(count=3, defaultIndex=index)
                self.expect_selected(selected)
                self.close()

    def test_the_arrow_keys_start_at_the_default(self):
        self.open_ids(count=4, defaultIndex=2)
        self.screen.key("Down")
        self.expect_selected(3)
        self.close()

    def test_without_rows_ok_is_disabled_and_nothing_counts_down(self):
        self.open_ids(count=0, autoSelect=1, directory="corp.example")
        self.assertFalse(self.ok().enabled)
        self.assertEqual("OK", self.ok().name)
        self.assertEqual([], [text for text in self.window.labels() if "XX" in text])
        self.screen.key("Return")
        self.end(CANCELLED, "Escape")

    def test_null_texts_fail_before_anything_is_shown(self):
        for arguments in ({"texts": None}, {"texts": None, "count": 0}, {"name": None},
                          {"validFrom": None}, {"validTo": None}, {"directory": None},
                          {"record": None}, {"chosen": None}):
            with self.subTest(**arguments):
                self.assertEqual(FAILED, self.host.call(DIGITAL_IDS, **arguments).result())
                self.assertEqual([], self.screen.titles(self.host))

    def test_long_values_do_not_widen_the_window(self):
        self.open_ids(count=2, directory="d.example")
        width = self.window.extents[2]
        self.close()
        self.open_ids(count=2, directory="d.example", validFrom="from " * 60, validTo="W" * 300)
        self.assertLessEqual(self.window.extents[2], width + 2)
        self.assertIn("from " * 60, self.window.labels())
        self.close()

    def test_the_tool_tip_of_a_value_that_is_cut_has_room_on_the_screen(self):
        texts = {"validFrom": "F" * 300, "validTo": "word " * 60, "name": "&" * 300}
        self.open_ids(count=2, directory="d.example", **texts)
        for text in texts.values():
            tool_tip = self.window.find("label", text).description
            self.assertEqual(text.replace(" ", ""), "".join(tool_tip.split()))
            self.assertLess(max(map(len, tool_tip.splitlines())), 100)
        self.close()

    def test_a_value_that_is_not_cut_has_no_tool_tip(self):
        self.open_ids(name="Jane", count=2, directory="d.example", validFrom="2024-01-01",
                      validTo="W" * 300)
        self.assertEqual({"2024-01-01": False, "W" * 300: True, "Jane": False},
                         {text: self.window.find("label", text).description != ""
                          for text in ("2024-01-01", "W" * 300, "Jane")})
        self.close()

    def test_tab_visits_list_box_and_buttons(self):
        self.open_ids(count=2)
        for name in (ALWAYS, "OK", "Cancel", self.list.name):
            self.screen.key("Tab")
            self.assertEqual(name, wait_until(
                lambda: (node := self.screen.focused()) and node.name == name and name,
                what=name, seen=self.screen.focused))
        self.close()

    def test_without_the_flag_nothing_counts_down(self):
        self.open_ids(count=2)
        began = time.monotonic()
        wait_until(lambda: time.monotonic() - began > 1.5 or self.left(), 5)
        self.assertEqual("", self.left())
        self.close()


class CountDown(SelectionCase):
    """Without the setting: 5 seconds."""

    def test_it_confirms_by_itself_after_5_seconds_while_the_name_stands_still(self):
        with Events(self.screen.bus) as events:
            call = self.host.call(DIGITAL_IDS, count=3, defaultIndex=1, autoSelect=1, value=42)
            self.assertEqual(OK, call.result())
            self.assertGreaterEqual(call.elapsed(), 5)
            self.assert_takes_at_most(6.5, call.elapsed())
            told = [left for left in events.descriptions(LEFT) if left != LEFT + "5"]
            self.assertEqual([f"{LEFT}{left}" for left in (4, 3, 2, 1)], told[:4])
            self.assertEqual([], events.names("OK"))
        self.assertEqual(42, int.from_bytes(call.output("chosen")[:8], "little"))


class CountDownWithTheKeyboard(SelectionCase):
    registry = timeout(12)

    def test_on_ok_a_few_of_the_seconds_are_told(self):
        self.open_ids(count=3, autoSelect=1, value=42)
        self.ok().focus()
        with Events(self.screen.bus) as events:
            self.end(OK)
            told = events.descriptions(LEFT)
        self.assertLessEqual(set(told), {LEFT + "10", LEFT + "5"})
        self.assertIn(LEFT + "5", told)


class LongCountDown(SelectionCase):
    """One that nobody waits for."""

    registry = timeout(600)

    def wait_second(self):
        """Waits until the count-down goes on."""
        before = self.left()
        wait_until(lambda: self.left() != before, what="a second to pass", seen=self.left)

    def expect_stopped(self, touch):
        self.open_ids(count=3, defaultIndex=1, autoSelect=1)
        self.wait_second()
        touch()
        self.wait_stopped()
        ok = self.ok()
        shown = self.screen.pixels(ok)
        began = time.monotonic()
        wait_until(lambda: self.screen.pixels(ok) != shown or time.monotonic() - began > 1.5, 5)
        self.assertEqual((shown, ""), (self.screen.pixels(ok), self.left()))
        self.assertFalse(self.call.done)

    def test_touching_the_list_ends_it_for_good(self):
        self.expect_stopped(lambda: self.screen.key("Down"))
        self.expect_selected(2)
        self.end(OK, "Return")

    def test_a_click_on_the_selected_row_ends_it_too(self):
        self.expect_stopped(lambda: self.list.find_all("table cell")[1].click())
        self.expect_selected(1)
        self.close()

    def test_a_single_row_counts_down_too_and_enter_does_not_wait(self):
        self.open_ids(count=1, autoSelect=1)
        self.wait_second()
        self.end(OK, "Return")

    def test_cancel_while_it_counts(self):
        self.open_ids(count=3, autoSelect=1)
        self.assertTrue(self.left().startswith(LEFT), self.ok())
        self.end(CANCELLED, "Escape")

    def test_the_close_box_while_it_counts_after_a_letter_was_typed(self):
        self.open_ids(count=3, autoSelect=1)
        self.screen.type_text("a")
        self.close()

    def test_the_button_does_not_shrink_while_it_counts(self):
        self.open_ids(count=3, autoSelect=1)
        width = self.ok().extents[2]
        self.wait_second()
        self.assertEqual(width, self.ok().extents[2])
        self.close()


class Touching(SelectionCase):
    """What ends a count-down, which would take ten minutes here, and what lets it run on."""
    registry = timeout(600)

    def open_counting(self, **arguments):
        self.open_ids(autoSelect=1, **{"count": 30, "name": "wide " * 60, **arguments})
        self.assertTrue(self.left().startswith(LEFT), self.ok())

    def in_list(self, x=0.3, y=0.3):
        """A place on the rows, as parts of the list's size."""
        left, top, width, height = self.list.extents
        return left + int(x * width), top + int(y * height)

    def bar(self, upright):
        return next(node for node in self.window.find_all("scroll bar")
                    if (node.extents[3] > node.extents[2]) == upright)

    def click_bar(self, upright):
        left, top, width, height = self.bar(upright).extents
        self.screen.x11.click(left + width - 8, top + height - 8)

    def drag_bar(self, upright):
        left, top, width, height = self.bar(upright).extents
        x, y = left + 8, top + 8
        self.screen.x11.drag((x, y), (x, y + 30) if upright else (x + 30, y))

    def expect_stopped(self, **touches):
        for name, touch in touches.items():
            with self.subTest(touch=name):
                self.open_counting()
                touch()
                self.wait_stopped()
                self.assertFalse(self.call.done)
                self.close()

    def expect_counting(self, act):
        """Does it, and sees the count go on."""
        act()
        before = self.left()
        wait_until(lambda: self.left() not in (before, ""), what="another second", seen=self.left)

    def test_each_key_ends_it_even_one_that_changes_nothing(self):
        self.expect_stopped(**{key: lambda key=key: self.screen.key(key) for key in
                               ("Up", "Home", "Left", "Down", "End", "Tab", "shift+Tab", "a", "F5",
                                "BackSpace", "Delete", "space", "ctrl+a", "Shift_L")})

    def test_each_mouse_button_ends_it(self):
        def click(button):
            return lambda: self.screen.x11.click(*self.in_list(0.3, 0.05), button)
        self.expect_stopped(left=click(1), middle=click(2), right=click(3), back=click(8))

    def test_the_wheel_ends_it(self):
        def turn(button):
            return lambda: self.screen.x11.click(*self.in_list(), button)
        self.expect_stopped(up=turn(4), down=turn(5), left=turn(6), right=turn(7))

    def test_the_wheel_over_a_scroll_bar_ends_it(self):
        def turn():
            left, top, width, height = self.bar(True).extents
            self.screen.x11.click(left + width // 2, top + height // 2, 5)
        self.expect_stopped(down=turn)

    def test_the_scroll_bars_end_it(self):
        self.expect_stopped(click=lambda: self.click_bar(True), drag=lambda: self.drag_bar(True),
                            click_across=lambda: self.click_bar(False),
                            drag_across=lambda: self.drag_bar(False))

    def test_a_click_below_the_rows_ends_it(self):
        self.open_counting(count=1, name="x")
        self.screen.x11.click(*self.in_list(0.5, 0.8))
        self.wait_stopped()
        self.close()

    def test_keys_that_the_list_does_not_get_let_it_run_on(self):
        self.open_counting()
        box = self.window.find("check box")
        box.focus()
        self.screen.wait_focused(box)
        self.expect_counting(lambda: self.screen.key("space", box))
        self.assertTrue(box.checked)
        self.screen.key("Tab", box)
        self.screen.wait_focused(self.ok())  # where not every second is told
        self.expect_counting(lambda: self.screen.key("shift+Tab"))
        self.close()

    def test_the_mouse_outside_of_the_list_lets_it_run_on(self):
        self.open_counting()
        heading = self.window.find_all("label")[0].extents
        for button in (1, 2, 3, 5):
            self.expect_counting(lambda: self.screen.x11.click(heading[0] + 5, heading[1] + 5,
                                                               button))
        self.expect_counting(lambda: self.screen.x11.point(*self.in_list()))
        self.close()


class AtOnce(SelectionCase):
    registry = timeout(0)

    def test_a_timeout_of_0_confirms_almost_at_once(self):
        with Events(self.screen.bus) as events:
            call = self.host.call(DIGITAL_IDS, count=3, defaultIndex=2, autoSelect=1, value=9)
            self.assertEqual(OK, call.result())
            self.assert_takes_at_most(1.5, call.elapsed())
            self.assertLessEqual(set(events.descriptions(LEFT)), {LEFT + "1", LEFT + "0"})
        self.assertEqual(9, int.from_bytes(call.output("chosen")[:8], "little"))

    def test_without_the_flag_it_waits_for_the_user(self):
        self.open_ids(count=2)
        self.assertEqual("", self.left())
        self.close()


class Setting(SelectionCase):
    registry = timeout(600)

    def expect_counts_from(self, seconds):
        """Some of them may have passed."""
        self.open_ids(count=2, autoSelect=1)
        left = int(self.left().removeprefix(LEFT))
        self.assertTrue(seconds - 200 < left <= seconds, left)
        self.close()

    @own_process_only("a helper lives from one DLG_Finalize to the next")
    def test_it_is_read_once_in_the_life_of_the_process(self):
        self.expect_counts_from(600)
        self.host.write_registry(timeout(900))
        self.host.run("DLG_Finalize")
        self.expect_counts_from(600)

    def test_a_dialog_without_the_flag_does_not_read_it(self):
        self.open_ids(count=2)
        self.close()
        self.host.write_registry(timeout(900))
        self.expect_counts_from(900)

    def test_a_value_of_another_type_counts_as_absent(self):
        host = self.start_host(registry=timeout('"3"'))
        with Events(self.screen.bus) as events:
            call = host.call(DIGITAL_IDS, count=2, autoSelect=1)
            self.assertEqual(OK, call.result())
            self.assertIn(events.descriptions(LEFT)[0], (LEFT + "5", LEFT + "4"))

    def test_the_row_tells_what_happens_by_itself(self):
        host = self.start_host(registry=timeout(600))
        call, window = self.show(host, DIGITAL_IDS, ID_TITLE, count=2, autoSelect=1)
        wait_until(lambda: "The selected Digital ID is confirmed automatically. " + LEFT in
                   window.find_all("table cell")[0].description, what="the row's description",
                   seen=window.dump, timeout=5)
        self.screen.close_window(window)
        self.assertEqual(CANCELLED, call.result())

    def test_a_large_value_has_its_room(self):
        host = self.start_host(registry=timeout(0xFFFFFFFF))
        call, window = self.show(host, DIGITAL_IDS, ID_TITLE, count=2, autoSelect=1)
        button = window.find("push button", "OK")
        self.assertEqual(LEFT + "2147483647", button.description)
        self.assertGreater(button.extents[2], 120)
        self.screen.close_window(window)
        self.assertEqual(CANCELLED, call.result())


if __name__ == "__main__":
    unittest.main()
