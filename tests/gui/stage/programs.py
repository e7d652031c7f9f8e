"""Test classes for programs that show dialogs: started, answered at the keyboard, and waited for."""

import os
import subprocess
import unittest

from .screen import Screen
from .wait import scaled, wait_until


class ProgramTestCase(unittest.TestCase):
    """A test with `self.screen`; programs that it starts are ended with it."""

    def setUp(self):
        self.screen = Screen()
        self.addCleanup(self.screen.close)

    def start(self, *command, **environment):
        """Starts a program; an empty variable is one that is not set."""
        variables = {name: value for name, value in {**os.environ, **environment}.items() if value}
        process = subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                                   text=True, env=variables)
        self.addCleanup(process.communicate)
        self.addCleanup(process.kill)
        return process

    def answer(self, process, title, *values, key="Return"):
        """Types the values into the fields of the window, and presses the key. Gives its texts."""
        window = self.screen.find_window(title, process)
        self.screen.fill(window, values)
        if key == "Return":
            wait_until(lambda: any("default" in button.states and button.enabled
                                   for button in window.find_all("push button")),
                       what="a default button that can be pressed", seen=window.dump)
        texts = window.texts()
        self.screen.key(key)
        self.screen.wait_gone(window)
        return texts

    def ends(self, process, code, *said):
        """Waits for its end; gives what it said, in which these texts are."""
        out, err = process.communicate(timeout=scaled(60))
        self.assertEqual(code, process.returncode, out + err)
        for text in said:
            self.assertIn(text, out + err)
        return out + err
