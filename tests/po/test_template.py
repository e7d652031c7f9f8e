#!/usr/bin/python3
"""The template of texts holds what the sources hold."""

import os
import pathlib
import re
import subprocess
import tempfile
import unittest

import po_file

ROOT = pathlib.Path(__file__).resolve().parents[2]
TEMPLATE = ROOT / "po" / "tokenutils.pot"

# The rooms whose plain literals are texts for the user.
TEXT_ROOMS = ("dialogs", "pin", "policy", "biometric", "runtime/handlers")
# Literals there that are no texts, by what they are for.
NOT_SHOWN = {
    "the alphabets that policies count":
        {"abcdefghijklmnopqrstuvwxyz", "ABCDEFGHIJKLMNOPQRSTUVWXYZ", "0123456789",
         "!\"#$%&'()*+,-./:;<=>?@[\\]^_`{|}~"},
    "the digits of challenges": {"0123456789ABCDEF"},
    "names of data that the toolkit keeps": {"zeldlg-tied-to"},
    "glue between texts": {"", " ", "\n", "\n\n", ":"},
}

# Comments, then what a line starts that is no text, then literals; adjacent ones are one.
COMMENT = re.compile(r'//[^\n]*|/\*.*?\*/|("(?:\\.|[^"\\\n])*"|\'(?:\\.|[^\'\\\n])*\')', re.DOTALL)
DIRECTIVE = re.compile(r"^\s*#\s*(include|pragma|error)[^\n]*", re.MULTILINE)
LITERAL = re.compile(r'(?<![\w"])(?P<prefix>L|u8|u|U)?(?P<text>"(?:\\.|[^"\\\n])*"'
                     r'(?:\s*"(?:\\.|[^"\\\n])*")*)')


# Statements whose literals are for programmers: exceptions, names of signals and properties.
NO_TEXT = re.compile(r"\b(?:throw\b|(?:static_assert|g_signal_\w+|g_object_\w+|\w+_style_get)\()"
                     r"[^;]*;")


def literals(source):
    """The plain string literals of a C++ source; wide ones name settings and are left out."""
    source = COMMENT.sub(lambda match: match[1] or " ", source)
    source = re.sub(r"'(?:\\.|[^'\\\n])+'", "' '", DIRECTIVE.sub("", source))
    source = NO_TEXT.sub(";", source)
    for match in LITERAL.finditer(source):
        if not match["prefix"]:
            pieces = re.findall(r'"((?:\\.|[^"\\\n])*)"', match["text"])
            yield "".join(pieces).encode().decode("unicode_escape")


def keys(path):
    return {entry.key: entry.flags for entry in po_file.read(path) if entry.key}


class Template(unittest.TestCase):
    def test_it_is_what_extraction_gives(self):
        with tempfile.TemporaryDirectory() as directory:
            fresh = os.path.join(directory, "fresh.pot")
            subprocess.run([ROOT / "po" / "extract", fresh], check=True)
            expected = keys(fresh)
        committed = keys(TEMPLATE)
        hint = "run the build target pot"
        self.assertEqual([], sorted(set(expected) - set(committed)), f"missing: {hint}")
        self.assertEqual([], sorted(set(committed) - set(expected)), f"left over: {hint}")
        self.assertEqual(expected, committed, f"flags differ: {hint}")

    def test_every_literal_of_a_dialog_is_in_it(self):
        """Knows nothing of how texts are marked: finds those that are not."""
        known = set(keys(TEMPLATE)).union(*NOT_SHOWN.values())
        found = 0
        for room in TEXT_ROOMS:
            for path in sorted((ROOT / "src" / room).rglob("*.cpp")):
                for text in literals(path.read_text(encoding="utf-8")):
                    found += 1
                    with self.subTest(path=str(path.relative_to(ROOT))):
                        if text not in known:
                            self.fail(f"not in the template: {text!r}; mark it with CATALOGUE_KEY")
        self.assertGreater(found, 200)

    def test_headers_hold_no_texts(self):
        for room in TEXT_ROOMS:
            for path in sorted((ROOT / "src" / room).rglob("*.h")):
                self.assertEqual([], list(literals(path.read_text(encoding="utf-8"))), path)


if __name__ == "__main__":
    unittest.main()
