"""The page that shows the pictures: docs/gallery.md."""

import os

from .states import GALLERY

ROOT = os.path.abspath(os.path.join(os.path.dirname(__file__), "..", "..", ".."))
PAGE = os.path.join(ROOT, "docs", "gallery.md")
PICTURES = os.path.join(ROOT, "docs", "pictures", "gallery")
COLUMNS = 2

HEAD = """# Gallery

Every dialog in every state worth showing. Made by `script/gallery` from the table in
`tests/gui/gallery/states.py`: change that, not this page.
"""


def cell(state):
    return f"![{state.caption}](pictures/gallery/{state.name}.png)<br>{state.caption}"


def rows(states):
    """A table without a head that says anything."""
    yield "| " * COLUMNS + "|"
    yield "|---" * COLUMNS + "|"
    for start in range(0, len(states), COLUMNS):
        cells = [cell(state) for state in states[start:start + COLUMNS]]
        yield "| " + " | ".join(cells + [""] * (COLUMNS - len(cells))).rstrip() + " |"


def page():
    """The text of the page."""
    parts = [HEAD]
    for group, states in GALLERY.items():
        parts += [f"\n## {group}\n\n", "\n".join(rows(states)), "\n"]
    return "".join(parts)


def write():
    with open(PAGE, "w", encoding="utf-8") as file:
        file.write(page())
