"""Starts the screen reader and hears what it says."""

import json
import os
import subprocess
import sys
import tempfile

from orca import orca_platform
from stage.servers import dying_with_parent
from stage.wait import StageError, wait_until

READER = os.path.join(os.path.dirname(os.path.abspath(__file__)), "reader.py")
# What it says of the keys themselves, and of a selection that goes with its window.
MASK = "black circle"
KEYS = ("tab", "space", "return", "escape", "left shift", "caps lock on", "caps lock off",
        "selected", "text unselected", MASK)
# How Orca 43 says what 48 says otherwise.
WORDINGS = (("push button", "button"), (f"  {MASK}  {MASK}  ", " ●● "), ("read only text", "read only"),
            (" dot dot dot", ""))
OWN = "selected radio button"  # an utterance of its own


class ScreenReader:
    """Orca, on the stage that this process runs on: `with ScreenReader() as reader: ...`"""

    # Of a window that had the keyboard alone 48 takes the control that Tab goes to for known.
    misses_first_control = int(orca_platform.version.split(".")[0]) >= 48

    def __enter__(self):
        self._lines = tempfile.NamedTemporaryFile(dir=os.environ["ZELDLG_STAGE"])
        self._log = tempfile.TemporaryFile(dir=os.environ["ZELDLG_STAGE"])
        self._told = 0
        self._process = subprocess.Popen(dying_with_parent([sys.executable, READER]),
                                         stdout=self._lines, stderr=self._log)
        wait_until(self.everything, 30, "the screen reader", seen=self.log)
        self.forget()
        return self

    def __exit__(self, *_):
        # It takes its time to say goodbye; what it would give back goes with the stage.
        self._process.kill()
        self._process.wait()
        self._lines.close()
        self._log.close()

    def log(self):
        return os.pread(self._log.fileno(), 1 << 16, 0).decode(errors="replace")

    def everything(self):
        """All that it has said, key echo and all."""
        if self._process.poll() is not None:
            raise StageError(f"the screen reader has ended:\n{self.log()}")
        with open(self._lines.name) as lines:
            said = [json.loads(line) for line in lines if line.endswith("\n")]
        return [utterance for utterance in said if utterance is not None]

    def said(self):
        """What it has said since the last forget(), in the words of Orca 48, without the echo of
        keys. (A full stop at the end is a pause that it makes, or not, after an utterance.)
        """
        said = []
        everything = [utterance.strip().rstrip(".") for utterance in self.everything()]
        for utterance in everything[self._told:]:
            _, _, texts = utterance.partition(" dialog ")
            if texts and any(before.endswith(f" dialog {texts}") and before != utterance
                             for before in everything[:self._told]):
                continue  # 48 says the whole window again when its name changes
            if utterance == OWN and said:
                said[-1] += f" {OWN}"
            elif utterance.lower() not in KEYS and len(utterance) > 1:
                for old, new in WORDINGS:
                    utterance = utterance.replace(old, new)
                said.append(utterance)
        return said

    def forget(self):
        self._told = len(self.everything())
