#!/usr/bin/python3
"""The manual page of a program against the program's help."""

import os
import re
import subprocess
import unittest

PROGRAM = os.environ["ZELDLG_PROGRAM"]
NAME = os.path.basename(PROGRAM)
MANUAL = os.environ["ZELDLG_MANUAL"]


def help_of(*words):
    return subprocess.run([PROGRAM, *words, "--help"], check=True, text=True,
                          stdout=subprocess.PIPE).stdout


def rendered():
    """The page as text on lines so long that nothing is broken, and what groff warned of."""
    with open(MANUAL, "rb") as file:
        result = subprocess.run(
            ["groff", "-man", "-Tutf8", "-ww", "-P-cbou", "-rLL=2000n"], input=file.read(),
            stdout=subprocess.PIPE, stderr=subprocess.PIPE, check=True)
    return result.stdout.decode(), result.stderr.decode()


class Manual(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        text, cls.warnings = rendered()
        cls.lines = [" ".join(line.split()) for line in text.splitlines()]
        cls.words = " ".join(text.split())
        cls.commands = re.findall(r"^  ([a-z0-9-]+)  +\S",
                                  help_of().split("Commands:\n")[1], re.MULTILINE)

    def test_it_is_a_clean_page(self):
        self.assertEqual("", self.warnings)

    def test_every_command_has_a_heading_with_its_synopsis(self):
        self.assertGreaterEqual(len(self.commands), 5)
        for command in self.commands:
            usage = help_of(command).splitlines()[0]
            self.assertTrue(usage.removeprefix(f"Usage: {NAME} ") in self.lines, usage)

    def test_every_word_of_every_help_is_there_in_its_order(self):
        for command in self.commands:
            for block in help_of(command).split("\n\n", 2)[2].split("\n\n"):
                self.assertTrue(" ".join(block.split()) in self.words, f"{command}: {block}")

    def test_options_and_exit_codes_of_the_program_are_there(self):
        _, _, options, _, codes = help_of().split("\n\n")
        for line in options.splitlines():
            self.assertTrue(" ".join(line.split()) in self.words, line)
        self.assertTrue(codes.split(":", 1)[1].strip() in self.words, codes)


if __name__ == "__main__":
    unittest.main()
