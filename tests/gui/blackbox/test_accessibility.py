#!/usr/bin/python3
"""What a user without a mouse, without sight or without colours gets, in every dialog."""

import unittest

from stage import OK, Events, StageTestCase, wait_until
from stage.dialogs import DIALOGS, find_dialog, show_dialog, wait_ready

FIELDS = ("password text", "text", "combo box", "table", "list", "list box")
# Fields that have a name, and no label beside them that could stand for it.
UNLABELLED = ("Explanation", "Unlocking algorithm")
EQUAL = "equal to "
MASK = "\u25cf"


class AccessibilityCase(StageTestCase):
    def open(self, dialog):
        self.host = self.start_host()
        self.call, self.window = show_dialog(self.screen, self.host, dialog)
        wait_ready(self.screen, dialog, self.window)
        return self.window

    def type(self, field, value):
        field.focus()
        self.screen.type_text(value, field)
        wait_until(lambda: field.length == len(value), what="the typed characters")

    def follow(self, order):
        """Goes with Tab from the control that has the focus through all, there and back."""
        self.expect_focus(order[0])
        for name in [*order[1:], order[0]]:
            self.screen.key("Tab")
            self.expect_focus(name)
        for name in [*order[:0:-1], order[0]]:
            self.screen.key("shift+Tab")
            self.expect_focus(name)

    def expect_focus(self, name):
        wait_until(lambda: focused_name(self.screen) == name, what=f"the focus on {name!r}",
                   seen=self.window.dump)

    def clear(self, field):
        field.focus()
        self.screen.key("ctrl+a", field)
        self.screen.key("BackSpace", field)
        wait_until(lambda: field.length == 0, what="the empty field")

    def end(self, dialog):
        """Ends the dialog as a host or Escape does."""
        if dialog.modal:
            self.screen.key("Escape")
        self.assertEqual(dialog.result, self.call.result())
        if not dialog.modal:
            self.screen.x11.key("Escape")
            self.host.run("DLG_GetLocale")  # the key has been looked at by then
            self.assertTrue(self.window.showing, "only the host removes it")
            self.host.run(dialog.hide)
        self.screen.wait_gone(self.window)



def focused_name(screen):
    node = screen.focused()
    return node and node.name


class EveryDialog(AccessibilityCase):
    def test_names_roles_labels_keys_and_ways_out(self):
        for dialog in DIALOGS:
            with self.subTest(dialog.name):
                self.open(dialog)
                self.check_roles_and_names(dialog)
                self.check_labels()
                self.check_mnemonics(dialog)
                self.check_order(dialog)
                self.end(dialog)
                self.host.close()

    def check_roles_and_names(self, dialog):
        self.assertEqual(dialog.role, self.window.role)
        self.assertEqual(dialog.title, self.window.name)
        for node in self.window.walk():
            if "focusable" in node.states or node.role == "icon":
                self.assertTrue(node.name.strip(" :"), node)
            self.assertNotRegex(node.name, r"[&%]|_[A-Za-z]", node)
            if node.role == "label" and dialog.role != "alert":
                # A line break that only wrapping put in would be spoken as a pause.
                self.assertNotRegex(node.name, r"[a-z,] ?\n[a-z]", node)

    def check_labels(self):
        """A label stands for a field, and a field for the label that is beside it."""
        for node in self.window.walk():
            targets = node.relations.get("label-for", [])
            for target in targets:
                self.assertIn(target.role, (*FIELDS, "label"), f"{node!r} stands for {target!r}")
                self.assertEqual([node], target.relations["labelled-by"])
                if target.role in FIELDS:
                    self.assertEqual(node.name.rstrip(":"), target.name)
            if node.role in FIELDS and "focusable" in node.states and node.name not in UNLABELLED:
                self.assertIn("labelled-by", node.relations, node)

    def check_mnemonics(self, dialog):
        keys = [(key, node.name) for node in self.window.walk() for key in node.key_bindings]
        self.assertEqual(len({key for key, _ in keys}), len(keys), keys)
        if dialog.order == ["Yes", "No"]:
            self.assertEqual(["No", "Yes"], sorted(name for _, name in keys))

    def check_order(self, dialog):
        if not dialog.order:
            self.assertEqual([], [node for node in self.window.walk()
                                  if "focusable" in node.states and node != self.window])
            return
        self.follow(dialog.order)


