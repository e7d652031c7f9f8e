"""What a part found: how many cases there were, what was wrong, how long things took."""

import collections
import sys
import threading


def percentile(values, part):
    """The smallest value that `part` of them do not exceed."""
    ordered = sorted(values)
    return ordered[min(len(ordered) - 1, int(part * len(ordered)))]


class Report:
    """Of one part; any thread may add to it."""

    MOST_EXPLAINED = 20

    def __init__(self, part, seed):
        self.part = part
        self.seed = seed
        self.cases = 0
        self.faults = collections.Counter()
        self.times = collections.defaultdict(list)  # of a kind of case, in seconds
        self.notes = []
        self.counts = collections.Counter()
        self._lock = threading.Lock()

    def passed(self, kind=None, seconds=None):
        with self._lock:
            self.cases += 1
            if seconds is not None:
                self.times[kind].append(seconds)

    def failed(self, fault, kind, again):
        """A case that was wrong, with the commands that play it again."""
        with self._lock:
            self.cases += 1
            self.faults[f"{fault.kind} ({kind})"] += 1
            if sum(self.faults.values()) <= self.MOST_EXPLAINED:
                print(f"\n{self.part}: {fault}\nAgain: " + "\n       ".join(again) + "\n",
                      file=sys.stderr, flush=True)

    def count(self, what):
        """Something that is no fault, but told."""
        with self._lock:
            self.counts[what] += 1

    def note(self, text):
        with self._lock:
            self.notes.append(text)

    def print(self):
        wrong = sum(self.faults.values())
        print(f"\n{self.part}, seed {self.seed}: {self.cases} cases, {wrong} wrong")
        for kind, count in self.faults.most_common():
            print(f"  {count} x {kind}")
        for note in self.notes + [f"{number} {what}" for what, number in self.counts.items()]:
            print(f"  {note}")
        if self.times:
            print(f"\n  | {'':24} | cases | median ms | 99 % ms | longest ms |")
            print(f"  |{'-' * 26}|{'-' * 7}|{'-' * 11}|{'-' * 9}|{'-' * 12}|")
            rows = sorted(self.times.items())
            if len(rows) > 1:
                rows.append(("all", [value for _, values in rows for value in values]))
            for kind, values in rows:
                median, most = percentile(values, 0.5) * 1000, percentile(values, 0.99) * 1000
                print(f"  | {kind:24} | {len(values):5} | {median:9.1f} | {most:7.1f} "
                      f"| {max(values) * 1000:10.1f} |")
        sys.stdout.flush()
        return wrong == 0
