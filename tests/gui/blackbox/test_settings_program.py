#!/usr/bin/python3
"""The administrator's program: settings and policies. test_doctor.py has its doctor."""

import os
import shutil
import subprocess
import tempfile
import unittest

from stage import scaled

PROGRAM = os.environ["ZELDLG_SETTINGS"]
KEY = r"SOFTWARE\Corvenna\Tessaly\2.0"


class SettingsCase(unittest.TestCase):
    def setUp(self):
        self.home = tempfile.mkdtemp(prefix="settings-")
        self.addCleanup(shutil.rmtree, self.home)
        self.environment = {**os.environ, "ZEL_HOME": self.home, "LANG": "C.UTF-8"}

    def run_program(self, *words, code=0, entered=""):
        result = subprocess.run([PROGRAM, *words], input=entered, text=True, stdout=subprocess.PIPE,
                                stderr=subprocess.PIPE, env=self.environment, timeout=scaled(60))
        self.assertEqual(code, result.returncode, result.stdout + result.stderr)
        return result.stdout if code == 0 else result.stdout + result.stderr


class Words(SettingsCase):
    def test_help_names_every_command_and_each_has_its_own(self):
        text = self.run_program("--help")
        commands = [line.split()[0] for line in text.split("Commands:\n")[1].splitlines()
                    if line.startswith("  ")]
        self.assertEqual(["list", "get", "set", "policy-check", "doctor"], commands)
        for command in commands:
            self.assertIn(f"Usage: zeldlg-settings {command}", self.run_program(command, "--help"))

    def test_mistakes_are_refused(self):
        for words in ([], ["bogus"], ["list", "x"], ["get", "x"], ["set", "k", "v", "number"],
                      ["set", "k", "v", "bogus", "1"], ["set", "k", "v", "binary", "abc"],
                      ["set", "k", "v", "binary", "0g"], ["set", "k", "v", "number", "x"],
                      ["set", "k", "v", "number", "-1"], ["set", "k", "v", "number", "4294967296"],
                      ["policy-check", "--enabled", "256"], ["policy-check", "--enabled"],
                      ["policy-check", "--bogus", "1"]):
            with self.subTest(words=words):
                self.assertIn("zeldlg-settings", self.run_program(*words, code=2))


class PolicyCheck(SettingsCase):
    def check(self, pins, *words, code):
        return self.run_program("policy-check", *words, code=code, entered=pins)

    def test_a_policy_comes_from_options_or_the_store(self):
        for value, data in (("PoliciesEnabled", "2"), ("P2MinLen", "6")):
            self.run_program("set", f"{KEY}\\Policies\\Six", value, "number", data)
        for words in (["--policy", "Six"], ["--enabled", "2", "--p2-min-length", "6"],
                      ["--policy", "Six", "--p2-class-mask", "31"]):
            self.check("183729\n", *words, code=0)
            self.assertIn("1: P1 9000  P2 64A6  P4 9000\n", self.check("18372\n", *words, code=1))

    def test_each_line_is_judged_without_naming_the_pin(self):
        words = ["--enabled", "15", "--p1-threshold", "1", "--p2-min-length", "6",
                 "--p2-class-mask", "15", "--p4-characters", "0"]
        self.environment.pop("DISPLAY")
        for line_end in ("\n", "\r\n"):
            out = self.check("975311" + line_end, *words[:8], "--p1-full-pin-check", "1", code=0)
            self.assertEqual("1: P1 9000  P2 9000  P4 9000", out.splitlines()[0])
            self.assertEqual(3, out.count("This seems to be a valid PIN code"))
        out = self.check("1234\n9700\n", *words, code=1)
        lines = out.splitlines()
        self.assertEqual("1: P1 644F  P2 64A6  P4 9000", lines[0])
        self.assertIn("2: P1 6440  P2 64A6  P4 6402", lines)
        self.assertIn('  P4: Pin code contains at least a disallowed characters: "0"', lines)
        self.assertNotIn("1234", out)
        self.assertNotIn("9700", out)


class Settings(SettingsCase):
    def test_what_is_set_is_got_and_listed(self):
        for value, kind, data, shown in (("ShowEnrolmentHint", "number", "0", "number 0"),
                                         ("LimitPinToAscii", "number", "0x10", "number 16"),
                                         ("Some text", "string", "größer", "string größer"),
                                         ("Some bytes", "binary", "01abFF", "binary 01abff")):
            self.run_program("set", KEY, value, kind, data)
            self.assertEqual(shown + "\n", self.run_program("get", KEY, value))
        listed = self.run_program("list")
        self.assertIn(f"{KEY}  ShowEnrolmentHint  number 0\n", listed)
        self.assertIn(f"{KEY}\\CSP  Automatic default selection timeout  not set (5)\n", listed)
        with open(os.path.join(self.home, ".tessaly", "registry"), "rb") as file:
            self.assertIn(b'"ShowEnrolmentHint"=dword:00000000\r\n', file.read())

    def test_policies_are_listed_by_their_names(self):
        for name in ("Strict", "Lax"):
            self.run_program("set", f"{KEY}\\Policies\\{name}", "P2MinLen", "number", "6")
        listed = self.run_program("list")
        for name in ("Strict", "Lax"):
            self.assertIn(f"{KEY}\\Policies\\{name}  P2MinLen  number 6\n", listed)
            self.assertIn(f"{KEY}\\Policies\\{name}  P2ClassMask  not set (255)\n", listed)

    def test_other_roots_can_be_named(self):
        self.run_program("set", r"HKEY_CURRENT_USER\Some\Key", "@", "string", "default")
        self.assertEqual("string default\n",
                         self.run_program("get", r"hkey_current_user\some\key", "@"))

    def test_errors_are_said_with_their_numbers(self):
        self.assertIn("error 2:", self.run_program("get", KEY, "Missing", code=1))
        os.makedirs(os.path.join(self.home, ".tessaly"), exist_ok=True)
        with open(os.path.join(self.home, ".tessaly", "registry"), "w") as file:
            file.write("something else")
        self.assertIn("error 1017:", self.run_program("list", code=1))

    def test_no_display_is_needed(self):
        self.environment.pop("DISPLAY")
        self.run_program("set", KEY, "ShowEnrolmentHint", "number", "1")


if __name__ == "__main__":
    unittest.main()
