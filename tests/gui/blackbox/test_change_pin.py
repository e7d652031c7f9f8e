#!/usr/bin/python3
"""The dialogs that change or unlock a PIN or PUK, as a user and a host see them."""

import unittest

from stage import CANCELLED, FAILED, OK, StageTestCase, policy, registry, wait_until

PUK = "DLG_ShowUnblockThroughPUK"
TRANSPORT = "DLG_ShowChangeTransportPIN"
CHANGE = "DLG_ShowChangePinDialog"
POLICED = "DLG_ShowChangePolicedPinDialog_func"

MISSING = "Warning ! Click on the red ball to check what are the password requirements missing !"
MET = ("The informed password is correct and fullfilled all the password policy requirements !")
MAY_LOCK = "WARNING: Repeated login failures may lock the token!"
LAST = "WARNING: You have only 1 attempt left!"
# Shades of pure red and forest green that can be read on a banner.
RED = (224, 0, 0)
FOREST_GREEN = (31, 127, 31)
PAGES = ["Length", "Equality", "Distance", "Diversification", "Similarity", "Restriction"]

TRANSPORT_LABELS = ["Enter transport PIN:", "Enter new PIN:", "Confirm new PIN:"]
PIN_RULES = ["PIN length between 4 and 8 bytes", "Minimum PIN length 4 bytes",
             "Maximum PIN length 8 bytes", "New PIN equal to confirmed new PIN"]
PUK_RULES = ["PUK length between 4 and 8 bytes", "Minimum PUK length 4 bytes",
             "Maximum PUK length 8 bytes", "New PUK equal to confirmed new PUK"]


def plain(text):
    """A label without the line breaks that wrapping put in."""
    return " ".join(text.split())


class ChangeCase(StageTestCase):
    registry = None

    def setUp(self):
        super().setUp()
        self.host = self.start_host(registry=self.registry)

    def open(self, export=CHANGE, title="Change transport PIN", **arguments):
        arguments = {"noFailure": 1, **arguments}
        self.call, self.window = self.show(self.host, export, title, **arguments)
        self.fields = wait_until(
            lambda: (found := self.window.find_all("password text")) and len(found) == 3 and found)
        self.screen.wait_focused(self.fields[0])

    def type(self, *values):
        """Types into the fields, going on with Tab, until each shows as many characters."""
        for field, value in zip(self.fields, values):
            if value is None:
                continue
            self.enter(field)
            length = field.length
            if value:
                self.screen.type_text(value, field)
            wait_until(lambda: field.length == length + len(value),
                       what=f"{len(value)} characters", seen=self.window.dump)

    def enter(self, field):
        """Puts the caret behind what is typed: a field that gets the focus selects it."""
        field.focus()
        self.screen.key("End", field)

    def erase(self, field):
        self.enter(field)
        while length := field.length:
            self.screen.key("BackSpace", field)
            wait_until(lambda: field.length < length)

    def states(self):
        """The balls: {what they stand for: met}."""
        found = {}
        for node in self.window.find_all("push button"):
            for prefix, met in (("Met: ", True), ("Not met: ", False)):
                if node.name.startswith(prefix):
                    found[node.name.removeprefix(prefix)] = met
        return found

    def expect(self, met, **pages):
        """Waits for the states of the four rules, and of pages by their names."""
        def seen():
            states = self.states()
            rules = [state for rule, state in states.items() if rule not in PAGES]
            return rules == met and all(states[page] == state for page, state in pages.items())
        wait_until(seen, what=f"{met} {pages}", seen=self.states)

    def summary(self):
        return next(plain(label) for label in self.window.labels()
                    if plain(label) in (MISSING, MET))

    def expect_ok(self, enabled):
        wait_until(lambda: self.window.find("push button", "OK").enabled == enabled,
                   what=f"OK enabled: {enabled}", seen=self.window.dump)
        self.assertEqual(MET if enabled else MISSING, self.summary())
        label = next(node for node in self.window.find_all("label")
                     if plain(node.name) in (MISSING, MET))
        colours = self.screen.pixels(label)
        self.assertIn(FOREST_GREEN if enabled else RED, colours)
        self.assertNotIn(RED if enabled else FOREST_GREEN, colours)

    def explanation(self):
        return self.window.find_all("text")[0].text

    def ball(self, rule):
        return next(node for node in self.window.find_all("push button")
                    if node.name in ("Met: " + rule, "Not met: " + rule))

    def cancel(self):
        self.screen.close_window(self.window)
        self.assertEqual(CANCELLED, self.call.result())
        self.screen.wait_gone(self.window)


