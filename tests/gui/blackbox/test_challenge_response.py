#!/usr/bin/python3
"""Off-line unlock with challenge and response, as a user and a host see it."""

import unittest

from stage import CANCELLED, FAILED, OK, WAYS_OUT, StageTestCase, registry, wait_until

UNLOCK = "DLG_ShowUnblockThroughCR"
DIGITS = "0123456789abcdef"
BYTES = bytes.fromhex(DIGITS)
RULE = "Response is 8 bytes long"
PIN_RULES = ["Minimum PIN length 4 bytes", "Maximum PIN length 8 bytes",
             "PIN equal to Confirmed PIN"]
WIDTH, HEIGHT = 1024, 768


class UnlockCase(StageTestCase):
    registry = None

    def setUp(self):
        super().setUp()
        self.host = self.start_host(registry=self.registry)

    def open(self, **arguments):
        self.call, self.window = self.show(self.host, UNLOCK, "Unlock PIN", **arguments)
        self.response = self.window.find("text", "Response")
        self.screen.wait_focused(self.response)
        self.pins = self.window.find_all("password text")
        self.fields = [self.response, *self.pins]

    def type(self, *values):
        """Types behind what the fields hold: the response, the new PIN, its confirmation."""
        for field, value in zip(self.fields, values):
            if value:
                field.focus()
                self.screen.key("End", field)
                length = field.length
                self.screen.type_text(value, field)
                wait_until(lambda: field.length == length + len(value),
                           what=f"{len(value)} more characters", seen=self.window.dump)

    def states(self):
        """The rules with an icon, from top to bottom: {rule: met}."""
        found = {}
        for node in self.window.in_reading_order():
            for prefix, met in (("Met: ", True), ("Not met: ", False)):
                if node.role == "icon" and node.name.startswith(prefix):
                    found[node.name.removeprefix(prefix)] = met
        return found

    def expect(self, *met):
        """Waits for the states of all rules, and for OK to be enabled when all are met."""
        wait_until(lambda: list(self.states().values()) == list(met), what=f"the states {met}",
                   seen=self.states)
        wait_until(lambda: self.ok().enabled == all(met), what=f"OK enabled: {all(met)}",
                   seen=self.window.dump)

    def ok(self):
        return self.window.find("push button", "OK")

    def press_ok(self):
        self.ok().press()
        return self.call.result()

    def expect_text(self, text, caret=None):
        wait_until(lambda: self.response.text == text and caret in (None, self.response.caret),
                   what=f"the response {text!r}, caret {caret}",
                   seen=lambda: (self.response.text, self.response.caret))

    def expect_unlocked(self, response, new_pin=None):
        self.assertEqual(OK, self.press_ok())
        self.assertEqual(response, self.call.value("response"))
        if new_pin is not None:
            self.assertEqual(new_pin, self.call.value("newPin"))

    def expect_nothing_written(self, response=64, new_pin=64):
        self.assertTrue(self.call.untouched("response", "newPin"))
        self.assertEqual((response, new_pin), (self.call.output("responseLength"),
                                               self.call.output("newPinLength")))

    def cancel(self):
        self.screen.close_window(self.window)
        self.assertEqual(CANCELLED, self.call.result())
        self.screen.wait_gone(self.window)

    def challenge(self):
        return self.window.find("text", "Challenge").text


