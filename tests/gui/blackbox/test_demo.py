#!/usr/bin/python3
"""The demo program as a person at a terminal uses it."""

import os
import shutil
import signal
import subprocess
import tempfile
import unittest

from stage import Screen, scaled, wait_until

PROGRAM = os.environ["ZELDLG_DEMO"]
KEY = r"SOFTWARE\Corvenna\Tessaly\2.0"


class DemoCase(unittest.TestCase):
    def setUp(self):
        self.home = tempfile.mkdtemp(prefix="demo-")
        self.addCleanup(shutil.rmtree, self.home)
        self.environment = {**os.environ, "ZEL_HOME": self.home, "LANG": "C.UTF-8"}

    def start(self, *words):
        # Instrumented programs do not find a library by their own search path.
        if words and words[0] not in ("--library", "--help"):
            words = ("--library", os.environ["ZELDLG_LIBRARY"], *words)
        process = subprocess.Popen([PROGRAM, *words], stdout=subprocess.PIPE,
                                   stderr=subprocess.PIPE, text=True, env=self.environment)
        self.addCleanup(process.kill)
        return process

    def run_demo(self, *words, code=0):
        process = self.start(*words)
        out, err = process.communicate(timeout=scaled(60))
        self.assertEqual(code, process.returncode, out + err)
        return out if code == 0 else out + err


class Words(DemoCase):
    def test_help_names_every_command_and_each_has_its_own(self):
        text = self.run_demo("--help")
        commands = [line.split()[0] for line in text.split("Commands:\n")[1].splitlines()
                    if line.startswith("  ")]
        self.assertLessEqual({"pin", "pin-ex", "translate", "locale", "change-pin",
                              "change-policed-pin"}, set(commands))
        for command in commands:
            self.assertIn(f"Usage: zeldlg-demo {command}", self.run_demo(command, "--help"))

    def test_mistakes_are_refused(self):
        for words in ([], ["bogus"], ["pin", "--bogus"], ["pin", "extra"], ["pin", "--min", "x"],
                      ["pin", "--min", "-1"], ["pin", "--max", "4294967296"],
                      ["pin-ex", "--final-try"], ["translate"], ["locale", "x"], ["settings"],
                      ["change-pin", "--bogus"], ["change-pin", "--enabled", "1"],
                      ["change-policed-pin", "--enabled", "256"], ["pin-pad", "--kind", "x"],
                      ["pin-pad", "--script", "1z"], ["pin-pad", "--script", "!"],
                      ["change-policed-pin", "--enabled"], ["select-token", "--count", "1001"],
                      ["select-token", "x"], ["select-id", "--bogus"],
                      ["unblock-method", "x"], ["unblock-method", "--algorithm", "-1"],
                      ["unblock-cr", "--bogus"], ["unblock-cr", "x"],
                      ["unblock-cr", "--challenge", "abc"], ["unblock-cr", "--challenge", "0g"],
                      ["unblock-cr", "--length", "2147483648"], ["biometric"],
                      ["biometric", "x"], ["biometric", "auth", "enrol"],
                      ["biometric", "enrol", "--scans", "0"], ["keygen", "x"],
                      ["keygen", "--scans", "2"], ["all", "x"]):
            with self.subTest(words=words):
                self.assertIn("zeldlg-demo" if not words else "", self.run_demo(*words, code=2))

    def test_a_missing_library_is_said(self):
        self.assertIn("no-such-library.so",
                      self.run_demo("--library", "no-such-library.so", "pin", code=3))


class Dialogs(DemoCase):
    def answer(self, *words, keys, end="Return"):
        screen = Screen()
        self.addCleanup(screen.close)
        process = self.start(*words)
        window = screen.find_window("Enter PIN", process)
        screen.fill(window, [keys])
        screen.key(end, window.find("password text"))
        out, err = process.communicate(timeout=scaled(60))
        return process.returncode, out, err

    def test_the_pin_is_printed_only_when_asked_for(self):
        for command in ("pin", "pin-ex"):
            code, out, err = self.answer(command, keys="73915")
            self.assertEqual((0, "result 0x00000000 (confirmed)\nPIN of 5 bytes\n"), (code, out))
            self.assertNotIn("73915", err)
            code, out, _ = self.answer(command, "--reveal", keys="73915")
            self.assertEqual((0, "result 0x00000000 (confirmed)\nPIN of 5 bytes: 73915\n"),
                             (code, out))

    def test_cancel_is_said(self):
        code, out, _ = self.answer("pin", keys="", end="Escape")
        self.assertEqual((1, "result 0x80003001 (cancelled)\n"), (code, out))

    def test_a_pin_that_does_not_fit_counts_as_cancelled(self):
        code, out, _ = self.answer("pin", "--capacity", "3", keys="1234")
        self.assertEqual((1, "result 0x80003001 (cancelled)\n"), (code, out))


