"""Plays the parts that are asked for on the stage that this process runs on: see script/life."""

import argparse
import contextlib
import os
import queue
import sys
import threading
import time
import traceback

from stage import StageError, scaled

from . import allocations, deaths, exits, fairness, plan
from .process import Fault, Process
from .report import Report, percentile

INSTRUMENTED = os.environ.get("ZELDLG_INSTRUMENTED", "")
# A thread that is parked, or left in a toolkit without a display, holds what it holds.
LEAVES = {"ASAN_OPTIONS": os.environ.get("ASAN_OPTIONS", "") + ":detect_leaks=0"}
QUIET_LOAD = 0.7  # of a processor: above that, times of a quiet machine are not judged
QUIET_SECONDS = 0.1

# How many cases a part has: in a long run, and in a short one.
PARTS = {
    "exits": (2000, 60), "early": (700, 30), "loop": (200, 10), "poll": (20, 5),
    "deaths": (500, 20), "restarts": (200, 20), "cancel": (1000, 100), "constructor": (5, 1),
    "fairness": (200, 10), "allocations": (None, 25),
}
EXIT_PARTS = {"exits": plan.exit_case, "early": plan.early_case, "loop": plan.loop_case,
              "poll": plan.poll_case}


def parse():
    parser = argparse.ArgumentParser(prog="script/life", description="Hosts that leave, and "
                                     "displays that leave them, at random moments.")
    parser.add_argument("parts", nargs="*", metavar="PART", help=f"of {', '.join(PARTS)}")
    parser.add_argument("--seed", type=int, default=1, metavar="S",
                        help="what the cases are drawn from (default 1)")
    parser.add_argument("--cases", type=int, metavar="N", help="how many cases of each part")
    parser.add_argument("--from", type=int, default=1, metavar="K", dest="first",
                        help="the number of the first case")
    parser.add_argument("--times", type=int, default=1, metavar="T",
                        help="play each case so many times")
    parser.add_argument("--short", action="store_true", help="few cases of each: a minute")
    parser.add_argument("--jobs", type=int, default=2, metavar="J",
                        help="hosts at a time (default 2)")
    options = parser.parse_args()
    unknown = set(options.parts) - set(PARTS)
    if unknown:
        parser.error(f"no such part: {', '.join(unknown)}")
    return options


