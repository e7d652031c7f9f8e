#!/usr/bin/python3
"""The choice of how to unblock a PIN, as a user and a host see it."""

import unittest

from stage import CANCELLED, FAILED, OK, WAYS_OUT, StageTestCase, wait_until

METHOD = "DLG_ShowSelectUnblockMethod"
PUK = "Unlock PIN using the PUK"
OFFLINE = "Unlock PIN via off-line PIN unlock"
EXPLANATION = ("Please select the unlocking algorithm from the drop-down box below. Your helpdesk "
               "can tell you which algorithm you should select.")
CHALLENGE = "3DES ECB Challenge/Response"
WITNESS = "3DES ECB Witness/Challenge/Response"


class MethodCase(StageTestCase):
    def setUp(self):
        super().setUp()
        self.host = self.start_host()

    def open(self, codes=(0, 1), **arguments):
        self.call, self.window = self.show(self.host, METHOD, "Unlock PIN", code=list(codes),
                                           **arguments)
        self.screen.wait_focused()

    def choices(self):
        """The radio buttons from top to bottom: {text: (enabled, set)}."""
        return {node.name: (node.enabled, node.checked)
                for node in self.window.in_reading_order() if node.role == "radio button"}

    def choose(self, text):
        self.window.find("radio button", text).press()
        self.expect_set(text)

    def expect_set(self, text):
        wait_until(lambda: [name for name, (_, is_set) in self.choices().items() if is_set]
                   == [text], what=f"{text} set", seen=self.choices)

    def list(self):
        """The text of the drop-down list, which has the keyboard."""
        return self.window.find("combo box").find("text")

    def rows(self):
        """All rows of the drop-down list."""
        menu = next(node for node in self.window.find("combo box").children
                    if node.role == "menu")
        return [row.name for row in menu.children]

    def move_to(self, row, key="Down"):
        """Goes on by keyboard, row by row: opens the list for each."""
        self.list().focus()
        for _ in range(20):
            before = self.list().text
            if before == row:
                return
            self.screen.key("Down", self.list())
            for each in (key, "Return"):
                self.screen.x11.key(each)
            wait_until(lambda: self.list().text != before, what="another row")
        self.fail(f"no row {row!r}")

    def details_enabled(self):
        """Whether the explanation and the list are enabled, which is one and the same."""
        parts = [*self.window.find_all("label"), self.window.find("combo box"), self.list()]
        states = {node.enabled for node in parts}
        self.assertEqual(1, len(states), parts)
        return states.pop()

    def expect_details(self, enabled):
        wait_until(lambda: self.details_enabled() == enabled, what=f"details enabled: {enabled}",
                   seen=self.window.dump)

    def end(self, key="Return"):
        self.screen.key(key)
        result = self.call.result()
        self.screen.wait_gone(self.window)
        return result

    def outputs(self):
        return self.call.number("method"), self.call.number("algorithm")

    def expect_untouched(self):
        self.assertTrue(self.call.untouched("method", "algorithm"))