class Typing(AccessibilityCase):
    def test_nothing_that_is_typed_is_told_and_what_changes_is(self):
        for dialog in DIALOGS:
            if not dialog.typed:
                continue
            with self.subTest(dialog.name), Events(self.screen.bus) as events:
                self.open(dialog)
                fields = [node for node in self.window.walk() if node.role == "password text"]
                self.assertEqual(len(dialog.typed), len(fields))
                entries = [*zip(fields, dialog.typed), *self.answers(dialog)]
                unmet = self.other_rules("Not met: ")
                self.assertTrue(unmet)
                for field, value in entries:
                    self.type(field, value)
                self.check_rules(events, unmet, "Met: ")
                self.check_echo(events, fields, dialog.typed)
                self.check_silence(events, fields, dialog.typed)
                events.forget()
                for field, _ in entries:
                    self.clear(field)
                self.check_rules(events, unmet, "Not met: ")
                self.check_equality(events, fields)
                self.check_silence(events, fields, dialog.typed)
                for field, value in entries:
                    self.type(field, value)
                self.check_rules(events, unmet, "Met: ")
                self.check_order_with_ok(dialog)
                self.screen.key("Return")
                self.assertEqual(OK, self.call.result())
                self.host.close()

    def check_order_with_ok(self, dialog):
        """The button that confirms comes before Cancel once it can be pressed."""
        order = [name.replace("Not met: ", "Met: ") for name in dialog.order]
        order.insert(order.index("Cancel"), "Sign" if "Legal" in dialog.export else "OK")
        next(node for node in self.window.walk()
             if node.name == order[0] and "focusable" in node.states and node.role in FIELDS).focus()
        self.follow(order)

    def answers(self, dialog):
        """The field for what is no secret with its value, where the dialog has one."""
        return [(node, dialog.answer) for node in self.window.walk()
                if dialog.answer and node.role == "text" and "editable" in node.states]

    def check_echo(self, events, fields, typed):
        for field, value in zip(fields, typed):
            wait_until(lambda: self.inserted(events, field) == MASK * len(value),
                       what="a mask character for each that is typed",
                       seen=lambda: self.inserted(events, field))
            self.assertEqual(MASK * len(value), field.text)

    def check_silence(self, events, fields, typed):
        """Nothing tells a value or a letter of it, and a field nothing but masks and its name."""
        letters = [*"".join(typed)]
        names = {field.path: field.name for field in fields}
        for event in events.seen():
            for value in typed:
                self.assertNotIn(value, str(event))
            self.assertNotIn(event.value, letters)
            if event.detail == "accessible-description":
                continue  # of the rules; it has been looked at
            if event.path in names and isinstance(event.value, str):
                self.assertIn(event.value.replace(MASK, ""), ("", names[event.path]))

    @staticmethod
    def inserted(events, field):
        return "".join(event.value for event in events.seen("TextChanged")
                       if event.path == field.path and event.detail.startswith("insert"))

    def rules(self, state):
        """The rules that are in that state by their names: each with its icon or ball."""
        return {node.name.removeprefix(state): node for node in self.window.walk()
                if node.role in ("icon", "push button") and node.name.startswith(state)}

    def other_rules(self, state):
        return {rule: node for rule, node in self.rules(state).items() if EQUAL not in rule}

    def check_rules(self, events, rules, state):
        """These rules have come into that state, no others are not met; both events say so."""
        for rule, node in rules.items():
            self.wait_told(events, state + rule, node)
        left = rules if state == "Not met: " else {}
        wait_until(lambda: self.other_rules("Not met: ") == left, what=f"only {list(left)} not met",
                   seen=self.window.dump)

    def check_equality(self, events, fields):
        """Once one of two equal entries is removed they differ, and without the other no more."""
        equality = [(rule, node) for rule, node in self.rules("Met: ").items() if EQUAL in rule]
        self.assertEqual(int(len(fields) > 1), len(equality))
        for rule, node in equality:
            for state in ("Not met: ", "Met: "):
                self.wait_told(events, state + rule, node)

    @staticmethod
    def wait_told(events, name, node):
        for kind in ("Announcement", "PropertyChange"):
            events.wait_for(kind, name, node)


class CapsLock(AccessibilityCase):
    def test_that_it_was_pressed_before_is_told(self):
        for begins in (True, False):
            self.open(find_dialog("pin"))
            field = self.screen.wait_focused()
            signs = len(field.children)
            self.screen.key("Caps_Lock", field)
            wait_until(lambda: (len(field.children) > signs) == begins, what="its sign",
                       seen=self.window.dump)
            self.end(find_dialog("pin"))
            self.host.close()
            self.open(find_dialog("pin"))
            field = self.screen.wait_focused()
            self.assertEqual(begins, field.description.startswith("Caps Lock is on. "),
                             field.description)
            self.end(find_dialog("pin"))
            self.host.close()


class Colours(AccessibilityCase):
    def test_a_warning_is_bold_and_has_a_picture_besides_its_words(self):
        for dialog in DIALOGS:
            if "noFailure" not in dialog.arguments:
                continue
            with self.subTest(dialog.name):
                self.open(dialog)
                red = [node for node in self.window.find_all("label")
                       if (224, 0, 0) in self.screen.pixels(node)]
                self.assertTrue(red)
                for label in red:
                    self.assertGreaterEqual(int(label.default_text_attributes["weight"]), 700)
                    self.assertRegex(label.name, "(?i)warning|incorrect|previously")
                first = red[0].extents
                left = [node for node in self.window.find_all("redundant object")
                        if node.extents[0] < first[0] and abs(node.extents[1] - first[1]) < 16]
                self.assertEqual(1, len(left), "the picture beside the warning")
                self.end(dialog)
                self.host.close()


class Announcements(AccessibilityCase):
    def test_the_steps_and_words_of_a_pin_pad_are_spoken(self):
        with Events(self.screen.bus) as events:
            self.open(find_dialog("pad Modification"))
            for order, spoken in (("NextPin", "Enter your PIN"), ("NextPin", "Enter the new PIN"),
                                  ("NextPin", "Confirm the new PIN"), ("Accept", "Ok Pressed"),
                                  ("Timeout", "Timer Expired"), ("Cancel", "Cancel Pressed")):
                self.host.run("DLG_PinPadKeyboardInput" + order)
                events.wait_for("Announcement", spoken)

    def test_each_scan_of_a_finger_is_spoken(self):
        with Events(self.screen.bus) as events:
            self.open(find_dialog("biometric-enrol"))
            self.host.run("DLG_UpdateSuperTokenEnrolDlg")
            events.wait_for("Announcement", "Lumora Bio Token - enrolling finger (scan 2)")

    def test_the_end_of_all_objections_is_spoken(self):
        with Events(self.screen.bus) as events:
            dialog = find_dialog("change-pin")
            self.open(dialog)
            for field, value in zip(self.window.find_all("password text"), dialog.typed):
                self.type(field, value)
            events.wait_for("Announcement", "The informed password is correct and fullfilled all "
                                            "the password policy requirements !")
            self.end(dialog)


if __name__ == "__main__":
    unittest.main()
