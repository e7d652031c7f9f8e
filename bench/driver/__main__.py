"""Measures on the stage that this process runs on: see script/bench."""

import argparse
import os
import sys
import time

from . import (building, dialogs, helpers, instructions, lists, plain_code, programs, report,
               requests)

SOURCE = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
DOCUMENT = os.path.join(SOURCE, "docs", "performance.md")
PICTURES = os.path.join(SOURCE, "docs", "pictures", "performance")
GROUPS = ("dialogs", "lists", "requests", "helper", "throughput", "idle", "animation", "loss",
          "plain code", "instructions", "size", "build")


def say(text):
    print(f"{time.strftime('%H:%M:%S')}  {text}", flush=True)


def parse():
    parser = argparse.ArgumentParser(prog="script/bench", description="Measures the library.")
    parser.add_argument("--only", action="append", choices=GROUPS, metavar="GROUP",
                        help="measure this group only; can be repeated: " + ", ".join(GROUPS))
    parser.add_argument("--build", action="store_true",
                        help="with a clean build, which takes minutes")
    parser.add_argument("--quick", action="store_true", help="few repetitions: to try the script")
    parser.add_argument("--update-instructions", action="store_true",
                        help="make the counted instructions the ones that are expected")
    parser.add_argument("--docs", action="store_true",
                        help="put tables and plots into docs/performance.md")
    return parser.parse_args()


def main():
    options = parse()
    wanted = options.only or [group for group in GROUPS if group != "build" or options.build]
    few = options.quick
    groups, shares, curves = {}, [], {}
    measures = {
        "dialogs": lambda: dialogs.measure(3 if few else 25, say),
        "lists": lambda: lists.measure(1 if few else 5, say),
        "requests": lambda: requests.measure_round_trips(1 if few else 5, 1000 if few else 10000),
        "helper": lambda: helpers.measure(3 if few else 15, 1000 if few else 10000, say),
        "throughput": lambda: requests.measure_throughput(2 if few else 15, 200),
        "idle": lambda: requests.measure_idle(2 if few else 15, 1000, say),
        "animation": lambda: requests.measure_animation(1 if few else 5, 4200),
        "loss": lambda: requests.measure_loss(1 if few else 5),
        "instructions": lambda: instructions.measure(options.update_instructions),
        "size": plain_code.measure_size,
    }
    for group in wanted:
        say(group)
        if group == "plain code":
            groups[group], curves = plain_code.measure(3 if few else 15)
        elif group == "build":
            groups[group], shares = building.measure(SOURCE)
        else:
            groups[group] = measures[group]()
        print(report.figures_table(groups[group]), flush=True)
    out = os.path.join(programs.BUILD, "bench")
    report.write(out, groups, shares, curves)
    if options.docs:
        report.put_into(DOCUMENT, groups, shares)
        if curves:
            report.plot(PICTURES, curves)
    missed = [figure.name for figures in groups.values() for figure in figures
              if figure.met is False]
    say(f"report.md, report.json and plots are in {os.path.relpath(out, SOURCE)}")
    say("every target is met" if not missed else "missed: " + "; ".join(missed))
    return 1 if missed else 0


if __name__ == "__main__":
    sys.exit(main())