class Layout(MethodCase):
    def test_everything_is_there_from_top_to_bottom(self):
        self.open()
        nodes = [node for node in self.window.in_reading_order() if node.role != "menu item"]
        roles = [node.role for node in nodes if node.role not in ("label", "redundant object")]
        self.assertEqual(["radio button", "separator", "radio button", "text", "push button",
                          "push button"], roles)
        self.assertEqual([PUK, OFFLINE], list(self.choices()))
        self.assertEqual([EXPLANATION], self.window.labels())
        self.assertEqual(["OK", "Cancel"], [node.name for node in nodes
                                            if node.role == "push button"])
        tops = [self.window.find("radio button", OFFLINE).extents[1],
                self.window.find_all("label")[0].extents[1],
                self.window.find("combo box").extents[1]]
        self.assertEqual(sorted(tops), tops)
        self.end("Escape")

    def test_without_the_puk_its_choice_and_the_line_are_left_out(self):
        self.open()
        with_puk = self.window.extents[3]
        self.end("Escape")
        self.open(pukOffered=0)
        self.assertEqual([OFFLINE], list(self.choices()))
        self.assertEqual([], self.window.find_all("separator"))
        self.assertLess(self.window.extents[3], with_puk)
        self.end("Escape")

    def test_any_flag_but_zero_offers_the_puk(self):
        for flag in (-2147483648, -1, 2, 2147483647):
            self.open(pukOffered=flag)
            self.assertEqual([PUK, OFFLINE], list(self.choices()))
            self.end("Escape")

    def test_codes_are_listed_in_the_order_of_the_array(self):
        for codes, rows in (([0], [CHALLENGE]), ([0, 1], [CHALLENGE, WITNESS]),
                            ([1, 0], [WITNESS, CHALLENGE]), ([1, 1, 0], [WITNESS, WITNESS, CHALLENGE])):
            with self.subTest(codes=codes):
                self.open(codes)
                self.assertEqual(rows, self.rows())
                self.assertEqual(rows[0], self.list().text)
                self.end("Escape")

    def test_an_unknown_code_has_a_row_that_says_it(self):
        self.open([7, 1, 4294967295], pukOffered=0)
        self.assertEqual(["Unknown algorithm (7)", WITNESS, "Unknown algorithm (4294967295)"],
                         self.rows())
        self.move_to(WITNESS)
        self.assertEqual((OK, (2, 1)), (self.end(), self.outputs()))

    def test_the_list_cannot_be_typed_into(self):
        self.open(pukOffered=0)
        self.list().focus()
        self.screen.type_text("x", self.list())
        self.screen.key("Delete", self.list())
        self.move_to(WITNESS)
        self.assertNotIn("editable", self.list().states)
        self.assertEqual(WITNESS, self.list().text)
        self.end("Escape")


class FirstState(MethodCase):
    def test_opens_with_the_first_method_that_is_offered(self):
        for arguments, choices in (
                ({}, {PUK: (True, True), OFFLINE: (True, False)}),
                ({"codes": []}, {PUK: (True, True), OFFLINE: (False, False)}),
                ({"pukOffered": 0}, {OFFLINE: (True, True)}),
                ({"pukOffered": 0, "codes": []}, {OFFLINE: (False, False)})):
            with self.subTest(**arguments):
                self.open(**arguments)
                self.assertEqual(choices, self.choices())
                offline = choices[OFFLINE][1]
                self.assertEqual(offline, self.details_enabled())
                self.assertEqual(any(enabled for enabled, _ in choices.values()),
                                 self.window.find("push button", "OK").enabled)
                self.end("Escape")

    def test_the_keyboard_starts_at_the_set_choice(self):
        for arguments, focused in (({}, PUK), ({"codes": []}, PUK), ({"pukOffered": 0}, OFFLINE),
                                   ({"pukOffered": 0, "codes": []}, "Cancel")):
            with self.subTest(**arguments):
                self.open(**arguments)
                self.assertEqual(focused, self.screen.focused().name)
                self.end("Escape")