class Layout(UnlockCase):
    def test_everything_is_there_from_top_to_bottom(self):
        self.open(label="Card & co", serial="SN & 1", askNewPin=1)
        self.assertEqual(
            ['Unlocking the PIN for "Card & co":', "Challenge:", "Token serial number:", "SN & 1",
             "Response:", RULE, "Enter new PIN:", "Confirm new PIN:", *PIN_RULES],
            self.window.labels())
        self.assertEqual([RULE, *PIN_RULES], list(self.states()))
        self.assertEqual(["Enter new PIN", "Confirm new PIN"], [field.name for field in self.pins])
        self.assertEqual(["OK", "Cancel"], [node.name for node in self.window.in_reading_order()
                                            if node.role == "push button"])
        self.assertIn("default", self.ok().states)
        self.cancel()

    def test_without_a_new_pin_its_fields_and_rules_are_left_out(self):
        self.open(askNewPin=0)
        self.assertEqual(['Unlocking the PIN for "Token":', "Challenge:", "Token serial number:",
                          "SN-1", "Response:", RULE], self.window.labels())
        self.assertEqual(([], {RULE: False}), (self.pins, self.states()))
        self.cancel()

    def test_any_flag_but_zero_asks_for_a_new_pin(self):
        for flag in (-2147483648, -1, 2):
            self.open(askNewPin=flag)
            self.assertEqual(2, len(self.pins))
            self.cancel()

    def test_icon_and_rule_of_the_response_stand_beside_its_field(self):
        self.open()
        left, top, width, height = self.response.extents
        icon = self.window.find("icon", "Not met: " + RULE)
        label = self.window.find("label", RULE)
        self.assertTrue(left + width < icon.extents[0] < label.extents[0])
        for node in (icon, label):
            _, y, _, node_height = node.extents
            self.assertTrue(abs(y + node_height / 2 - (top + height / 2)) <= 2, node.extents)
        self.assertEqual((16, 16), icon.extents[2:])
        self.cancel()

    def test_icons_are_a_red_cross_and_a_green_tick(self):
        self.open(askNewPin=1)
        for met, colour, other in ((False, (255, 0, 0), (0, 255, 0)),
                                   (True, (0, 255, 0), (255, 0, 0))):
            for rule, state in self.states().items():
                if state == met:
                    icon = self.window.find("icon", ("Met: " if met else "Not met: ") + rule)
                    pixels = self.screen.pixels(icon)
                    self.assertIn(colour, pixels)
                    self.assertNotIn(other, pixels)
        self.cancel()

    def test_the_response_is_readable_while_it_is_typed(self):
        self.open()
        self.type("12")
        self.assertEqual("12", self.response.text)
        self.cancel()


class Challenge(UnlockCase):
    def test_it_is_upper_case_hexadecimal_without_separators(self):
        for data, text in ((b"", ""), (b"\x00", "00"), (BYTES, DIGITS.upper()),
                           (bytes(range(256)), bytes(range(256)).hex().upper())):
            with self.subTest(length=len(data)):
                self.open(challenge=data.hex())
                self.assertEqual(text, self.challenge())
                self.cancel()

    def test_it_can_be_copied_but_not_changed(self):
        self.open()
        field = self.window.find("text", "Challenge")
        field.focus()
        self.screen.type_text("12", field)
        self.screen.key("ctrl+a", field)
        self.screen.key("Delete", field)
        self.screen.key("ctrl+c", field)
        wait_until(lambda: self.screen.clipboard() == DIGITS.upper(), what="the copy",
                   seen=self.screen.clipboard)
        self.assertEqual(DIGITS.upper(), self.challenge())
        self.cancel()

    def test_it_has_equally_wide_characters_and_is_larger_than_the_labels(self):
        self.open(challenge="01a5")
        field = self.window.find("text", "Challenge")
        extents = [field.character_extents(place) for place in range(4)]
        self.assertEqual(1, len({width for _, _, width, _ in extents}), extents)
        label = self.window.find("label", "Challenge:").character_extents(0)
        self.assertGreater(extents[0][3], label[3])
        self.cancel()

    def test_its_digits_stand_in_groups_of_four(self):
        for digits in (DIGITS, DIGITS * 2):
            self.open(challenge=digits)
            field = self.window.find("text", "Challenge")
            extents = [field.character_extents(place) for place in range(len(digits))]
            widths = [width for _, _, width, _ in extents]
            self.assertLess(max(widths[1::4] + widths[2::4]), min(widths[4::4]))
            self.assertEqual(1, len({top for _, top, _, _ in extents}))
            self.assertLess(field.extents[3], 2 * extents[0][3])
            self.cancel()

    def test_lines_of_letters_have_their_room(self):
        self.open(challenge="ff" * 64)
        field = self.window.find("text", "Challenge")
        left, top, width, height = field.character_extents(127)
        right, bottom = field.extents[0] + field.extents[2], field.extents[1] + field.extents[3]
        self.assertTrue(left + width <= right and top + height <= bottom, self.window.dump())
        self.cancel()

    def test_a_long_one_does_not_widen_the_window(self):
        self.open(challenge="a5" * 16)
        usual = self.window.extents
        self.cancel()
        for length in (17, 64, 200, 4096):
            with self.subTest(length=length):
                self.open(challenge="a5" * length)
                self.assertEqual("A5" * length, self.challenge())
                _, _, width, height = self.window.extents
                self.assertEqual(usual[2], width)
                self.assertLess(height, 400)
                self.cancel()

    def test_a_long_one_is_shown_from_its_start(self):
        self.open(challenge="00" + "a5" * 300)
        field = self.window.find("text", "Challenge")
        top = field.extents[1]
        self.assertTrue(top <= field.character_extents(0)[1] < top + 30)
        pane = next(node for node in self.window.find_all("scroll pane")
                    if field in node.children)
        self.assertLess(field.extents[2] + 8, pane.extents[2])  # the scroll bar has its own room
        self.cancel()


