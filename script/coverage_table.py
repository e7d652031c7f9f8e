#!/usr/bin/python3
"""Prints what the tests ran, for each room of src/, and the lines that they did not.

    coverage_table.py COVERAGE_JSON LEAST_PERCENT

Ends with 1 when fewer lines than that ran.
"""

import collections
import json
import os
import sys


class Count:
    def __init__(self):
        self.lines = self.lines_run = self.branches = self.branches_run = 0

    def add(self, file):
        for line in file["lines"]:
            if line.get("gcovr/noncode"):
                continue
            self.lines += 1
            self.lines_run += line["count"] > 0
            self.branches += len(line["branches"])
            self.branches_run += sum(branch["count"] > 0 for branch in line["branches"])

    def row(self, name):
        return (f"{name:20} {part(self.lines_run, self.lines)}   "
                f"{part(self.branches_run, self.branches)}")


def part(number, whole):
    percent = f"{100 * number / whole:.1f} %" if whole else "-"
    return f"{number:6} of {whole:6} {percent:>8}"


def ranges(numbers):
    """[1, 2, 3, 7] as "1-3 7"."""
    spans = []
    for number in numbers:
        if spans and number == spans[-1][1] + 1:
            spans[-1][1] = number
        else:
            spans.append([number, number])
    return " ".join(f"{first}-{last}" if last > first else str(first) for first, last in spans)


def main():
    path, least = sys.argv[1], float(sys.argv[2])
    with open(path, encoding="utf-8") as file:
        files = json.load(file)["files"]
    total, rooms = Count(), collections.defaultdict(Count)
    missed = []
    for file in files:
        total.add(file)
        rooms[os.path.relpath(os.path.dirname(file["file"]), "src")].add(file)
        numbers = [line["line_number"] for line in file["lines"]
                   if not line["count"] and not line.get("gcovr/noncode")]
        if numbers:
            missed.append(f"{file['file']}: {ranges(numbers)}")
    if not total.lines:
        sys.exit("Nothing was counted.")

    print("Lines that no test runs:")
    print("\n".join(f"  {entry}" for entry in missed) or "  none")
    print(f"\n{'room':20} {'lines':>25}   {'branches':>25}")
    for room in sorted(rooms):
        print(rooms[room].row(room))
    print(total.row("all"))
    if 100 * total.lines_run < least * total.lines:
        print(f"Fewer than {least:g} % of the lines ran.", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
