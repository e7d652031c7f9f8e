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

# The rooms whose literals may be texts for the user.
TEXT_ROOMS = ("api", "dialogs", "pin", "policy", "biometric", "runtime", "resources")
SETTINGS = ROOT / "docs" / "settings.md"
# Literals there that are no texts, by what they are for.
NOT_SHOWN = {
    "the alphabets that policies count":
        {"abcdefghijklmnopqrstuvwxyz", "ABCDEFGHIJKLMNOPQRSTUVWXYZ", "0123456789",
         "!\"#$%&'()*+,-./:;<=>?@[\\]^_`{|}~"},
    "the digits of challenges and responses": {"0123456789ABCDEF", "0123456789abcdefABCDEF "},
    "names of data that the toolkit keeps": {"zeldlg-tied-to"},
    "the folders, the files and a field of catalogues":
        {"/", "/share/locale", "/LC_MESSAGES", "/LC_MESSAGES/", "LC_MESSAGES", "tokenutils", ".mo", "LC_PATH",
         "Plural-Forms:"},
    "how the toolkit is told to show a list": {"* { -GtkComboBox-appears-as-list: true; }"},
    "what the X server and the kernel keep": {"_NET_ACTIVE_WINDOW", "/proc/self/task/%d/stat", ") S "},
    "what is wrong with a policy, for programmers":
        {"the policy's block is too small", "the policy's block is missing",
         "the enabled character list is missing", "the characters are missing"},
    "conversions of a format": {"%", "*", "width", "-+ #0", "hlLqjzt"},
    "what is said on standard error":
        {"zeldlg: the connection to the display is lost\n", "the display is lost",
         "the GUI thread ends", "zeldlg: Assertion ' ' failed at %s:%d in %s(): %s\n"},
    "the names of the token of a demonstration and of the program": {"fake token", "wxdll"},
    "characters that are put into texts": {"\u00a0", "\u200e", "\u200f", "\u2026"},
    "the widest serial number": {"XXXXXXXX-XXXX-XXXX XX:XX:XX"},
    "line ends": {"\r", "\u2028", "\u2029"},
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
    """The string literals of a C++ source."""
    source = COMMENT.sub(lambda match: match[1] or " ", source)
    source = re.sub(r"'(?:\\.|[^'\\\n])+'", "' '", DIRECTIVE.sub("", source))
    source = NO_TEXT.sub(";", source).replace('extern "C"', "extern")
    for match in LITERAL.finditer(source):
        pieces = re.findall(r'"((?:\\.|[^"\\\n])*)"', match["text"])
        yield "".join(pieces).encode("latin-1", "backslashreplace").decode("unicode_escape")


def setting_names():
    """The keys and the values of the settings file, as the administrator's page has them."""
    names = re.findall(r"`([^`\n]+)`", SETTINGS.read_text(encoding="utf-8"))
    return {name.replace("\u2026", r"SOFTWARE\Corvenna\Tessaly\2.0").removesuffix(r"\NAME")
            for name in names}


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

    def test_every_literal_is_in_it_or_known_to_be_no_text(self):
        """Knows nothing of how texts are marked: finds those that are not."""
        known = set(keys(TEMPLATE)).union(setting_names(), *NOT_SHOWN.values())
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
