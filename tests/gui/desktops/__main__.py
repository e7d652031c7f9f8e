#!/usr/bin/python3
"""Tries the dialogs on many desktops and prints a table: see script/desktops."""

import argparse
import contextlib
import json
import os
import sys
import traceback

sys.path.insert(0, os.path.dirname(os.path.dirname(os.path.abspath(__file__))))

from desktops.places import PLACES  # noqa: E402
from desktops.programs import PEERS, Library, Peer  # noqa: E402
from desktops.scenarios import SCENARIOS, Run  # noqa: E402
from stage import Gone, StageError  # noqa: E402


def run_one(place, subject_name, scenario_name, options):
    """The cell's text."""
    if subject_name in PEERS:
        subject = Peer(place.environment, *PEERS[subject_name])
    else:
        subject = Library(place.environment, options.library)
    run = Run(place, subject, options.dialogs)
    try:
        return SCENARIOS[scenario_name][0](run)
    finally:
        run.close()


def cells(place, options):
    """What is to be tried on a desktop; what ends it comes last."""
    for ends in (False, True):
        for subject in options.subject or ["library", *PEERS]:
            for name, (_, library_only, ends_desktop) in SCENARIOS.items():
                wanted = not options.scenario or name in options.scenario
                fits = ((subject == "library" or not library_only)
                        and ("Wayland" in place or not ends_desktop))
                if wanted and fits and ends_desktop == ends:
                    yield subject, name


class Desktop:
    """The desktop at hand; a new one when it has gone."""

    def __init__(self, name):
        self._name = name
        self._stack = contextlib.ExitStack()
        self._place = None

    def get(self):
        if self._place is None:
            self._place = self._stack.enter_context(PLACES[self._name]())
        return self._place

    def drop(self):
        self._stack.close()
        self._place = None


def try_on(place_name, options):
    desktop = Desktop(place_name)
    for subject, name in cells(place_name, options):
        try:
            text = run_one(desktop.get(), subject, name, options)
            if SCENARIOS[name][2]:
                desktop.drop()
        except (AssertionError, StageError, Gone, OSError, KeyError) as error:
            traceback.print_exc()
            text = f"not tried: {str(error).splitlines()[0][:60]}"
            desktop.drop()
        print(f"{place_name} | {subject} | {name} | {text}", flush=True)
        if options.json:
            with open(options.json, "a") as file:
                file.write(json.dumps([place_name, subject, name, text]) + "\n")
    desktop.drop()


def main():
    parser = argparse.ArgumentParser(prog="script/desktops")
    parser.add_argument("--place", action="append", choices=PLACES)
    parser.add_argument("--subject", action="append", choices=["library", *PEERS])
    parser.add_argument("--scenario", action="append", choices=SCENARIOS)
    parser.add_argument("--library", help="another build of the library")
    parser.add_argument("--dialogs", type=int, default=1, help="how many later dialogs")
    parser.add_argument("--json", help="file that cells are added to")
    options = parser.parse_args()
    for place in options.place or PLACES:
        try_on(place, options)


main()