class Titles(ChangeCase):
    # export, changePuk, other flags, title, heading, labels, rules
    CASES = [
        (PUK, 0, {}, "Change transport PIN", "PIN", TRANSPORT_LABELS, PIN_RULES),
        (TRANSPORT, 0, {}, "Unlock PIN", None,
         ["Enter PUK:", "Enter new PIN:", "Confirm new PIN:"], PUK_RULES[:1] + PIN_RULES[1:]),
        (CHANGE, 0, {}, "Change transport PIN", "PIN", TRANSPORT_LABELS, PIN_RULES),
        (POLICED, 0, {}, "Change transport PIN", "PIN", TRANSPORT_LABELS, PIN_RULES),
        (POLICED, 0, {"initialise": 1}, "Change transport PIN", "PIN", TRANSPORT_LABELS,
         PIN_RULES),
    ] + [(export, 1, {}, "Change PUK", "PUK",
          ["Enter old PUK:", "Enter new PUK:", "Confirm new PUK:"], PUK_RULES)
         for export in (PUK, TRANSPORT, CHANGE, POLICED)]

    def test_each_request_has_its_title_texts_and_rules(self):
        for export, puk, flags, title, changed, labels, rules in self.CASES:
            with self.subTest(export=export, changePuk=puk, **flags):
                self.open(export, title, label="Card", changePuk=puk, **flags)
                texts = self.window.labels()
                heading = (f'Changing the {changed} for "Card":' if changed
                           else 'Unlocking the PIN for "Card":')
                self.assertEqual([heading, *labels], texts[:4])
                self.assertEqual([*rules, *(PAGES if export == POLICED else [])],
                                 list(self.states()))
                self.assertEqual([label.rstrip(":") for label in labels],
                                 [field.name for field in self.fields])
                self.cancel()


class Warnings(ChangeCase):
    def red_lines(self):
        return [plain(label.name) for label in self.window.find_all("label")
                if RED in self.screen.pixels(label) and plain(label.name) != MISSING]

    def test_earlier_attempts_are_told(self):
        tries = f"You have 2 tries remaining {MAY_LOCK}"
        earlier = "The PIN has previously been entered incorrectly"
        for export, arguments, header, red in (
                (CHANGE, {"noFailure": 1}, None, []),
                (CHANGE, {"noFailure": 0}, "PIN incorrect", [MAY_LOCK]),
                (CHANGE, {"noFailure": 0, "finalTry": 1}, "PIN incorrect", [LAST]),
                (CHANGE, {"noFailure": 1, "finalTry": 1}, earlier, [LAST]),
                (TRANSPORT, {"noFailure": 0}, "PUK incorrect", [MAY_LOCK]),
                (CHANGE, {"noFailure": 0, "changePuk": 1}, "PUK incorrect", [MAY_LOCK]),
                (POLICED, {"noFailure": 1, "triesLeft": 2}, None, []),
                (POLICED, {"noFailure": 0, "triesLeft": 2}, "PIN incorrect", [tries]),
                (POLICED, {"noFailure": 0, "triesLeft": 0}, "PIN incorrect", [MAY_LOCK])):
            with self.subTest(export=export, **arguments):
                title = ("Unlock PIN" if export == TRANSPORT else
                         "Change PUK" if arguments.get("changePuk") else "Change transport PIN")
                self.open(export, title, **arguments)
                second = self.window.labels()[1]
                self.assertEqual(header or ("Enter transport PIN:"), second)
                self.assertEqual([header, *red] if header else [], self.red_lines())
                self.cancel()

    def test_the_tries_stand_on_a_line_of_their_own(self):
        self.open(POLICED, noFailure=0, triesLeft=2)
        self.window.find("label", f"You have 2 tries remaining\n{MAY_LOCK}")
        self.cancel()


