"""The pages that show the pictures: docs/gallery.md and docs/themes.md."""

import os

from .beside import OURS, PROMPTS
from .states import GALLERY, SHEETS

ROOT = os.path.abspath(os.path.join(os.path.dirname(__file__), "..", "..", ".."))
PAGE = os.path.join(ROOT, "docs", "gallery.md")
THEMES_PAGE = os.path.join(ROOT, "docs", "themes.md")
PICTURES = os.path.join(ROOT, "docs", "pictures", "gallery")
COLUMNS = 2

HEAD = """# Gallery

Every dialog in every state worth showing. Made by `script/gallery` from the table in
`tests/gui/gallery/states.py`: change that, not this page. What it looks like in other themes than
Adwaita is in [themes.md](themes.md).
"""

THEMES_HEAD = """# Other themes

The dialogs of [the gallery](gallery.md) that have most to lose, in other themes. Made by
`script/gallery`; `script/themes` measures the contrasts of all dialogs in all of them.
"""

BESIDE_HEAD = """
## Beside other prompts of the desktop

The same prompt, after a wrong PIN, in the programs of Debian 12 that ask for one, each as it comes.
Made by `script/gallery 'beside-*'`.

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


def beside():
    """The section with the other prompts, ours first."""
    yield BESIDE_HEAD
    yield "| Prompt | What it does better, and what it does not |\n|---|---|\n"
    yield (f"| ![This library](pictures/gallery/{OURS}.png) | This library: says what has failed, "
           "what happens next and what the PIN still lacks, on screen and to screen readers; what "
           "is typed cannot be shown, and other programs can still get the keyboard. |\n")
    for prompt in PROMPTS:
        yield (f"| ![{prompt.program}](pictures/gallery/{prompt.name}.png) | `{prompt.program}`: "
               f"{prompt.judgement} |\n")


def page():
    """The text of the gallery."""
    parts = [HEAD]
    for group, states in GALLERY.items():
        parts += [f"\n## {group}\n\n", "\n".join(rows(states)), "\n"]
    return "".join([*parts, *beside()])


def themes_page():
    parts = [THEMES_HEAD]
    for name, (theme, _) in SHEETS.items():
        parts.append(f"\n## {theme}\n\n![{theme}](pictures/gallery/{name}.png)\n")
    return "".join(parts)


PAGES = {PAGE: page, THEMES_PAGE: themes_page}


def write():
    for path, text in PAGES.items():
        with open(path, "w", encoding="utf-8") as file:
            file.write(text())