class LongTexts(UnlockCase):
    def test_long_names_are_cut_and_the_dialog_fits_the_screen(self):
        words = ("many words " * 28)[:300]
        for text in ("W" * 300, words, "&" * 300):
            with self.subTest(text=text[:5]):
                self.open(label=text, serial=text, challenge="a5" * 64, askNewPin=1,
                          responseLength=-2147483648, min=-2147483648, max=2147483647)
                x, y, width, height = self.window.extents
                self.assertTrue(x >= 0 and y >= 0 and x + width <= WIDTH and y + height <= HEIGHT,
                                self.window.extents)
                whole = f'Unlocking the PIN for "{text}":'
                heading = self.window.find("panel", whole)
                tool_tip = heading.description
                self.assertEqual("".join(whole.split()), "".join(tool_tip.split()))
                self.assertLess(max(map(len, tool_tip.splitlines())), 100)
                self.assertEqual(1, len(self.window.find_all("label", text)))
                self.assertEqual("\u2026", heading.children[-1].text[-1])
                self.cancel()

    def test_a_name_of_two_lines_is_wrapped_and_whole(self):
        label = "a card with quite a long name, " * 3
        self.open(label=label, serial=label)
        lines = self.window.labels()
        heading = " ".join(lines[:lines.index("Challenge:")])
        self.assertEqual(f'Unlocking the PIN for "{label}":', heading)
        self.assertLess(self.window.extents[2], WIDTH)
        self.cancel()

    def test_line_breaks_and_bad_bytes_of_the_host_are_shown(self):
        self.open(label="one\n\ntwo", serial=b"M\xfcller")
        lines = self.window.labels()
        self.assertEqual(['Unlocking the PIN for "one\n\ntwo":', "Challenge:"], lines[:2])
        self.assertIn("M\ufffdller", lines)
        self.cancel()


