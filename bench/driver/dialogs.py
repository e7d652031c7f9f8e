"""The PIN dialog beside the same dialog of a bare program, in turns."""

import statistics

from . import programs
from .figures import Figure, ratios

DIALOGS = 11
MS = 1e6
MIB = 1024


class Runs:
    """What one program's runs say, one entry a run."""

    def __init__(self):
        self.cold = []       # ms from the start of the program to the focus
        self.warm = []       # ms from the call to the focus, median of the later dialogs
        self.closing = []    # ms from OK to the return, median of the later dialogs
        self.rss = []        # MiB after the last dialog

    def add(self, notes):
        self.cold.append((notes.first("focus") - notes.first("start")) / MS)
        self.warm.append(statistics.median(notes.between("call", "focus")[1:]) / MS)
        self.closing.append(statistics.median(notes.between("ok", "return")[1:]) / MS)
        self.rss.append(notes.first("rss") / MIB)


def measure(rounds, say):
    ours, bare, translated = Runs(), Runs(), Runs()
    for turn in range(rounds):
        say(f"dialogs, {turn + 1} of {rounds}")
        # Who comes first finds the files in memory as the other left them: each in turn.
        for kind in (("host", "bare") if turn % 2 else ("bare", "host")):
            if kind == "host":
                ours.add(programs.host("dialogs", DIALOGS, probed=True))
            else:
                bare.add(programs.bare(DIALOGS, probed=True))
        translated.add(programs.bare("locale", DIALOGS, probed=True))
    more = [mine - theirs for mine, theirs in zip(ours.closing, bare.closing)]
    memory = [mine - theirs for mine, theirs in zip(ours.rss, bare.rss)]
    return [
        Figure("cold: program start to focus", ours.cold, "ms"),
        Figure("cold: the bare program", bare.cold, "ms"),
        Figure("cold: the bare program with translations", translated.cold, "ms"),
        Figure("cold: ratio", ratios(ours.cold, bare.cold), "", 1.10),
        Figure("warm: call to focus", ours.warm, "ms"),
        Figure("warm: the bare program", bare.warm, "ms"),
        Figure("warm: ratio", ratios(ours.warm, bare.warm), "", 1.10),
        Figure("OK to return", ours.closing, "ms"),
        Figure("OK to return: the bare program", bare.closing, "ms"),
        Figure("OK to return: beyond the bare program", more, "ms", 1),
        Figure("memory after ten dialogs and one", ours.rss, "MiB"),
        Figure("memory: beyond the bare program", memory, "MiB", 3),
    ]