class Changes(DemoCase):
    def type(self, *words, title="Change transport PIN", values=("1234", "183729", "183729")):
        """Types into the dialog of a command."""
        screen = Screen()
        self.addCleanup(screen.close)
        process = self.start(*words)
        window = screen.find_window(title, process)
        screen.fill(window, values)
        return screen, process, window

    def change(self, *words, **options):
        screen, process, window = self.type(*words, **options)
        wait_until(lambda: window.find("push button", "OK").enabled)
        screen.key("Return")
        out, err = process.communicate(timeout=scaled(60))
        return process.returncode, out

    def test_lengths_are_printed_and_values_only_when_asked_for(self):
        for command, title in (("change-pin", "Change transport PIN"),
                               ("change-transport-pin", "Unlock PIN"),
                               ("unblock-puk", "Change transport PIN"),
                               ("change-policed-pin", "Change transport PIN")):
            code, out = self.change(command, title=title)
            self.assertEqual((0, "result 0x00000000 (confirmed)\nold value of 4 bytes\n"
                                 "new value of 6 bytes\n"), (code, out))
        code, out = self.change("change-pin", "--puk", "--reveal", title="Change PUK")
        self.assertIn("old value of 4 bytes: 1234\nnew value of 6 bytes: 183729\n", out)

    def test_a_policy_comes_from_options(self):
        policy = ["--enabled", "10", "--p2-min-length", "6", "--p4-characters", "5"]
        code, out = self.change("change-policed-pin", *policy)
        self.assertEqual(0, code, out)
        for value, met, unmet in (("18372", "Restriction", "Diversification"),
                                  ("183725", "Diversification", "Restriction")):
            screen, process, window = self.type("change-policed-pin", *policy,
                                                values=["1234", value, value])
            wait_until(lambda: {f"Met: {met}", f"Not met: {unmet}"} <=
                       {button.name for button in window.find_all("push button")})
            screen.key("Escape")
            process.communicate(timeout=scaled(60))


class Selections(DemoCase):
    def choose(self, *words, title, keys):
        screen = Screen()
        self.addCleanup(screen.close)
        process = self.start(*words)
        screen.find_window(title, process)
        for key in keys:
            screen.key(key)
        out, err = process.communicate(timeout=scaled(60))
        return process.returncode, out

    def test_the_choice_is_printed(self):
        words = ["select-token", "--entry", "One=Reader", "--entry", "Two=Other reader"]
        self.assertEqual((0, "chosen: Two\nresult 0x00000000 (confirmed)\n"),
                         self.choose(*words, title="Select a token", keys=["Down", "Return"]))
        self.assertEqual((1, "result 0x80003001 (cancelled)\n"),
                         self.choose(*words, title="Select a token", keys=["Escape"]))
        self.assertEqual((0, "always use it: yes\nresult 0x00000000 (confirmed)\n"),
                         self.choose("select-id", "--always", title="Select Digital ID",
                                     keys=["Return"]))


class Unblocking(DemoCase):
    def start_unlock(self, *words):
        screen = Screen()
        self.addCleanup(screen.close)
        process = self.start(*words)
        return screen, process, screen.find_window("Unlock PIN", process)

    def test_method_and_algorithm_are_printed(self):
        for words, in_list, last, code, out in (
                ([], [], "Return", 0,
                 "result 0x00000000 (confirmed)\nmethod 1 (PUK)\nalgorithm at index 0\n"),
                (["--no-puk", "--algorithm", "1", "--algorithm", "0"],
                 ["Down", "Down", "Return"], "Return", 0,
                 "result 0x00000000 (confirmed)\nmethod 2 (off-line)\nalgorithm at index 1\n"),
                (["--no-algorithms"], [], "Escape", 1, "result 0x80003001 (cancelled)\n")):
            screen, process, _ = self.start_unlock("unblock-method", *words)
            if in_list:
                screen.key("Tab")
                screen.wait_focused()
            for key in in_list:
                screen.x11.key(key)
            screen.key(last)
            self.assertEqual(out, process.communicate(timeout=scaled(60))[0])
            self.assertEqual(code, process.returncode)

    def unlock(self, *words, values):
        screen, process, window = self.start_unlock("unblock-cr", *words)
        screen.fill(window, values)
        wait_until(lambda: window.find("push button", "OK").enabled)
        screen.key("Return")
        out, err = process.communicate(timeout=scaled(60))
        return process.returncode, out

    def test_lengths_are_printed_and_values_only_when_asked_for(self):
        confirmed = "result 0x00000000 (confirmed)\n"
        self.assertEqual((0, confirmed + "response of 8 bytes\n"),
                         self.unlock("--challenge", "00ff", values=["0123456789ABCDEF"]))
        self.assertEqual((0, confirmed + "response of 2 bytes\nnew PIN of 5 bytes\n"),
                         self.unlock("--length", "2", "--new-pin", values=["a1b2", *["73915"] * 2]))
        self.assertEqual((0, confirmed + "response of 2 bytes: a1b2\nnew PIN of 5 bytes: 73915\n"),
                         self.unlock("--length", "2", "--new-pin", "--reveal",
                                     values=["A1B2", *["73915"] * 2]))
        self.assertEqual((1, "result 0x80003000 (failed)\n"),
                         self.unlock("--length", "2", "--capacity", "1", values=["a1b2"]))