class Run:
    def __init__(self, options):
        self.options = options
        self.library = os.environ["ZELDLG_LIBRARY"]
        self.good = True

    def cases(self, part):
        most = PARTS[part][1 if self.options.short else 0]
        return most if self.options.cases is None else self.options.cases

    def numbers(self, part):
        first = self.options.first
        return [number for number in range(first, first + self.cases(part))
                for _ in range(self.options.times)]

    def again(self, part, number):
        return (f"script/life {part} --seed {self.options.seed} --from {number} --cases 1 "
                "--times 20")

    def play_all(self, report, numbers, play, describe):
        """Plays each number, some at a time. `play` gives how long it took; `describe` the kind
        of its case, and what to print about it.
        """
        left = queue.Queue()
        for number in numbers:
            left.put(number)
        said = time.monotonic()

        def play_one(number):
            kind, text = describe(number)
            try:
                report.passed(kind, play(number))
            except Fault as fault:
                report.failed(fault, kind, [self.again(report.part, number), text])
            except Exception:  # or the thread would end, and the others play what is left
                report.failed(Fault("harness", traceback.format_exc()), kind, [text])

        def work():
            nonlocal said
            with contextlib.suppress(queue.Empty):
                while True:
                    play_one(left.get_nowait())
                    if time.monotonic() - said > 15:
                        said = time.monotonic()
                        print(f"  {report.part}: {report.cases}/{len(numbers)}, "
                              f"{sum(report.faults.values())} wrong", flush=True)

        workers = [threading.Thread(target=work) for _ in range(self.options.jobs)]
        for worker in workers:
            worker.start()
        for worker in workers:
            worker.join()

    def finish(self, report):
        self.good &= report.print()

    # ---- parts

    def exits(self, part):
        def case(number):
            return EXIT_PARTS[part](self.options.seed, number)

        def describe(number):
            words = " ".join(case(number).arguments("LIBRARY"))
            return case(number).way, f"zeldlg_life_host {words}"

        report = Report(part, self.options.seed)
        with exits.User(os.environ["DISPLAY"]) as user:
            self.play_all(report, self.numbers(part),
                          lambda number: exits.play(case(number), self.library, user, LEAVES),
                          describe)
        self.judge_exits(report)
        self.finish(report)

    def judge_exits(self, report):
        """Half of them are quick: only a quiet machine can tell."""
        times = [value for values in report.times.values() for value in values]
        if not times:
            return
        load = os.getloadavg()[0]
        judged = load < self.options.jobs + QUIET_LOAD and not INSTRUMENTED
        report.note(f"load {load:.1f}" + ("" if judged else ": the median is not judged"))
        if judged and percentile(times, 0.5) > QUIET_SECONDS:
            report.failed(Fault("slow", "half of the exits take more than 100 ms"), "median", [])

    def deaths(self, part):
        def case(number):
            return plan.death_case(self.options.seed, number)

        report = Report(part, self.options.seed)
        with deaths.Displays() as displays:
            self.play_all(report, self.numbers(part),
                          lambda number: deaths.play(case(number), self.library, displays, LEAVES,
                                                     report),
                          lambda number: (case(number).moment, str(case(number))))
        self.finish(report)

    def single(self, part, kind, mode, arguments, environment=None):
        """One host that does all its rounds itself."""
        report = Report(part, self.options.seed)
        began = time.monotonic()
        try:
            with Process([mode, self.library, *arguments, "status=7"], environment) as host:
                host.next("exit", 20 + self.cases(part))
                host.end(7)
            report.passed(kind, time.monotonic() - began)
        except Fault as fault:
            report.failed(fault, kind, [f"script/life {part} --seed {self.options.seed}"])
        return report

    def restarts(self, part):
        for threads, calls in ((1, "locale"), (3, ",".join(plan.QUICK)), (4, "poll,pad,keygen")):
            report = self.single(part, f"{threads} calling", "restarts",
                                 [f"rounds={self.cases(part)}", f"threads={threads}",
                                  f"calls={calls}", f"seed={self.options.seed}"])
            report.note(f"{self.cases(part)} rounds beside {threads} threads that call {calls}")
            self.finish(report)

    def cancel(self, part):
        if INSTRUMENTED == "thread":
            print(f"\n{part}: left out, the sanitizer stands no cancellation inside its functions")
            return

        report = self.single(part, "threads cancelled", "cancel",
                             [f"rounds={self.cases(part)}", f"seed={self.options.seed}"])
        report.note(f"{self.cases(part)} rounds")
        self.finish(report)

    def constructor(self, part):
        report = Report(part, self.options.seed)
        for _ in range(self.cases(part)):
            try:
                with Process(["constructor", self.library, "status=7",
                              "constructor=" + os.environ["ZELDLG_LIFE_CONSTRUCTOR"]]) as host:
                    began = host.next("calling")
                    took = host.next("returned", 5) - began
                    host.next("exit")
                    host.end(7)
                    if took > scaled(1):
                        raise Fault("slow", f"loading took {took:.1f} s")
                    report.passed("loading", took)
            except Fault as fault:
                report.failed(fault, "loading", ["script/life constructor"])
        self.finish(report)

    def fairness(self, part):
        report = Report(part, self.options.seed)
        frame_seconds = 4 if self.options.short else 20
        fairness.run(report, self.library, self.cases(part), frame_seconds, {})
        self.finish(report)

    def allocations(self, part):
        report = Report(part, self.options.seed)
        if INSTRUMENTED:
            print(f"\n{part}: left out, a sanitizer has its own malloc")
            return

        with exits.User(os.environ["DISPLAY"]) as user:
            places = allocations.play(0, self.library, user, {}, report)
            numbers = allocations.ours(self.library, places)
            if len(numbers) < 100:
                raise StageError(f"{len(numbers)} allocations: they are not seen")
            chosen = (self.numbers(part) if self.options.first > 1 else
                      allocations.choose(places, numbers, self.options.seed, self.cases(part)))

            def play(number):
                allocations.play(number, self.library, user, {}, report)

            self.play_all(report, chosen, play, lambda number: ("allocation", f"the {number}th"))
        others = len(places) - len(numbers)
        report.note(f"{len(numbers)} allocations; {others} more are the toolkit's")
        self.finish(report)


def main():
    options = parse()
    run = Run(options)
    sys.setswitchinterval(0.001)
    for part in options.parts or PARTS:
        getattr(run, "exits" if part in EXIT_PARTS else part)(part)
    print("\nall is well" if run.good else "\nsomething is wrong", flush=True)
    return 0 if run.good else 1


if __name__ == "__main__":
    sys.exit(main())
