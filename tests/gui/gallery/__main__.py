"""Takes the pictures on the stage that this process runs on: see script/gallery."""

import argparse
import fnmatch
import gettext
import os
import shutil
import subprocess
import sys
import tempfile
import traceback

from stage import (Gone, Host, Key, Press, Screen, StageError, library_path, make_locales,
                   registry, wait_until)
from stage.dialogs import remove_dialog, show_dialog

from . import beside, page
from .states import SHEETS, STATES, Enabled, Fill, Run

# Languages with their folders of catalogues and their locales.
LANGUAGES = {"de": ("locale", "de_DE"), "he": ("pseudo", "he_IL")}
# The window manager's frame ends some pixels inside of what can be dragged.
MARGIN = -4
BACKGROUND = "#9aa0a6"
SHEET = ["-background", BACKGROUND, "-geometry", "+8+8", "-tile", "3x"]
COLOURS = 128


def parse():
    parser = argparse.ArgumentParser(prog="script/gallery", description="Takes the pictures of "
                                     "docs/gallery.md and writes the page.")
    parser.add_argument("pattern", nargs="?", default="*",
                        help="only pictures whose names match, for example 'pin-*'")
    parser.add_argument("--page", action="store_true", help="write the page only")
    return parser.parse_args()


def catalogues(language):
    return os.path.join(os.path.dirname(library_path()), "po", LANGUAGES[language][0])


def translate(text, language):
    if not language:
        return text
    return gettext.translation("tokenutils", catalogues(language), [language]).gettext(text)


def folder(language):
    """The setting of the folder of catalogues, for another language than English."""
    return [("Locales", "Path", f'"{catalogues(language)}"')] if language else []


def environment(surroundings):
    extra = {"GTK_THEME": surroundings.theme or None,
             "GDK_SCALE": str(surroundings.scale) if surroundings.scale != 1 else None}
    if surroundings.language:
        locale = LANGUAGES[surroundings.language][1]
        extra |= {"LANG": locale + ".UTF-8", "LOCPATH": make_locales(locale)}
    return extra


class Photographer:
    """Brings up one state after another in one host process and takes their pictures."""

    def __init__(self, screen, surroundings):
        self._screen = screen
        self._settings = registry(*surroundings.settings, *folder(surroundings.language))
        self._host = Host(registry=self._settings, environment=environment(surroundings))

    def close(self, failed):
        self._host.close(failed)

    def take(self, state, path):
        title = translate(state.dialog.title, state.surroundings.language)
        call, window = show_dialog(self._screen, self._host, state.dialog, title, self._settings)
        for act in state.acts:
            self._do(act, window)
        self._screen.photograph(path, window, MARGIN)
        remove_dialog(self._screen, self._host, state.dialog, call, window)

    def _do(self, act, window):
        match act:
            case Fill(values):
                self._screen.fill(window, values)
            case Key(name):
                self._screen.key(name)
            case Press(name):
                next(node for node in window.walk() if node.name == name).press()
            case Enabled(name):
                button = window.find(name=name)
                wait_until(lambda: button.enabled, what=f"the button {name!r}", seen=window.dump)
            case Run(export, times):
                for _ in range(times):
                    self._host.run(export)


def shrink(path):
    """Makes the picture a fraction of its size, with few colours."""
    subprocess.run(["pngquant", "--force", "--nofs", "--strip", "--output", path, str(COLOURS),
                    path], check=True)
    subprocess.run(["optipng", "-quiet", "-o2", "-strip", "all", path], check=True)


def grouped(states):
    """The states by their surroundings, so that a process is started for each of these only."""
    groups = {}
    for state in states:
        groups.setdefault(state.surroundings, []).append(state)
    return groups


def take_group(screen, surroundings, states, announce, folder=page.PICTURES):
    """Takes the pictures of one process's states; gives the names of those that failed."""
    failed, photographer = [], None
    for state in states:
        announce(state.name)
        try:
            photographer = photographer or Photographer(screen, surroundings)
            with tempfile.TemporaryDirectory() as directory:
                draft = os.path.join(directory, state.name + ".png")
                photographer.take(state, draft)
                shrink(draft)
                shutil.copyfile(draft, os.path.join(folder, state.name + ".png"))
        except (AssertionError, Gone, StageError, StopIteration, OSError,
                subprocess.CalledProcessError):
            traceback.print_exc()
            failed.append(state.name)
            if photographer:
                photographer.close(failed=True)
            photographer = None
    if photographer:
        photographer.close(failed=False)
    return failed


def take_sheet(screen, name, states):
    """Takes the pictures of a theme and puts them together; gives the names of those that failed."""
    with tempfile.TemporaryDirectory() as directory:
        failed = [each for surroundings, group in grouped(states).items()
                  for each in take_group(screen, surroundings, group, lambda name: None, directory)]
        taken = [os.path.join(directory, state.name + ".png") for state in states
                 if state.name not in failed]
        path = os.path.join(page.PICTURES, name + ".png")
        subprocess.run(["montage", *taken, *SHEET, path], check=True)
        shrink(path)
    return [f"{name}: {each}" for each in failed]


def take_beside(screen, prompt):
    path = os.path.join(page.PICTURES, prompt.name + ".png")
    try:
        beside.photograph(screen, prompt, path, MARGIN)
    except (AssertionError, StageError, OSError):
        traceback.print_exc()
        return [prompt.name]
    shrink(path)
    return []


def main():
    options = parse()
    page.write()
    states = [state for state in STATES if fnmatch.fnmatch(state.name, options.pattern)]
    sheets = fnmatch.filter(SHEETS, options.pattern)
    prompts = [each for each in beside.PROMPTS if fnmatch.fnmatch(each.name, options.pattern)]
    if options.page:
        return 0
    count = len(states) + len(sheets) + len(prompts)
    if not count:
        print(f"no picture matches {options.pattern!r}", file=sys.stderr)
        return 2
    numbers = iter(range(1, count + 1))

    def announce(name):
        print(f"{next(numbers)} of {count}: {name}", flush=True)

    os.makedirs(page.PICTURES, exist_ok=True)
    screen = Screen()
    subprocess.run(["xsetroot", "-solid", BACKGROUND], check=True)
    screen.x11.point(0, 0)  # a pointer over a window would show its tool tips
    failed = [name for surroundings, group in grouped(states).items()
              for name in take_group(screen, surroundings, group, announce)]
    for name in sheets:
        announce(name)
        failed += take_sheet(screen, name, SHEETS[name][1])
    for prompt in prompts:
        announce(prompt.name)
        failed += take_beside(screen, prompt)
    screen.close()
    if failed:
        print(f"not taken: {', '.join(failed)}", file=sys.stderr)
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
