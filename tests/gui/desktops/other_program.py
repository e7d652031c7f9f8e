"""Who types where: the program beside the dialogs, and which of both a key arrived at."""

import os
import subprocess
import threading

from stage import wait_until
from stage.servers import dying_with_parent

PROGRAM = os.path.join(os.path.dirname(os.path.abspath(__file__)), "editor.py")


class Editor:
    """The other program, started in an environment. `keys` are the names of those it got."""

    def __init__(self, environment=None, options=()):
        self.keys = []
        self.active = False
        self._process = subprocess.Popen(
            dying_with_parent(["/usr/bin/python3", PROGRAM, *options, "Editor"]),
            env=environment, stdout=subprocess.PIPE, text=True)
        self.pid = self._process.pid
        self._reader = threading.Thread(target=self._read, daemon=True)
        self._reader.start()

    def _read(self):
        for line in self._process.stdout:
            kind, *name = line.split()
            if kind == "key":
                self.keys.extend(name)
            else:
                self.active = kind == "active"

    def type_into(self, type_text, text="ab"):
        """Has the user type into it, once it has the keyboard, and forgets the keys."""
        wait_until(lambda: self.active, 8, "the keyboard in the other program")
        type_text(text)
        wait_until(lambda: "".join(self.keys) == text, 10, "the keys in the other program",
                   seen=lambda: self.keys)
        self.keys.clear()

    def close(self):
        self._process.kill()
        self._process.wait()
        self._reader.join()
        self._process.stdout.close()
