"""Changes the constants and texts of the library one at a time: see script/mutate."""

import argparse
import os
import queue
import random
import subprocess
import sys
import threading

from mutation.tree import TARGETS, BuildFailed, Tree

PROJECT = os.path.realpath(os.path.join(os.path.dirname(__file__), "..", ".."))
PLACE = os.path.join(PROJECT, "build", "mutate")
SURVIVORS = os.path.join(PLACE, "survivors")


def tell(text):
    print(text, flush=True)


class Worker:
    """A stage with a process on it that runs tests. A stage that dies is set up anew."""

    def __init__(self, tree):
        self._command = [os.path.join(PROJECT, "tests", "gui", "run_on_stage"), "/usr/bin/python3",
                         "-m", "mutation.worker", tree.root, tree.build]
        self._process = None

    def noticed_by(self, number, rings, path):
        """The name of the step that fails; None when none does."""
        if self._process is None:
            environment = {**os.environ, "PYTHONPATH": os.path.join(PROJECT, "tests"),
                           "PYTHONDONTWRITEBYTECODE": "1"}
            self._process = subprocess.Popen(self._command, env=environment, text=True,
                                             stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        self._process.stdin.write(f"{number} {','.join(rings)} {path}\n")
        self._process.stdin.flush()
        answer = self._process.stdout.readline().strip()
        if not answer:
            self.end()
            return "nothing, for the stage died"
        return None if answer == "-" else answer

    def end(self):
        if self._process is not None:
            self._process.stdin.close()
            self._process.wait()
            self._process = None


class Tally:
    def __init__(self, count):
        self._lock = threading.Lock()
        self._count = count
        self._done = 0
        self.survivors = []

    def add(self, mutant, noticed):
        with self._lock:
            self._done += 1
            if noticed is None or noticed.startswith("nothing"):
                self.survivors.append(mutant)
            tell(f"[{self._done}/{self._count}] {noticed or 'SURVIVES'}: {mutant}")


def run_chosen(tree, chosen, tally, jobs):
    """Those that the programs have in them already."""
    waiting = queue.SimpleQueue()
    for item in chosen.items():
        waiting.put(item)

    def work():
        worker = Worker(tree)
        while True:
            try:
                number, mutant = waiting.get_nowait()
            except queue.Empty:
                break
            tally.add(mutant, worker.noticed_by(number, TARGETS, mutant.path))
        worker.end()

    threads = [threading.Thread(target=work) for _ in range(jobs)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()


def run_apart(tree, mutants, tally, jobs):
    """Those that have to be built one at a time."""
    worker = Worker(tree)
    for mutant in mutants:
        before = tree.put_plain(mutant.path, mutant)
        noticed = None
        for ring in TARGETS:
            try:
                tree.make(ring, jobs)
            except BuildFailed:
                noticed = "the compiler"
            noticed = noticed or worker.noticed_by(0, [ring], mutant.path)
            if noticed:
                break
        # Where nothing was built of it, nothing need be built again.
        tree.put_back(mutant.path, before, keep_time=ring == next(iter(TARGETS)))
        tally.add(mutant, noticed)
    worker.end()


def selected(numbered, options):
    """What the options ask for, of {number: mutant}."""
    wanted = [(number, mutant) for number, mutant in numbered.items()
              if mutant.path.startswith(tuple(options.only))]
    if options.again:
        with open(SURVIVORS, encoding="utf-8") as file:
            again = set(file.read().splitlines())
        wanted = [(number, mutant) for number, mutant in wanted if mutant.key in again]
    if options.sample and options.sample < len(wanted):
        wanted = random.Random(options.seed).sample(wanted, options.sample)
    return dict(wanted)


def parse():
    parser = argparse.ArgumentParser(prog="script/mutate", description="Changes the constants and "
                                     "texts of the library one at a time, and prints those changes "
                                     "that no test notices.")
    parser.add_argument("--list", action="store_true", help="only print the changes")
    parser.add_argument("--only", action="append", metavar="FILE",
                        help="changes in this file or folder; can be given again")
    parser.add_argument("--again", action="store_true", help="changes that survived the last run")
    parser.add_argument("--sample", type=int, metavar="N", help="so many of them, at random")
    parser.add_argument("--seed", type=int, default=1, metavar="S", help="what those are drawn from")
    parser.add_argument("--jobs", type=int, default=os.cpu_count(), metavar="N",
                        help="at the same time (default: as many as there are processors)")
    options = parser.parse_args()
    options.only = options.only or [""]
    return options


def main():
    options = parse()
    tree = Tree(PROJECT, PLACE)
    tree.read()
    numbered = tree.numbered()
    wanted = selected(numbered, options)
    if options.list:
        for mutant in wanted.values():
            print(mutant)
        return 0
    tell(f"{len(wanted)} changes; building")
    tree.copy()
    ready = tree.instrument(numbered, options.jobs, tell)
    chosen = {number: mutant for number, mutant in wanted.items() if number in ready}
    apart = [mutant for number, mutant in wanted.items() if number not in ready]
    tell(f"{len(chosen)} chosen at run time, {len(apart)} built one at a time")
    tally = Tally(len(wanted))
    run_chosen(tree, chosen, tally, options.jobs)
    run_apart(tree, apart, tally, options.jobs)
    tell(f"\n{len(tally.survivors)} of {len(wanted)} changes survive:")
    with open(SURVIVORS, "w", encoding="utf-8") as file:
        for mutant in sorted(tally.survivors, key=lambda each: (each.path, each.line)):
            tell(f"  {mutant}")
            print(mutant.key, file=file)
    return 1 if tally.survivors else 0


sys.exit(main())
