#!/usr/bin/python3
"""Tries the dialogs on many desktops and prints a table: see script/desktops."""

import argparse
import contextlib
import json
import os
import sys
import traceback

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, os.path.dirname(HERE))

from desktops.places import PLACES, UNUSED  # noqa: E402
from desktops.programs import PEERS, Library, Peer  # noqa: E402
from desktops.scenarios import SCENARIOS, Run  # noqa: E402
from stage import Gone, StageError, library_path  # noqa: E402

BEFORE, NOW = "before", "now"
SUBJECTS = [BEFORE, NOW, *PEERS]
DOCUMENT = os.path.join(HERE, *[os.pardir] * 3, "docs", "desktops.md")
MARK = "<!-- made by script/desktops -->\n"


def new_subject(name, environment, options):
    if name in PEERS:
        return Peer(environment, *PEERS[name])
    return Library(environment, options.before if name == BEFORE else library_path())


def cells(place, options):
    """What is to be tried on a desktop, subjects of one kind of it together."""
    for name, scenario in SCENARIOS.items():
        if (name not in (options.scenario or SCENARIOS)
                or (scenario.sees or scenario.scale > 1) and "headless" in place
                or (scenario.ends_it or scenario.monitors > 1) and "ayland" not in place):
            continue
        for subject in options.subject or SUBJECTS:
            if (scenario.library_only and subject in PEERS
                    or subject == BEFORE and not options.before):
                continue
            yield subject, name


class Desktop:
    """The desktop at hand; a new one when it has gone, or another kind is needed."""

    def __init__(self, name):
        self._name = name
        self._stack = contextlib.ExitStack()
        self._kind = None

    def get(self, *kind):
        if self._kind != kind:
            self.close()
            self._place = self._stack.enter_context(PLACES[self._name](*kind))
            self._kind = kind
        return self._place

    def close(self):
        if self._kind is not None and self._place.editor:
            self._place.editor.close()
        self._kind = None
        self._stack.close()


def try_cell(desktop, subject, scenario, options):
    """The cell's text. None when that could not be tried: the desktop is to blame."""
    try:
        place = desktop.get(scenario.scale, scenario.monitors)
        program = new_subject(subject, place.environment, options)
        with contextlib.closing(Run(place, program, options.dialogs)) as run:
            return scenario.play(run)
    except (AssertionError, StageError, Gone, OSError, LookupError):
        traceback.print_exc()
        desktop.close()
        return None
    finally:
        if scenario.ends_it:
            desktop.close()


def try_on(place, options, found):
    with contextlib.closing(Desktop(place)) as desktop:
        for subject, name in cells(place, options):
            if (place, subject, name) in found:
                continue
            text = (try_cell(desktop, subject, SCENARIOS[name], options)
                    or try_cell(desktop, subject, SCENARIOS[name], options) or "**not tried**")
            print(f"{place} | {subject} | {name} | {text}", flush=True)
            if options.json:
                with open(options.json, "a") as file:
                    file.write(json.dumps([place, subject, name, text]) + "\n")


def row(*texts):
    return "| " + " | ".join(texts) + " |\n"


def tables(found):
    """Markdown: a table for each scenario; desktops with the same cells share a row."""
    for name, scenario in SCENARIOS.items():
        subjects = SUBJECTS[:2] if scenario.library_only else SUBJECTS
        rows = {}
        for place in PLACES:
            texts = tuple(found.get((place, subject, name), "") for subject in subjects)
            if any(texts):
                rows.setdefault(texts, []).append(place)
        yield f"\n### {name[0].upper()}{name[1:]}\n\n" + row("Desktop", *subjects)
        yield "|---" * (1 + len(subjects)) + "|\n"
        yield from (row(", ".join(places), *texts) for texts, places in rows.items())
    yield "\n### Where another program is better\n\n" + row("What", "Desktop", "Program", "It", "now")
    yield "|---|---|---|---|---|\n"
    for (place, subject, name), text in found.items():
        for peer in PEERS:
            # Cells that are not as they should be are bold.
            other = found.get((place, peer, name), "**")
            if subject == NOW and "**" in text and "**" not in other:
                yield row(name, place, peer, other, text)


def read_cells(path):
    with contextlib.suppress(FileNotFoundError), open(path) as file:
        return {tuple(cell[:3]): cell[3] for cell in map(json.loads, file)}
    return {}


def write_document(found):
    with open(DOCUMENT) as file:
        head, _, tail = file.read().split(MARK)
    with open(DOCUMENT, "w") as file:
        file.write(MARK.join([head, "".join(tables(found)) + "\n", tail]))


def main():
    parser = argparse.ArgumentParser(prog="script/desktops")
    parser.add_argument("--place", action="append", choices=PLACES)
    parser.add_argument("--subject", action="append", choices=SUBJECTS)
    parser.add_argument("--scenario", action="append", choices=SCENARIOS)
    parser.add_argument("--before", metavar="FILE", help="an older library, to compare with")
    parser.add_argument("--dialogs", type=int, default=1, help="how many later dialogs")
    parser.add_argument("--json", metavar="FILE",
                        help="cells that it has are not tried again, others are added, a line each")
    parser.add_argument("--docs", action="store_true",
                        help="tries nothing: puts what that file has into docs/desktops.md")
    options = parser.parse_args()
    found = read_cells(options.json or "")
    if options.docs:
        write_document(found)
        return
    for place in options.place or [name for name in PLACES if name not in UNUSED]:
        try_on(place, options, found)


main()