class Rules(ChangeCase):
    def test_ok_only_when_all_four_hold(self):
        self.open(min=4, max=8)
        self.expect([False, False, True, True])
        self.expect_ok(False)
        self.type("1234", "123", "123")
        self.expect([True, False, True, True])
        self.expect_ok(False)
        self.type(None, "4", None)
        self.expect([True, True, True, False])
        self.expect_ok(False)
        self.type(None, None, "4")
        self.expect([True, True, True, True])
        self.expect_ok(True)
        self.type(None, "56789", "56789")
        self.expect([True, True, False, True])
        self.expect_ok(False)
        self.cancel()

    def test_bounds_of_the_old_value_can_be_its_own(self):
        self.open(POLICED, min=4, max=8, oldMin=2, oldMax=3)
        self.assertIn("PIN length between 2 and 3 bytes", self.states())
        self.type("1234", "1234", "1234")
        self.expect([False, True, True, True])
        self.expect_ok(False)
        self.erase(self.fields[0])
        self.type("12", None, None)
        self.expect([True, True, True, True])
        self.expect_ok(True)
        self.cancel()

    def test_bounds_of_the_old_value_with_one_zero_are_its_own(self):
        self.open(POLICED, min=4, max=8, oldMin=0, oldMax=3)
        self.assertIn("PIN length between 0 and 3 bytes", self.states())
        self.expect([True, False, True, True])
        self.cancel()

    def test_with_minimum_0_an_empty_change_is_allowed(self):
        self.open(min=0, max=8)
        self.expect([True, True, True, True])
        self.expect_ok(True)
        self.screen.key("Return", self.fields[0])
        self.assertEqual(OK, self.call.result())
        self.assertEqual((b"", b""), (self.call.value("old"), self.call.value("new")))

    def test_choosing_a_ball_explains_its_rule(self):
        self.open()
        for rule, how in ((PIN_RULES[1], "press"), (PIN_RULES[2], "space"),
                          (PIN_RULES[3], "Return"), (PIN_RULES[0], "click")):
            ball = self.ball(rule)
            if how in ("press", "click"):
                getattr(ball, how)()
            else:
                ball.focus()
                self.screen.key(how, ball)
            wait_until(lambda: self.explanation() == rule, what=rule, seen=self.explanation)
        self.assertFalse(self.call.done)
        self.cancel()

    def test_tab_visits_fields_balls_text_and_buttons(self):
        self.open()
        self.type("1234", "1234", "1234")
        self.expect_ok(True)
        self.fields[0].focus()
        visited = []
        for _ in range(9):
            self.screen.key("Tab")
            visited.append(self.screen.wait_focused().name)
        self.assertEqual(
            ["Enter new PIN", "Confirm new PIN", *("Met: " + rule for rule in PIN_RULES),
             "Explanation", "OK", "Cancel"], visited)
        self.cancel()


class Delivery(ChangeCase):
    def change(self, old_value, new_value, export=CHANGE, title="Change transport PIN", **arguments):
        self.open(export, title, min=1, max=32, **arguments)
        self.type(old_value, new_value, new_value)
        self.expect_ok(True)
        self.window.find("push button", "OK").press()
        return self.call.result()

    def test_both_values_reach_the_host(self):
        for export, title in ((PUK, "Change transport PIN"), (TRANSPORT, "Unlock PIN"),
                              (CHANGE, "Change transport PIN"),
                              (POLICED, "Change transport PIN")):
            with self.subTest(export=export):
                self.assertEqual(OK, self.change("1234", "98765", export, title))
                self.assertEqual(b"1234", self.call.value("old"))
                self.assertEqual(b"98765", self.call.value("new"))

    def test_values_as_long_as_their_buffers_fit(self):
        self.assertEqual(OK, self.change("1234", "98765", oldCapacity=4, newCapacity=5))
        self.assertEqual(b"1234", self.call.value("old"))
        self.assertEqual(b"98765", self.call.value("new"))

    def test_when_one_value_does_not_fit_nothing_is_written(self):
        for capacities in ({"oldCapacity": 3}, {"newCapacity": 4},
                           {"old": None}, {"new": None}):
            with self.subTest(**capacities):
                self.assertEqual(FAILED, self.change("1234", "98765", **capacities))
                self.assertTrue(self.call.untouched("old", "new"))
                for name in ("old", "new"):
                    expected = capacities.get(name + "Capacity", 64)
                    self.assertEqual(expected, self.call.output(name + "Length"))

    def test_cancel_and_close_write_nothing(self):
        for end in ("Cancel", "close", "Escape"):
            self.open()
            self.type("1234", "1234", "1234")
            if end == "Cancel":
                self.window.find("push button", "Cancel").press()
            elif end == "close":
                self.screen.close_window(self.window)
            else:
                self.screen.key("Escape")
            self.assertEqual(CANCELLED, self.call.result())
            self.assertTrue(self.call.untouched("old", "new"))