class Response(UnlockCase):
    def test_sixteen_digits_are_eight_bytes_with_or_without_blanks(self):
        for text in (DIGITS, "0123 4567 89ab cdef", "01 23 45 67 89 ab cd ef",
                     "  0 1234567 89abcde f  ", "0123456789ABCDEF", "0123456789aBcDeF"):
            with self.subTest(text=text):
                self.open()
                self.expect(False)
                self.type(text)
                self.expect(True)
                self.expect_unlocked(BYTES)

    def test_fifteen_digits_leave_ok_disabled(self):
        self.open()
        self.type(DIGITS[:15])
        self.expect(False)
        self.screen.key("Return", self.response)
        self.type(DIGITS[15])
        self.expect(True)
        self.assertFalse(self.call.done)
        self.expect_unlocked(BYTES)

    def test_seventeen_digits_count_as_eight_bytes(self):
        self.open()
        self.type(DIGITS + "0")
        self.expect(True)
        self.expect_unlocked(BYTES)

    def test_eighteen_digits_are_a_byte_too_many(self):
        self.open()
        self.type(DIGITS + "00")
        self.expect(False)
        self.cancel()

    def test_other_characters_are_not_taken_when_typed(self):
        self.open()
        self.type("12")
        self.screen.type_text("gGxX-:.,\u00e9\u20ac3 ", self.response)
        self.expect_text("123 ", 4)
        self.cancel()

    def test_a_character_that_is_refused_in_the_middle_moves_nothing(self):
        self.open()
        self.type("1122")
        self.put_caret(2)
        self.screen.type_text("gg3g4g", self.response)
        self.expect_text("113422", 4)
        self.cancel()

    def put_caret(self, place):
        self.screen.key("Home", self.response)
        for _ in range(place):
            self.screen.key("Right", self.response)
        wait_until(lambda: self.response.caret == place, what=f"the caret at {place}")

    def paste(self, text):
        self.screen.paste(text, self.response)

    def test_good_text_can_be_pasted(self):
        self.open()
        self.paste("0123 4567 89ab CDEF")
        self.expect_text("0123 4567 89ab CDEF", 19)
        self.expect(True)
        self.expect_unlocked(BYTES)

    def test_pasting_a_text_with_a_letter_g_reverts_to_the_accepted_text(self):
        for bad in ("g", "01g3", "0123456789abcdeg", "01\n23", "\u0660", "0x12"):
            with self.subTest(bad=bad):
                self.open()
                self.type("1122")
                self.put_caret(2)
                self.paste(bad)
                self.screen.type_text("a b")  # shows that the paste has been dealt with
                self.expect_text("11a b22", 5)
                self.cancel()

    def test_a_refused_paste_leaves_caret_and_rules_as_they_were(self):
        self.open()
        self.type(DIGITS)
        self.expect(True)
        self.put_caret(7)
        self.paste("no")
        self.screen.key("shift+Right", self.response)
        wait_until(lambda: self.response.caret == 8, what="the caret one to the right",
                   seen=lambda: self.response.caret)
        self.expect_text(DIGITS)
        self.expect(True)
        self.cancel()

    def test_a_refused_paste_over_a_selection_gives_the_selection_s_text_back(self):
        self.open()
        for select, text, caret in ("shift+Right", "11252", 4), ("ctrl+a", "11225", 5):
            for refuse in self.paste, self.screen.type_text:
                self.response.set_text("1122")
                self.put_caret(2)
                self.screen.key(select, self.response)
                refuse("x")
                self.screen.type_text("5")
                self.expect_text(text, caret)
        self.cancel()

    def test_text_set_by_assistive_technology_is_held_to_the_same_characters(self):
        self.open()
        self.response.set_text("12 34")
        self.expect_text("12 34")
        for bad in ("12g4", "g", "1\n2", "\u6f22"):
            self.response.set_text(bad)
            self.expect_text("12 34")
        self.response.set_text("")
        self.expect_text("")
        self.response.set_text(DIGITS)
        self.expect(True)
        self.cancel()

    def test_a_huge_paste_is_survived(self):
        self.open()
        before = self.window.extents
        self.paste("\u6f22" * 100_000)
        self.paste("12")
        self.expect_text("12")
        self.paste("a5 " * 100_000)
        wait_until(lambda: self.response.length > 10_000, 30, "a long text")
        self.expect(False)
        self.assertEqual(before, self.window.extents)
        self.screen.key("ctrl+a", self.response)
        self.paste(DIGITS)
        self.expect_text(DIGITS)
        self.expect(True)
        self.expect_unlocked(BYTES)

    def test_other_expected_lengths(self):
        for length, text, response in ((1, "ff", b"\xff"), (16, DIGITS * 2, BYTES * 2),
                                       (40, "a5" * 40, b"\xa5" * 40)):
            with self.subTest(length=length):
                self.open(responseLength=length)
                self.assertEqual({f"Response is {length} bytes long": False}, self.states())
                self.type(text)
                self.expect(True)
                self.expect_unlocked(response)

    def test_a_length_of_0_is_met_by_nothing_at_all(self):
        self.open(responseLength=0)
        self.expect(True)
        self.type("1")
        self.expect(True)
        self.type("2")
        self.expect(False)
        self.screen.key("BackSpace", self.response)
        self.expect(True)
        self.expect_unlocked(b"")

    def test_a_negative_length_is_met_by_nothing(self):
        for length in (-1, -2147483648):
            self.open(responseLength=length)
            self.assertEqual({f"Response is {length} bytes long": False}, self.states())
            self.type("12")
            self.expect(False)
            self.cancel()


