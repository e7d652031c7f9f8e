"""Dialogs of far more rows, and of a far longer text, than anybody has."""

from . import programs
from .figures import Figure

MS = 1e6
LIMIT_MS = 2000
CASES = (("20,000 tokens", "tokens", 20000), ("20,000 digital IDs", "ids", 20000),
         ("5,000 algorithms", "algorithms", 5000), ("a label of 60 MB", "label", 60_000_000))


def measure(rounds, say):
    figures = []
    for name, command, size in CASES:
        shown, after = [], []
        for turn in range(rounds):
            say(f"{name}, {turn + 1} of {rounds}")
            notes = programs.host(command, size, probed=True)
            shown.append(notes.between("call", "focus")[0] / MS)
            # The last two dialogs: the one that is measured, and the one that comes next.
            after.append((notes.all("focus")[-1] - notes.all("ok")[-2]) / MS)
        figures += [Figure(f"{name}: call to focus", shown, "ms", LIMIT_MS),
                    Figure(f"{name}: OK to the focus of the next dialog", after, "ms", LIMIT_MS)]
    return figures