class Windows(DemoCase):
    def settings(self, *words):
        return subprocess.run([os.environ["ZELDLG_SETTINGS"], *words], env=self.environment,
                              stdout=subprocess.PIPE, text=True, check=True).stdout

    def explain(self, wanted):
        self.settings("set", KEY, "ShowEnrolmentHint", "number", str(int(wanted)))

    def setUp(self):
        super().setUp()
        self.explain(False)
        self.screen = Screen()
        self.addCleanup(self.screen.close)

    def test_a_window_stays_for_its_time_and_the_scans_are_counted(self):
        out = self.run_demo("biometric", "enrol", "--scans", "4", "--seconds", "0")
        self.assertEqual("scan 1\nscan 2\nscan 3\nscan 4\nhidden\n", out)
        for words in (["biometric", "auth"], ["keygen"]):
            self.assertEqual("shown\nhidden\n", self.run_demo(*words, "--seconds", "0"))

    def test_an_interruption_removes_the_window(self):
        for words, title, said in (
                (["biometric", "auth"], "Lumora Bio Token", "shown\n"),
                (["biometric", "enrol"], "Lumora Bio Token - enrolling finger (scan 1)", "scan 1\n"),
                (["keygen"], "Generating key-pair", "shown\n")):
            process = self.start(*words, "--seconds", "600")
            self.screen.find_window(title, process)
            self.assertEqual(said, process.stdout.readline())
            process.send_signal(signal.SIGINT)
            out, _ = process.communicate(timeout=scaled(60))
            self.assertEqual((1, "interrupted\n"), (process.returncode, out))

    def test_the_scans_are_shown(self):
        process = self.start("biometric", "enrol", "--scans", "3", "--seconds", "3")
        for scan in (1, 2, 3):
            self.screen.find_window(f"Lumora Bio Token - enrolling finger (scan {scan})", process)
        out, _ = process.communicate(timeout=scaled(60))
        self.assertEqual((0, "scan 1\nscan 2\nscan 3\nhidden\n"), (process.returncode, out))

    def test_the_explanation_comes_first_unless_it_is_switched_off(self):
        self.explain(True)
        process = self.start("biometric", "enrol", "--seconds", "0")
        window = self.screen.find_window("Fingerprint enrolment information", process)
        window.find("check box").press()
        wait_until(lambda: not window.find("check box").checked)
        self.screen.key("Return", window.find("push button", "OK"))
        process.communicate(timeout=scaled(60))
        self.assertEqual(0, process.returncode)
        self.assertEqual("number 0\n", self.settings("get", KEY, "ShowEnrolmentHint"))


class Tour(DemoCase):
    TITLES = {"Enter PIN", "PinPad", "Change transport PIN", "Change PUK", "Unlock PIN",
              "Select a token", "Select Digital ID", "Error", "Question", "Token locked",
              "Lumora Bio Token", "Fingerprint enrolment information",
              "Lumora Bio Token - enrolling finger (scan 3)", "Authentication failed",
              "Enrolment failed", "Generating key-pair"}

    def test_it_shows_every_dialog_and_goes_on_after_each(self):
        screen = Screen()
        self.addCleanup(screen.close)
        process = self.start("all")
        seen = set()

        def walk():
            for window in screen.windows(process):
                seen.add(window.name)
                if "modal" in window.states and screen.focused(process) is not None:
                    screen.x11.key("Escape")
            return process.poll() is not None
        wait_until(walk, 120, "the end of the tour", seen=lambda: screen.dump(process))
        out, err = process.communicate()
        self.assertEqual(0, process.returncode, err)
        self.assertLessEqual(self.TITLES, seen)
        self.assertIn("28/28  ", out)


class Texts(DemoCase):
    def test_translate_and_locale(self):
        self.assertEqual("Nothing translates this\n",
                         self.run_demo("translate", "Nothing translates this"))
        self.assertEqual("en_US\n", self.run_demo("locale"))


if __name__ == "__main__":
    unittest.main()