class NewPin(UnlockCase):
    def test_ok_only_when_response_length_and_equality_hold(self):
        self.open(askNewPin=1)
        self.expect(False, False, True, True)
        self.type(DIGITS)
        self.expect(True, False, True, True)
        self.type("", "1234", "123")
        self.expect(True, False, True, False)
        self.type("", "", "4")
        self.expect(True, True, True, True)
        self.type("", "5678", "5678")
        self.expect(True, True, True, True)
        self.type("", "9", "9")
        self.expect(True, True, False, True)
        self.screen.key("BackSpace", self.pins[1])
        self.expect(True, True, False, False)
        self.pins[0].focus()
        self.screen.key("End")
        self.screen.key("BackSpace", self.pins[0])
        self.expect(True, True, True, True)
        self.response.focus()
        self.screen.key("End")
        self.screen.key("BackSpace", self.response)
        self.expect(False, True, True, True)
        self.type("f")
        self.expect(True, True, True, True)
        self.expect_unlocked(BYTES, b"12345678")

    def test_equal_length_with_other_characters_is_not_equal(self):
        self.open(askNewPin=1)
        self.type(DIGITS, "1234", "1243")
        self.expect(True, True, True, False)
        self.cancel()

    def test_the_second_field_is_judged_when_the_first_passes(self):
        self.open(askNewPin=1)
        self.type(DIGITS, "123456789", "")
        self.expect(True, True, False, False)
        self.cancel()
        self.open(askNewPin=1)
        self.type(DIGITS, "1234", "123456789")
        self.expect(True, True, False, False)
        self.cancel()

    def test_odd_bounds(self):
        for bounds, pin, states in (((0, 0), "", (True, True, True)),
                                    ((-1, 8), "", (True, True, True)),
                                    ((-2147483648, 2147483647), "1", (True, True, True)),
                                    ((0, -1), "", (True, False, True)),
                                    ((2147483647, 2147483647), "1234", (False, True, True)),
                                    ((8, 4), "123456", (False, False, True))):
            with self.subTest(bounds=bounds):
                self.open(askNewPin=1, min=bounds[0], max=bounds[1])
                self.assertIn(f"Minimum PIN length {bounds[0]} bytes", self.states())
                self.assertIn(f"Maximum PIN length {bounds[1]} bytes", self.states())
                self.type(DIGITS, pin, pin)
                self.expect(True, *states)
                if all(states):
                    self.expect_unlocked(BYTES, pin.encode())
                else:
                    self.cancel()

    def test_the_fields_show_no_pin(self):
        self.open(askNewPin=1)
        self.type("", "13579", "13579")
        for field in self.pins:
            self.assertEqual(1, len(set(field.text)))
            self.assertNotIn("1", field.text)
        self.cancel()

    def test_the_window_stays_as_it_is_while_somebody_types(self):
        self.open(askNewPin=1)
        before = self.window.extents
        places = [node.extents for node in self.window.find_all("icon")]
        self.type(DIGITS, "1234", "1234")
        self.expect(True, True, True, True)
        self.assertEqual(before, self.window.extents)
        self.assertEqual(places, [node.extents for node in self.window.find_all("icon")])
        self.cancel()


