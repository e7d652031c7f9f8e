#!/usr/bin/python3
"""Fails where the gallery has fallen behind the library or its own table, where the catalogue of all
dialogs has, and where the tables of titles have that hosts are given. Shows no window.
"""

import os
import re
import sys

import gi

gi.require_version("GdkPixbuf", "2.0")
from gi.repository import GdkPixbuf, GLib  # noqa: E402

GUI = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..")
sys.path.insert(0, GUI)

from gallery.beside import OURS, PROMPTS  # noqa: E402
from gallery.page import PAGES, PICTURES, ROOT  # noqa: E402
from gallery.states import SHEETS, STATES  # noqa: E402
from stage.dialogs import DIALOGS  # noqa: E402

# Exports that bring up a window, by their names.
SHOWING = re.compile(r"\b(DLG_(?:PinPad)?Show\w+|DLG_Ask\w+|DLG_\w+RetryDialog)\(")
CHANGING = r"DLG_Show(Change|UnblockThroughPUK)"
SHOWN_PICTURE = re.compile(r"!\[[^\]]*\]\((?:docs/)?pictures/gallery/(\w[\w-]*)\.png\)")
IN_README = 3
# What stands around a window's content in a picture, in pixels.
EDGE, TITLE_BAR = 10, 40
# A window whose content was not painted yet has one colour, and every content has many.
SMALLEST, FEWEST_COLOURS = 50, 16


def read(path):
    with open(path, encoding="utf-8") as file:
        return file.read()


def repeated(names):
    return sorted({name for name in names if names.count(name) > 1})


def shows_something(path):
    try:
        picture = GdkPixbuf.Pixbuf.new_from_file(path)
    except GLib.Error:
        return False
    width, height = picture.get_width() - 2 * EDGE, picture.get_height() - TITLE_BAR - EDGE
    if min(width, height) < SMALLEST:
        return False
    content = picture.new_subpixbuf(EDGE, TITLE_BAR, width, height)
    pixels, size = content.read_pixel_bytes().get_data(), content.get_n_channels()
    colours = set()
    for start in range(0, height * content.get_rowstride(), content.get_rowstride()):
        row = pixels[start:start + width * size]
        colours |= {row[place:place + size] for place in range(0, len(row), size)}
        if len(colours) >= FEWEST_COLOURS:
            return True
    return False


def picture_problems(names):
    """What the table names, what the tree has and what the page shows are the same."""
    files = {entry.removesuffix(".png") for entry in os.listdir(PICTURES)}
    shown = [name for page in PAGES for name in SHOWN_PICTURE.findall(read(page))]
    for name in repeated(names):
        yield f"two pictures are called {name}"
    for name in repeated(shown):
        if name != OURS:
            yield f"the pages show {name} twice"
    for what, found in (("in docs/pictures/gallery", files), ("on a page", set(shown))):
        for name in sorted(set(names) - found):
            yield f"{name} is not {what}: run script/gallery {name}"
        for name in sorted(found - set(names)):
            yield f"{name} is {what} and not in the table"
    for name in sorted(files & set(names)):
        if not shows_something(os.path.join(PICTURES, name + ".png")):
            yield f"{name}.png is no picture of a window with its content"


def page_problems():
    for path, text in PAGES.items():
        if read(path) != text():
            yield f"{path} is not what the table gives: run script/gallery --page"


def readme_problems(names):
    """The start page has a few pictures of the gallery."""
    shown = SHOWN_PICTURE.findall(read(os.path.join(ROOT, "README.md")))
    if len(set(shown)) != IN_README:
        yield f"README.md shows {shown} instead of {IN_README} pictures of the gallery"
    for name in sorted(set(shown) - set(names)):
        yield f"README.md shows {name}, which is not in the table"


def missing_dialogs():
    """What the library can show and the catalogue does not; what the gallery does not show of it."""
    declared = set(SHOWING.findall(read(os.path.join(ROOT, "include", "zeldlg", "zeldlg.h"))))
    if len(declared) < 25:
        yield f"only {sorted(declared)} were found in the header"
    for export in sorted(declared - {dialog.export for dialog in DIALOGS}):
        yield f"{export} is missing in tests/gui/stage/dialogs.py"
    shown = {(state.dialog.export, state.dialog.title) for state in STATES}
    for export, title in sorted({(each.export, each.title) for each in DIALOGS} - shown):
        yield f"no picture of {export} with the title {title!r}"


def title_problems():
    """The header names the titles of the dialogs that change a value, the host guide all."""
    for page in ("docs/hosting.md", "include/zeldlg/zeldlg.h"):
        rows = re.findall(r"^(?: \*)? ?\| (.*?) +\| (.*)\|$", read(os.path.join(ROOT, page)),
                          re.MULTILINE)
        titles = {}
        for functions, title in rows:
            for function in re.findall(r"(?:::|`)(\w+)", functions):
                titles.setdefault(function, []).append(title)
        for dialog in DIALOGS:
            function = re.sub(r"PinPadShow\w+", "PinPadShowVerificationDialog", dialog.export)
            if "changePuk" in dialog.arguments:
                function = "changePuk"
            elif page.endswith(".h") and not re.match(CHANGING, function):
                continue
            if not any(dialog.title in title for title in titles.get(function, [])):
                yield f"{page}: {function} is not said to show {dialog.title!r}"


def main():
    names = [state.name for state in STATES]
    pictures = [*names, *SHEETS, *(prompt.name for prompt in PROMPTS)]
    problems = [*picture_problems(pictures), *page_problems(), *readme_problems(names),
                *missing_dialogs(), *title_problems()]
    for problem in problems:
        print(problem, file=sys.stderr)
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
