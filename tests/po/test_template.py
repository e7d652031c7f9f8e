#!/usr/bin/python3
"""The template of texts holds what the sources mark: tests/given_texts.cpp finds what they do not."""

import os
import pathlib
import subprocess
import tempfile
import unittest

import po_file

ROOT = pathlib.Path(__file__).resolve().parents[2]
TEMPLATE = ROOT / "po" / "tokenutils.pot"


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


if __name__ == "__main__":
    unittest.main()