class AsciiOnly(UnlockCase):
    """Without the setting."""

    def test_other_characters_are_refused_in_pins_typed_or_pasted(self):
        self.open(askNewPin=1)
        self.pins[0].focus()
        self.screen.type_text("\u00e912\u20ac34", self.pins[0])
        wait_until(lambda: self.pins[0].length == 4, what="the four digits")
        self.pins[1].focus()
        self.screen.paste("1\u00e923\u6f224", self.pins[1])
        wait_until(lambda: self.pins[1].length == 4, what="the four digits")
        self.type(DIGITS)
        self.expect(True, True, True, True)
        self.expect_unlocked(BYTES, b"1234")

    def test_text_set_by_assistive_technology_is_filtered_too(self):
        self.open(askNewPin=1)
        for field in self.pins:
            field.set_text("1\u00e9234")
            wait_until(lambda: field.length == 4, what="the four digits")
        self.type(DIGITS)
        self.expect(True, True, True, True)
        self.expect_unlocked(BYTES, b"1234")


class AsciiOnlyBySetting(AsciiOnly):
    registry = registry(("", "LimitPinToAscii", 1))


class AllCharacters(UnlockCase):
    registry = registry(("", "LimitPinToAscii", 0))

    def test_lengths_are_bytes(self):
        self.open(askNewPin=1)
        self.type(DIGITS, "\u00e9", "\u00e9")
        self.expect(True, False, True, True)
        self.type("", "\u00e9", "\u00e9")
        self.expect(True, True, True, True)
        self.type("", "\u00e9\u20ac", "\u00e9\u20ac")
        self.expect(True, True, False, True)
        for field in self.pins:
            field.focus()
            self.screen.key("End", field)
            self.screen.key("BackSpace", field)
        self.expect(True, True, True, True)
        self.expect_unlocked(BYTES, "\u00e9\u00e9\u00e9".encode())

    def test_capacity_is_counted_in_bytes(self):
        for capacity, result in ((4, OK), (3, FAILED)):
            self.open(askNewPin=1, newPinCapacity=capacity)
            self.type(DIGITS, "\u00e9\u00e9", "\u00e9\u00e9")
            self.expect(True, True, True, True)
            self.assertEqual(result, self.press_ok())
            if result == OK:
                self.assertEqual("\u00e9\u00e9".encode(), self.call.value("newPin"))
            else:
                self.expect_nothing_written(new_pin=3)

    def test_the_response_takes_no_more_for_it(self):
        self.open(askNewPin=1)
        self.screen.type_text("1\u00e92", self.response)
        self.expect_text("12")
        self.cancel()


class Delivery(UnlockCase):
    def unlock(self, **arguments):
        self.open(**arguments)
        pin = "2468" if arguments.get("askNewPin") else ""
        self.type(DIGITS, pin, pin)
        wait_until(lambda: self.ok().enabled)
        return self.press_ok()

    def test_response_and_pin_reach_the_host(self):
        self.assertEqual(OK, self.unlock(askNewPin=1))
        self.assertEqual((BYTES, b"2468"),
                         (self.call.value("response"), self.call.value("newPin")))

    def test_pin_fields_are_left_alone_when_none_was_asked_for(self):
        for arguments in ({}, {"newPin": None}, {"newPinCapacity": 0}):
            with self.subTest(**arguments):
                self.assertEqual(OK, self.unlock(**arguments))
                self.assertEqual(BYTES, self.call.value("response"))
                self.assertTrue(self.call.untouched("newPin"))
                self.assertEqual(arguments.get("newPinCapacity", 64),
                                 self.call.output("newPinLength"))

    def test_values_as_long_as_their_buffers_fit(self):
        self.assertEqual(OK, self.unlock(askNewPin=1, responseCapacity=8, newPinCapacity=4))
        self.assertEqual((BYTES, b"2468"),
                         (self.call.value("response"), self.call.value("newPin")))

    def test_when_one_value_does_not_fit_nothing_is_written(self):
        for ask, arguments in ((0, {"responseCapacity": 7}), (0, {"response": None}),
                               (1, {"responseCapacity": 7}), (1, {"newPinCapacity": 3}),
                               (1, {"response": None}), (1, {"newPin": None}),
                               (1, {"newPin": None, "newPinCapacity": 0})):
            with self.subTest(askNewPin=ask, **arguments):
                self.assertEqual(FAILED, self.unlock(askNewPin=ask, **arguments))
                self.expect_nothing_written(arguments.get("responseCapacity", 64),
                                            arguments.get("newPinCapacity", 64))

    def test_nothing_fits_a_null_buffer_without_capacity_but_nothing(self):
        self.open(responseLength=0, response=None, responseCapacity=0, askNewPin=1, min=0,
                  newPin=None, newPinCapacity=0)
        self.expect(True, True, True, True)
        self.assertEqual(OK, self.press_ok())
        self.assertEqual((0, 0), (self.call.output("responseLength"),
                                  self.call.output("newPinLength")))


