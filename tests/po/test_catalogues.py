#!/usr/bin/python3
"""Each language's catalogue is whole, and its texts fit where the library uses them."""

import pathlib
import re
import subprocess
import tempfile
import unittest

import po_file

FOLDER = pathlib.Path(__file__).resolve().parents[2] / "po"
TEMPLATE = FOLDER / "tokenutils.pot"
LANGUAGES = (FOLDER / "LINGUAS").read_text(encoding="utf-8").split()

CONVERSION = re.compile(r"%[-+ #0']*\d*(?:\.\d+)?(?:hh|h|ll|l|z)?[a-zA-Z%]")
# Of ASCII only: a no-break space belongs to the text.
EDGES = re.compile(r"([ \n]*).*?([ \n]*)", re.DOTALL)
# The row of the PIN pad cuts what is longer.
STATUS_WORDS = ("Cancel Pressed", "Timer Expired", "Ok Pressed")
STATUS_WIDTH = 15
# The English sentence follows another one without a blank; translations may do better.
MAY_START_WITH_BLANK = 'Those one are: "%ls" (without the surrounding `"`)'


class Catalogues(unittest.TestCase):
    def assert_for_all_texts(self, holds):
        self.assertEqual([], [f"{language}.po: {entry.key!r}: {entry.text!r}"
                              for language in LANGUAGES
                              for entry in po_file.read(FOLDER / f"{language}.po")
                              if entry.key and not holds(entry.key, entry.text)])

    def test_languages_and_files_are_the_same(self):
        self.assertEqual(sorted(LANGUAGES), sorted(path.stem for path in FOLDER.glob("*.po")))

    def test_every_text_of_the_template_is_translated(self):
        expected = {entry.key for entry in po_file.read(TEMPLATE)}
        for language in LANGUAGES:
            with self.subTest(language=language):
                path = FOLDER / f"{language}.po"
                result = subprocess.run(
                    ["msgfmt", "--check", "--check-accelerators=&", "--statistics",
                     "--output-file=/dev/null", path], text=True, stderr=subprocess.PIPE,
                    env={"LC_ALL": "C", "PATH": "/usr/bin:/bin"})
                self.assertEqual((0, f"{len(expected) - 1} translated messages.\n"),
                                 (result.returncode, result.stderr))
                self.assertEqual(expected, {entry.key for entry in po_file.read(path)},
                                 "run the build target update-po")

    def test_conversions_are_those_of_the_english_text(self):
        self.assert_for_all_texts(
            lambda key, text: CONVERSION.findall(key) == CONVERSION.findall(text))

    def test_blanks_at_both_ends_are_kept(self):
        def same_edges(key, text):
            if key == MAY_START_WITH_BLANK:
                text = text.removeprefix(" ")
            return EDGES.fullmatch(key).groups() == EDGES.fullmatch(text).groups()
        self.assert_for_all_texts(same_edges)

    def test_line_breaks_are_kept(self):
        self.assert_for_all_texts(lambda key, text: key.count("\n") == text.count("\n"))

    def test_a_text_has_a_mnemonic_when_the_english_one_has(self):
        self.assert_for_all_texts(
            lambda key, text: key.count("&") == len(re.findall(r"&\w", text)) == text.count("&"))

    def test_captions_end_with_their_colon(self):
        self.assert_for_all_texts(lambda key, text: key.endswith(":") == text.endswith(":"))

    def test_status_words_fit_the_row_of_the_pin_pad(self):
        self.assert_for_all_texts(
            lambda key, text: key not in STATUS_WORDS or len(text) <= STATUS_WIDTH)

    def test_no_sentence_is_left_in_english(self):
        def is_sentence(key):
            return len(re.findall(r"[a-z]{3,}", CONVERSION.sub("", key))) > 3
        self.assert_for_all_texts(lambda key, text: key != text or not is_sentence(key))


class PseudoCatalogues(unittest.TestCase):
    """The languages that nobody speaks, in which the layouts are looked at."""

    # The longest translations are that much longer than the English text.
    GROWTH = 1.6

    def test_their_texts_are_longer_and_have_no_plain_letter(self):
        for style in ("accented", "hebrew"):
            for entry in self.entries(style):
                words = CONVERSION.sub("", entry.key)
                if not re.search("[A-Za-z]", words):
                    continue
                with self.subTest(style=style, key=entry.key, text=entry.text):
                    # Rounding, blanks and colons may cost two characters of each line.
                    lines = entry.key.count("\n") + 1
                    self.assertGreaterEqual(len(entry.text) + 2 * lines,
                                            self.GROWTH * len(entry.key))
                    self.assertNotRegex(CONVERSION.sub("", entry.text), "[A-Za-z]")
                    self.assertEqual(CONVERSION.findall(entry.key),
                                     CONVERSION.findall(entry.text))

    @staticmethod
    def entries(style):
        with tempfile.TemporaryDirectory() as directory:
            output = pathlib.Path(directory) / "pseudo.po"
            subprocess.run([FOLDER / "pseudo_catalogue", TEMPLATE, output, style], check=True)
            return [entry for entry in po_file.read(output) if entry.key]


if __name__ == "__main__":
    unittest.main()