class Choosing(MethodCase):
    def test_details_are_enabled_exactly_while_offline_is_set(self):
        self.open()
        for choice, enabled in ((OFFLINE, True), (PUK, False), (OFFLINE, True)):
            self.choose(choice)
            self.expect_details(enabled)
        self.end("Escape")

    def test_with_only_the_puk_set_the_list_is_disabled_and_the_index_still_its_selection(self):
        self.open()
        self.choose(OFFLINE)
        self.move_to(WITNESS)
        self.choose(PUK)
        self.expect_details(False)
        self.assertEqual(WITNESS, self.list().text)
        self.window.find("push button", "OK").press()
        self.assertEqual((OK, (1, 1)), (self.call.result(), self.outputs()))

    def test_of_an_array_of_1_and_0_row_0_is_the_witness_variant_with_index_0(self):
        self.open([1, 0])
        self.choose(OFFLINE)
        self.move_to(CHALLENGE)
        self.move_to(WITNESS, "Up")
        self.assertEqual((OK, (2, 0)), (self.end(), self.outputs()))

    def test_method_and_index_of_every_choice(self):
        for arguments, choice, row, outputs in (
                ({}, PUK, None, (1, 0)),
                ({}, OFFLINE, CHALLENGE, (2, 0)),
                ({}, OFFLINE, WITNESS, (2, 1)),
                ({"codes": [1, 0]}, OFFLINE, CHALLENGE, (2, 1)),
                ({"codes": []}, PUK, None, (1, 0)),
                ({"pukOffered": 0}, OFFLINE, CHALLENGE, (2, 0)),
                ({"pukOffered": 0}, OFFLINE, WITNESS, (2, 1))):
            with self.subTest(choice=choice, row=row, **arguments):
                self.open(**arguments)
                self.choose(choice)
                if row is not None:
                    self.expect_details(True)
                    self.move_to(row)
                self.window.find("push button", "OK").press()
                self.assertEqual((OK, outputs), (self.call.result(), self.outputs()))
                self.screen.wait_gone(self.window)

    def test_rows_of_the_same_name_keep_their_own_index(self):
        self.open([0, 0, 0], pukOffered=0)
        self.list().focus()
        self.screen.key("alt+Down", self.list())
        row = wait_until(lambda: (rows := self.popped_up()) and rows[2])
        row.press()
        wait_until(lambda: not self.popped_up(), what="the end of the list")
        self.window.find("push button", "OK").press()
        self.assertEqual((OK, (2, 2)), (self.call.result(), self.outputs()))

    def popped_up(self):
        return [node for window in self.screen.windows(self.host) if window != self.window
                for node in window.find_all("menu item")]

    def test_the_mouse_chooses_as_well(self):
        self.open()
        self.window.find("radio button", OFFLINE).click()
        self.expect_details(True)
        self.window.find("push button", "OK").click()
        self.assertEqual((OK, (2, 0)), (self.call.result(), self.outputs()))


class Keyboard(MethodCase):
    def test_from_start_to_ok(self):
        self.open()
        self.screen.key("Down")
        self.expect_set(OFFLINE)
        self.expect_details(True)
        self.screen.key("Tab")
        self.screen.wait_focused(self.list())
        for key in ("Down", "Down", "Return"):
            self.screen.x11.key(key)
        wait_until(lambda: self.list().text == WITNESS)
        self.screen.wait_focused(self.list())
        self.assertEqual((OK, (2, 1)), (self.end("Return"), self.outputs()))

    def test_down_space_and_alt_down_open_the_list(self):
        self.open(pukOffered=0)
        self.list().focus()
        for key in ("Down", "space", "alt+Down"):
            self.screen.key(key, self.list())
            wait_until(lambda: len(self.screen.windows(self.host)) == 2, what=f"the list by {key}")
            self.screen.x11.key("Escape")
            self.screen.wait_focused(self.list())
            wait_until(lambda: len(self.screen.windows(self.host)) == 1, what="the list's end")
        self.assertEqual(CANCELLED, self.end("Escape"))

    def test_a_click_on_the_text_opens_the_list(self):
        self.open(pukOffered=0)
        self.list().click()
        wait_until(lambda: len(self.screen.windows(self.host)) == 2, what="the list")
        for key in ("Down", "Return"):
            self.screen.x11.key(key)
        wait_until(lambda: self.list().text == WITNESS)
        self.screen.wait_focused(self.list())
        self.assertEqual((OK, (2, 1)), (self.end("Return"), self.outputs()))

    def test_enter_on_a_choice_presses_ok(self):
        self.open()
        self.assertEqual((OK, (1, 0)), (self.end("Return"), self.outputs()))

    def test_tab_visits_everything_once_from_top_to_bottom(self):
        self.open()
        self.choose(OFFLINE)
        self.window.find("radio button", OFFLINE).focus()
        visited = []
        for _ in range(4):
            self.screen.key("Tab")
            visited.append(self.screen.wait_focused().name)
        self.assertEqual(["Unlocking algorithm", "OK", "Cancel", OFFLINE], visited)
        self.end("Escape")

    def test_escape_closes_a_list_that_is_open_before_the_dialog(self):
        self.open(pukOffered=0)
        self.list().focus()
        self.screen.key("alt+Down", self.list())
        wait_until(lambda: len(self.screen.windows(self.host)) == 2, what="the list")
        self.screen.x11.key("Escape")
        self.screen.wait_focused(self.list())
        self.assertFalse(self.call.done)
        self.assertEqual(CANCELLED, self.end("Escape"))