class AsciiOnly(ChangeCase):
    def test_other_characters_are_refused_typed_or_pasted(self):
        self.open()
        self.type("12")
        self.screen.type_text("\u00e93", self.fields[0])
        wait_until(lambda: self.fields[0].length == 3, what="the three digits")
        self.fields[1].set_text("a\u00e9b\u20acc")
        wait_until(lambda: self.fields[1].length == 3, what="the ASCII characters only",
                   seen=lambda: self.fields[1].length)
        self.cancel()

    def dead_key(self):
        for key in ("dead_acute", "e"):
            self.screen.key(key)

    def test_what_is_selected_is_not_lost_to_a_refused_paste_or_key(self):
        self.open()
        self.type("1234")
        for refuse in (lambda: self.screen.paste("\u00e9\u6f22"),
                       lambda: self.screen.paste("\r\n\n"),
                       lambda: self.screen.type_text("\u00e9"), self.dead_key):
            self.screen.key("ctrl+a", self.fields[0])
            refuse()
            self.screen.key("End")
            self.type("5")
        self.assertEqual(8, self.fields[0].length)
        self.screen.key("ctrl+a", self.fields[0])
        self.screen.paste("a\u00e9b")
        wait_until(lambda: self.fields[0].length == 2, what="the ASCII characters only",
                   seen=lambda: self.fields[0].length)
        self.cancel()

    def test_a_paste_may_be_answered_when_the_window_is_gone(self):
        self.screen.set_clipboard("1234")
        self.open()
        with self.screen.held_clipboard():
            self.screen.key("ctrl+v", self.fields[0])
            self.screen.key("Escape")
            self.assertEqual(CANCELLED, self.call.result())
            self.screen.wait_gone(self.window)
        self.open()
        self.assertEqual(0, self.fields[0].length)
        self.cancel()


class AllCharacters(ChangeCase):
    registry = registry(("", "LimitPinToAscii", 0))

    def test_lengths_are_bytes(self):
        self.open(min=4, max=8)
        self.type("1234", "\u00e9\u00e9\u00e9\u00e9", "\u00e9\u00e9\u00e9\u00e9")
        self.expect([True, True, True, True])
        self.type(None, "\u00e9", "\u00e9")
        self.expect([True, True, False, True])
        for field in self.fields[1:]:
            self.enter(field)
            self.screen.key("BackSpace", field)
        self.expect_ok(True)
        self.screen.key("Return", self.fields[2])
        self.assertEqual(OK, self.call.result())
        self.assertEqual("\u00e9\u00e9\u00e9\u00e9".encode(), self.call.value("new"))


    def test_capacities_are_bytes_for_every_request_and_what_does_not_fit_is_not_written(self):
        for export, title in ((PUK, "Change transport PIN"), (TRANSPORT, "Unlock PIN"),
                              (CHANGE, "Change transport PIN"), (POLICED, "Change transport PIN")):
            for capacities, result in (((4, 4), OK), ((4, 3), FAILED), ((3, 4), FAILED)):
                with self.subTest(export=export, capacities=capacities):
                    self.open(export, title, min=1, max=8, oldCapacity=capacities[0],
                              newCapacity=capacities[1])
                    self.type("12\u00e9", "\u00e9\u00e9", "\u00e9\u00e9")
                    self.expect_ok(True)
                    self.screen.key("Return", self.fields[2])
                    self.assertEqual(result, self.call.result())
                    if result == OK:
                        self.assertEqual("12\u00e9".encode(), self.call.value("old"))
                        self.assertEqual("\u00e9\u00e9".encode(), self.call.value("new"))
                        continue
                    self.assertTrue(self.call.untouched("old", "new"))
                    self.assertEqual(capacities, (self.call.output("oldLength"),
                                                  self.call.output("newLength")))


