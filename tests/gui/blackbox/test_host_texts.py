#!/usr/bin/python3
"""Texts of the host in the sentences of the dialogs: they cannot turn them round, nor hold them up
however long they are.
"""

import contextlib
import unittest

from stage import Letters, StageTestCase

# Each could turn a sentence from left to right; with it as it stands in one.
TURNING = {
    "an override": ("\u202Egpj.exe", "\u2068\u202Egpj.exe\u2069"),
    "letters from right to left": ("\u05D0\u05E1\u05D9\u05DE\u05D5\u05DF 12",
                                   "\u2068\u05D0\u05E1\u05D9\u05DE\u05D5\u05DF 12\u2069"),
    "the end of an isolate": ("a\u2069\u202Eb", "\u2068\u2068a\u2069\u202Eb\u2069"),
    "an isolate without end": ("a\u2067b", "\u2068a\u2067b\u2069\u2069"),
}
ORDINARY = "Smith & Sons \u03A9 1"

LOG_IN = 'To log in to "{}"'
LOCKED = ('The token "{}" is locked.\nPlease use the token manager to unlock it,\n'
          "or contact your system administrator.")
SENTENCES = (
    ("DLG_ShowPinDialog", "Enter PIN", LOG_IN),
    ("DLG_ShowLegalPinDialog", "Enter PIN", LOG_IN),
    ("DLG_ShowLockedDialog", "Token locked", LOCKED),
    ("DLG_ShowChangePinDialog", "Change transport PIN", 'Changing the PIN for "{}":'),
    ("DLG_ShowUnblockThroughCR", "Unlock PIN", 'Unlocking the PIN for "{}":'),
)
DELETE = ("The application {} is trying to delete a certificate:\n\nIssued To: {}\nIssued By: {}\n\n"
          "Valid From: 2024-01-01\nValid To: 2034-01-01\n\nFrom the token with label \"{}\"\n\n"
          "Do you wish to allow this?")

HUGE = 60_000_000


class HostTextCase(StageTestCase):
    def setUp(self):
        super().setUp()
        self.host = self.start_host()

    @contextlib.contextmanager
    def open(self, export, title, **arguments):
        call, self.window = self.show(self.host, export, title, **arguments)
        try:
            yield
        finally:
            self.screen.close_window(self.window)
            call.result()
            self.screen.wait_gone(self.window)

    def expect_label(self, text):
        self.assertIn(text, self.window.labels())

    def expect_from_left_to_right(self, label, places):
        lefts = [label.character_extents(place)[0] for place in places]
        self.assertEqual(sorted(lefts), lefts, [label.text[place] for place in places])


class Sentences(HostTextCase):
    def test_a_text_that_could_turn_its_sentence_is_enclosed(self):
        for export, title, sentence in SENTENCES:
            for name, (text, enclosed) in TURNING.items():
                with self.subTest(export=export, text=name), self.open(export, title, label=text):
                    self.expect_label(sentence.format(enclosed))

    def test_any_other_text_is_left_as_it_is(self):
        for export, title, sentence in SENTENCES:
            with self.subTest(export=export), self.open(export, title, label=ORDINARY):
                self.expect_label(sentence.format(ORDINARY))

    def test_each_text_of_a_certificate_is_enclosed_for_itself(self):
        for name, (text, enclosed) in TURNING.items():
            with self.subTest(text=name), self.open(
                    "DLG_ShowConfirmDeleteCertificate", "Question", application=text, label=text,
                    issuedTo=text, issuedBy=text, validFrom="2024-01-01", validTo="2034-01-01"):
                self.expect_label(DELETE.format(*[enclosed] * 4))

    def test_the_sentence_reads_on_from_left_to_right_behind_the_text(self):
        for name, (text, _) in TURNING.items():
            with self.subTest(text=name), self.open("DLG_ShowLockedDialog", "Token locked",
                                                    label=text):
                label = next(node for node in self.window.find_all("label")
                             if node.text.startswith("The token"))
                begin, end = label.text.index('"') + 1, label.text.rindex('"')
                line = label.text.index("\n")
                self.expect_from_left_to_right(label, [*range(begin), *range(end, line)])

    def test_a_broken_line_goes_on_from_left_to_right(self):
        with self.open("DLG_ShowPinDialog", "Enter PIN", label="word " * 15 + "\u202Egpj.exe"):
            heading = next(node for node in self.window.find_all("label")
                           if node.text.startswith("To log in"))
            text = heading.text
            self.assertIn("\n", text)
            self.expect_from_left_to_right(heading, [text.index("e", text.index("\u202E")),
                                                     text.rindex('"')])

    def test_a_row_keeps_name_and_detail_in_their_order(self):
        for name, (text, enclosed) in TURNING.items():
            with self.subTest(text=name), self.open(
                    "DLG_ShowTokenSelectionDialog", "Select a token",
                    entry=[(text, "Reader 1", 1), ("Card", text, 2)]):
                self.assertEqual([f"\u200E{enclosed} (Reader 1)", f"Card ({enclosed})"],
                                 [cell.name for cell in self.window.find_all("table cell")])


class HugeTexts(HostTextCase):
    """What a host takes for a text may be a file."""

    def test_a_dialog_appears_whatever_its_label_is(self):
        for export, title, name in (
                ("DLG_ShowPinDialog", "Enter PIN", "label"),
                ("DLG_ShowDigitalIDSelection", "Select Digital ID", "validTo"),
                ("DLG_ShowConfirmDeleteCertificate", "Question", "issuedTo")):
            with self.subTest(export=export), self.open(export, title, **{name: Letters(HUGE)}):
                self.assertLess(max(map(len, self.window.labels())), HUGE)


if __name__ == "__main__":
    unittest.main()