class ManyAlgorithms(MethodCase):
    """More of them than a menu can have."""

    def test_they_drop_down_and_each_can_be_chosen(self):
        self.open([*[0] * 4999, 1], pukOffered=0)
        self.screen.key("Tab")
        self.screen.wait_focused(self.list())
        for keys, row in ((["alt+Down", "End", "Return"], WITNESS),
                          (["alt+Down", "Up", "Return"], CHALLENGE),
                          (["Down", "Down", "Return"], WITNESS)):
            for key in keys:
                self.screen.x11.key(key)
            wait_until(lambda: self.list().text == row, what=row, seen=lambda: self.list().text)
        self.screen.wait_focused(self.list())
        self.assertEqual((OK, (2, 4999)), (self.end("Return"), self.outputs()))

    def test_escape_closes_the_list_before_the_dialog(self):
        self.open([0] * 300, pukOffered=0)
        self.list().focus()
        windows = len(self.screen.windows(self.host))
        self.screen.key("alt+Down", self.list())
        wait_until(lambda: len(self.screen.windows(self.host)) > windows, what="the list")
        self.screen.x11.key("Escape")
        self.screen.wait_focused(self.list())
        self.assertFalse(self.call.done)
        self.assertEqual(CANCELLED, self.end("Escape"))


class WaysOut(MethodCase):
    def test_every_way_out_but_ok_cancels_and_writes_nothing(self):
        for arguments in ({}, {"pukOffered": 0, "codes": []}):
            for way, leave in WAYS_OUT.items():
                with self.subTest(way=way, **arguments):
                    self.open(**arguments)
                    leave(self.screen, self.window)
                    self.assertEqual(CANCELLED, self.call.result())
                    self.expect_untouched()
                    self.screen.wait_gone(self.window)

    def test_enter_does_nothing_where_no_method_is_offered(self):
        self.open([], pukOffered=0)
        ok = self.window.find("push button", "OK")
        self.assertFalse(ok.enabled)
        ok.click()
        self.assertEqual("Cancel", self.screen.focused().name)
        self.assertEqual(CANCELLED, self.end("Return"))
        self.expect_untouched()


class BadArguments(MethodCase):
    def test_nulls_fail_before_anything_is_shown(self):
        for arguments in ({"algorithms": None, "count": 1},
                          {"algorithms": None, "count": 4294967295},
                          {"method": None}, {"algorithm": None}):
            with self.subTest(**arguments):
                call = self.host.call(METHOD, **arguments)
                self.assertEqual(FAILED, call.result())
                self.assertTrue(call.untouched("method", "algorithm"))
        self.assertEqual([], self.screen.titles(self.host))

    def test_a_null_array_of_no_codes_is_no_algorithms(self):
        self.open([], algorithms=None)
        self.assertEqual({PUK: (True, True), OFFLINE: (False, False)}, self.choices())
        self.assertEqual((OK, (1, 0)), (self.end(), self.outputs()))

    def test_a_count_below_the_array_lists_the_first_codes_only(self):
        self.open([1, 0], count=1)
        self.assertEqual([WITNESS], self.rows())
        self.end("Escape")


if __name__ == "__main__":
    unittest.main()