class Policies(ChangeCase):
    RULES = {"enabled": 15, "p1_threshold": 1, "p2_classes": 1, "p2_population": 1,
             "p2_min_length": 6, "p2_class_mask": 31, "p3_history_size": 5, "p3_threshold": 3}

    def choose(self, page, before=None):
        """Shows a page that is not the one shown now."""
        before = self.explanation() if before is None else before
        self.ball(page).press()
        wait_until(lambda: self.explanation() not in ("", before), what=f"the page {page}",
                   seen=self.explanation)
        return self.explanation()

    def test_each_page_explains_its_policy_and_what_is_wrong(self):
        self.open(POLICED, min=1, max=16, **policy(b"0", **self.RULES))
        self.type("1234", "9800", "9800")
        self.expect([True] * 4, Length=True, Equality=True, Distance=False, Diversification=False,
                    Similarity=True, Restriction=False)
        self.expect_ok(False)
        for page, parts in (
                ("Distance", ["Elementary distance:\n", "has to be more than 1",
                              "distance between consecutive characters is equal to 1"]),
                ("Diversification", ["Character classification:\n", "PIN code too short:"]),
                ("Similarity", ["History checking:\n", "The size of the history memory is 5"]),
                ("Restriction", ["Character restriction:\n", "disallowed characters: \"0\""]),
                ("Length", ["PIN length between 1 and 16 bytes", "Minimum PIN length 1 bytes"]),
                ("Equality", ["New PIN equal to confirmed new PIN"])):
            with self.subTest(page=page):
                self.ball(page).press()
                wait_until(lambda: all(part in self.explanation() for part in parts),
                           what=str(parts), seen=self.explanation)
        self.cancel()

    def test_the_first_page_that_is_not_met_shows_until_the_user_chooses(self):
        def shows(part):
            wait_until(lambda: part in self.explanation(), what=part, seen=self.explanation)
        self.open(POLICED, min=1, max=16, **policy(b"0", **self.RULES))
        shows("PIN length between 1 and 16 bytes")
        self.type("1234", "9800", "9800")
        shows("Elementary distance:\n")
        self.ball("Restriction").press()
        shows("Character restriction:\n")
        self.type("1234", "9800", "98")
        self.expect([True] * 3 + [False], Equality=False)
        self.assertIn("Character restriction:\n", self.explanation())
        self.cancel()

    def test_the_pages_are_one_stop_and_arrow_keys_go_through_them(self):
        self.open(POLICED, min=1, max=16, **policy(b"0", **self.RULES))
        self.assertEqual(["Not met: Length"], [node.name for node in self.window.walk()
                                               if "focusable" in node.states
                                               and node.name.endswith(tuple(PAGES))])
        self.ball("Length").focus()
        seen = []
        for key, page in (("Down", "Equality"), ("Right", "Distance"), ("End", "Restriction"),
                          ("Down", "Length"), ("Up", "Restriction"), ("Left", "Similarity"),
                          ("Home", "Length"), ("shift+Tab", None)):
            self.screen.key(key)
            if page is None:
                break
            self.screen.wait_focused(self.ball(page))
            seen.append(self.explanation())
        self.assertEqual(5, len(set(seen)))
        wait_until(lambda: self.screen.focused() not in map(self.ball, PAGES), what="the rules")
        self.cancel()

    def test_a_page_follows_the_typing(self):
        self.open(POLICED, min=1, max=16, **policy(b"0", **self.RULES))
        self.type("1234", "9753", None)
        self.choose("Diversification")
        wait_until(lambda: "PIN code too short:" in self.explanation())
        self.type(None, "1a", None)
        wait_until(lambda: "PIN code too short:" not in self.explanation())
        self.cancel()

    def test_ok_when_every_policy_holds(self):
        self.open(POLICED, min=1, max=16, **policy(b"0", **{**self.RULES, "p1_full_pin_check": 1}))
        self.type("1234", "183729", "183729")
        self.expect([True] * 4, Distance=True, Diversification=True, Restriction=True)
        self.expect_ok(True)
        self.screen.key("Return", self.fields[2])
        self.assertEqual(OK, self.call.result())
        self.assertEqual(b"183729", self.call.value("new"))

    def test_with_nothing_enabled_only_the_four_rules_count(self):
        for arguments in (policy(b"0", **{**self.RULES, "enabled": 0}), {},
                          {**policy(b"0", **self.RULES), "policyTag": 4}):
            with self.subTest(**arguments):
                self.open(POLICED, **arguments)
                self.type("1234", "0000", "0000")
                self.expect([True] * 4, Distance=True, Diversification=True, Restriction=True)
                self.expect_ok(True)
                for page, text in (
                        ("Distance", "Elementary distance:\nThis policy is disabled"),
                        ("Diversification", "Character classification:\nThis policy is disabled"),
                        ("Similarity", "Pin History checking policy is disabled."),
                        ("Restriction", "Character restriction policy is disabled.")):
                    self.ball(page).press()
                    wait_until(lambda: self.explanation() == text, what=text,
                               seen=self.explanation)
                self.cancel()

    def test_a_policy_without_a_list_is_enforced_while_no_list_is_needed(self):
        self.open(POLICED, **policy(enabled=2, p2_classes=2, p2_min_length=8, p2_class_mask=31),
                  policyListDescriptor=None)
        self.type("1234", "aaaa", "aaaa")
        self.expect([True] * 4, Diversification=False, Restriction=True)
        self.expect_ok(False)
        self.type(None, "1234", "1234")
        self.expect([True] * 4, Diversification=True, Restriction=True)
        self.expect_ok(True)
        self.screen.key("Return", self.fields[2])
        self.assertEqual(OK, self.call.result())
        self.assertEqual(b"aaaa1234", self.call.value("new"))

    def test_a_policy_that_cannot_be_read_fails_before_anything_is_shown(self):
        for unusable in ({"policySize": 0}, {"policySize": 31}, {"policyBlock": None},
                         {"policyListDescriptor": None},
                         {"policyList": None, "policyListLength": 1}):
            with self.subTest(**unusable):
                arguments = {**policy(b"0", **self.RULES), **unusable}
                call = self.host.call(POLICED, oldCapacity=8, newCapacity=8, **arguments)
                self.assertEqual(FAILED, call.result())
                self.assertTrue(call.untouched("old", "new"))
                self.assertEqual((8, 8), (call.output("oldLength"), call.output("newLength")))
                self.assertEqual([], self.screen.titles(self.host))

    def test_a_page_scrolls_by_whole_lines(self):
        self.open(POLICED, min=1, max=16, **policy(bytes(range(33, 97)) * 6, **self.RULES))
        self.choose("Restriction")
        field = self.window.find("text", "Explanation")
        field.focus()
        _, beginning, _, height = field.character_extents(0)
        middle = field.extents[0] + 50, field.extents[1] + 50

        def scrolled():
            return (beginning - field.character_extents(0)[1]) / height

        end = (field.character_extents(field.length - 1)[1] - beginning) / height - 7
        self.assertTrue(3 < end <= 7, end)

        def turn(button):
            return lambda: self.screen.x11.click(*middle, button)

        def press(key):
            return lambda: self.screen.key(key, field)
        for act, lines in ((press("Down"), 1), (press("Down"), 2), (press("Up"), 1),
                           (press("Page_Up"), 0), (turn(5), 3), (turn(4), 0),
                           (press("Page_Down"), end), (turn(5), end), (press("Up"), end - 1)):
            act()
            wait_until(lambda: scrolled() == lines, what=f"{lines} lines up", seen=scrolled)
        self.choose("Distance")
        wait_until(lambda: scrolled() == 0, what="the headline", seen=scrolled)
        self.cancel()

    def test_an_empty_history_says_so(self):
        self.open(POLICED, **policy(enabled=4, p3_history_size=0))
        self.ball("Similarity").press()
        wait_until(lambda: self.explanation() == "History checking policy log is empty.")
        self.cancel()

    def test_the_window_does_not_move_and_fits_the_screen(self):
        self.open(POLICED, label="W" * 600, noFailure=0, triesLeft=2,
                  **policy(bytes(range(33, 97)), **self.RULES))
        before = self.window.extents
        x, y, width, height = before
        self.assertTrue(x >= 0 and y >= 0 and x + width <= 1024 and y + height <= 768, before)
        self.type("1234", "aaaa0", "aaaa0")
        shown = {self.choose(page) for page in [*PAGES[1:], PAGES[0]]}
        self.assertEqual(len(PAGES), len(shown))
        self.assertEqual(before, self.window.extents)
        self.cancel()


class BadArguments(ChangeCase):
    def test_a_null_label_fails_before_anything_is_shown(self):
        for export in (PUK, TRANSPORT, CHANGE, POLICED):
            self.assertEqual(FAILED, self.host.run(export, label=None))
        self.assertEqual([], self.screen.titles(self.host))


if __name__ == "__main__":
    unittest.main()
