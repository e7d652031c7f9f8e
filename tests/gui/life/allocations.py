"""Each allocation of the library's failing once, from the first call to the end of a dialog."""

import collections
import os
import random
import subprocess

from .process import UNANSWERED, Fault, Process

TOOLKITS = "times it was one of the toolkit's that failed"

# Of a place that allocates more often, so many fail.
MOST_OF_A_PLACE = 24


def play(failing, library, user, environment, report):
    """Where in the library's file allocations failed, or where all of them are if none did: each
    with where the library was entered.
    """
    with Process([library, failing, 5], environment, os.environ["ZELDLG_ALLOCATION_HOST"]) as host:
        user.serve(host.pid)
        try:
            host.end(5)
        except Fault as fault:
            failed = list(zip(host.numbers("at"), host.numbers("from")))
            if failed and not ours(library, failed):
                report.count(TOOLKITS)  # they are not made in the same order each time
                return []
            names = [place for place, _ in _names(library, [at for at, _ in failed])]
            raise Fault(fault.kind, f"allocation in {', '.join(names)}: {fault.text}") from None
        finally:
            user.leave(host.pid)
        if host.heard("unanswered"):
            report.count(UNANSWERED)
        return list(zip(host.numbers("at"), host.numbers("from")))


def _names(library, addresses):
    """For each address of the library's file: the line of ours, and the file of the function."""
    text = subprocess.run(["addr2line", "-e", library, "-a", "-i"],
                          input="\n".join(hex(address - 1) for address in addresses),
                          capture_output=True, text=True, check=True).stdout
    found = []
    for part in text.split("0x")[1:]:
        address, *lines = part.splitlines()
        ours = [line.split("/src/")[1] for line in lines if "/src/" in line]
        found.append((ours[0] if ours else "0x" + address, lines[-1]))
    return found


def ours(library, places):
    """The numbers of those that our code makes. What the toolkit's headers define is compiled into
    the library too, and called by the toolkit: that is the toolkit's.
    """
    entries = sorted({entry for _, entry in places})
    of_toolkit = {entry for entry, (_, file) in zip(entries, _names(library, entries))
                  if "/include/wx" in file}
    return [number for number, (_, entry) in enumerate(places, 1) if entry not in of_toolkit]


def choose(places, numbers, seed, cases):
    """Which of the numbers fail: the first of each place, some of the others, and no more than
    `cases`.
    """
    draw = random.Random(f"allocations/{seed}")
    of_place = collections.defaultdict(list)
    for number in numbers:
        of_place[places[number - 1][0]].append(number)
    chosen = []
    for first, *others in of_place.values():
        chosen += [first] + draw.sample(others, min(MOST_OF_A_PLACE - 1, len(others)))
    if cases is not None and cases < len(chosen):
        chosen = draw.sample(chosen, cases)
    return sorted(chosen)