class WaysOut(UnlockCase):
    def test_every_way_out_but_ok_cancels_and_writes_nothing(self):
        for way, leave in WAYS_OUT.items():
            with self.subTest(way=way):
                self.open(askNewPin=1)
                self.type(DIGITS, "2468", "2468")
                self.expect(True, True, True, True)
                leave(self.screen, self.window)
                self.assertEqual(CANCELLED, self.call.result())
                self.expect_nothing_written()
                self.screen.wait_gone(self.window)

    def test_enter_and_a_click_do_nothing_while_a_rule_is_not_met(self):
        self.open(askNewPin=1)
        self.type(DIGITS, "2468", "246")
        self.expect(True, False, True, False)
        self.screen.key("Return", self.pins[1])
        self.ok().click()
        self.type("", "", "8")
        self.expect(True, True, True, True)
        self.assertFalse(self.call.done)
        self.screen.key("Return", self.pins[1])
        self.assertEqual(OK, self.call.result())
        self.assertEqual(b"2468", self.call.value("newPin"))


class Keyboard(UnlockCase):
    def test_from_start_to_ok(self):
        self.open(askNewPin=1)
        self.screen.type_text(DIGITS)
        for field in self.pins:
            self.screen.key("Tab")
            self.screen.type_text("2468", field)
        self.expect(True, True, True, True)
        self.screen.key("Tab")
        self.screen.key("Return", self.ok())
        self.assertEqual(OK, self.call.result())
        self.assertEqual((BYTES, b"2468"),
                         (self.call.value("response"), self.call.value("newPin")))

    def test_enter_presses_ok_from_every_field(self):
        for name in ("Challenge", "Response", "Enter new PIN", "Confirm new PIN"):
            with self.subTest(field=name):
                self.open(askNewPin=1)
                self.type(DIGITS, "2468", "2468")
                self.expect(True, True, True, True)
                field = self.window.find(name=name)
                field.focus()
                self.screen.key("Return", field)
                self.assertEqual(OK, self.call.result())
                self.screen.wait_gone(self.window)

    def test_tab_visits_everything_once_from_top_to_bottom(self):
        self.open(askNewPin=1)
        self.type(DIGITS, "2468", "2468")
        self.expect(True, True, True, True)
        self.response.focus()
        visited = []
        for _ in range(6):
            self.screen.key("Tab")
            visited.append(self.screen.wait_focused().name)
        self.assertEqual(["Enter new PIN", "Confirm new PIN", "OK", "Cancel", "Challenge",
                          "Response"], visited)
        self.cancel()


class BadArguments(UnlockCase):
    def test_nulls_fail_before_anything_is_shown(self):
        for arguments in ({"record": None}, {"out": None}, {"label": None}, {"serial": None},
                          {"challenge": None}, {"challengeData": None, "challengeLength": 1},
                          {"challengeData": None, "challengeLength": 2**64 - 1}):
            with self.subTest(**arguments):
                call = self.host.call(UNLOCK, **arguments)
                self.assertEqual(FAILED, call.result())
                self.assertTrue(call.untouched("response", "newPin"))
        self.assertEqual([], self.screen.titles(self.host))
        self.open()  # and the next call works
        self.cancel()

    def test_a_null_challenge_of_no_bytes_is_an_empty_one(self):
        self.open(challengeData=None, challengeLength=0)
        self.assertEqual("", self.challenge())
        self.cancel()


if __name__ == "__main__":
    unittest.main()
