"""Plays the soak on the stage that this process runs on: see script/soak."""

import argparse
import os
import sys
import time

from stage import Host, Screen

from .plan import Plan
from .player import Player
from .resources import settled


class Progress:
    """Says now and then how far the soak is."""

    def __init__(self, count):
        self._count = count
        self._began = self._said = time.monotonic()
        self.calls = 0

    def add(self, calls, host):
        self.calls += calls
        if time.monotonic() - self._said > 10:
            self._said = time.monotonic()
            print(f"  {self.calls}/{self._count} calls, {self.rate():.0f} a second, "
                  f"RSS {host.rss() / 1024:.1f} MB", flush=True)

    def rate(self):
        return self.calls / max(time.monotonic() - self._began, 0.001)


def parse():
    parser = argparse.ArgumentParser(prog="script/soak", description="Random calls of a host, "
                                     "random acts of its user, checked against a model.")
    parser.add_argument("--calls", type=int, default=10_000, metavar="N",
                        help="the number of calls (default 10000)")
    parser.add_argument("--seed", type=int, default=1, metavar="S",
                        help="what they are drawn from (default 1)")
    parser.add_argument("--from", type=int, default=1, metavar="K", dest="first",
                        help="go on from call K of the same run")
    parser.add_argument("--show", action="store_true", help="print the calls instead")
    return parser.parse_args()


def play(options, host, screen):
    settings, needed, steps = Plan(options.seed, options.calls).from_call(options.first)
    player = Player(host, screen)
    player.configure(settings)
    if options.first > 1:
        host.run("InitApp")
    for step in needed:
        player.play(step)
    progress = Progress(options.calls - options.first + 1)
    first_look = None
    for step in steps:
        try:
            player.play(step)
        except BaseException:
            explain(options, step)
            raise
        progress.add(len(step.calls), host)
        if step.measure:
            look = settled(host, screen)
            print(f"  after call {step.calls[-1].number}: {look}", flush=True)
            if first_look is None:
                first_look = look
            else:
                look.compare(first_look)
    print(f"{progress.calls} calls, seed {options.seed}, {progress.rate():.1f} a second: "
          "as the model says")


def explain(options, step):
    """How to see it again."""
    print(f"\nseed {options.seed}, call {step.calls[0].number}:", file=sys.stderr)
    for call in step.calls:
        print(f"  {call}", file=sys.stderr)
    print(f"Again from there: script/soak --seed {options.seed} --calls {options.calls} "
          f"--from {step.calls[0].number}\n", file=sys.stderr)


def main():
    options = parse()
    if options.show:
        for step in Plan(options.seed, options.calls).from_call(options.first)[2]:
            for call in step.calls:
                print(call)
        return 0
    screen = Screen()
    with Host() as host:
        try:
            play(options, host, screen)
        except BaseException:
            print(screen.dump(), file=sys.stderr)
            artifacts = os.environ.get("ZELDLG_ARTIFACTS")
            if artifacts:
                os.makedirs(artifacts, exist_ok=True)
                screen.screenshot(os.path.join(artifacts, "soak.png"))
            raise
    return 0


if __name__ == "__main__":
    sys.exit(main())
