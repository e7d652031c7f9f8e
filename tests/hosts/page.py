"""Puts what the last run of the tests saw into docs/hosts.md: see script/hosts."""

import json
import os
import shutil

from evidence import FOLDER
from gallery.__main__ import shrink

DOCS = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "docs")
PAGE = os.path.join(DOCS, "hosts.md")
PICTURES = os.path.join(DOCS, "pictures", "hosts")
MARK = "<!-- made by script/hosts -->\n"
SHOWN = ("gtk3.png", "qt6.png", "firefox.png")
PROCESSES = {"own": "the host", "helper": "`zeldlg-helper`", "nobody": "nobody"}
HEAD = ("| Host | Dialog shown by | Dialog | Keyboard | The host's own window |\n"
        "|---|---|---|---|---|\n")


def own_window(row):
    if row.get("frames"):
        return f"painted {row['frames']:.0f} times a second, {row['before']:.0f} before"
    if "vanished" in row:
        return f"the dialog is gone after {row['vanished'] * 1000:.0f} ms"
    return row.get("own_window", "")


def line(row):
    process = ", then ".join(PROCESSES[each] for each in row["process"].split(", then "))
    return " | ".join(("| " + row["host"], process,
                       row.get("dialog", "PIN typed"), row.get("keyboard", "in the dialog"),
                       own_window(row))) + " |\n"


def main():
    with open(os.path.join(FOLDER, "seen")) as file:
        rows = [json.loads(text) for text in file]
    # Of several like each other, the last.
    table = {(row["host"], row["process"]): row for row in rows}
    with open(PAGE) as file:
        before, _, after = file.read().split(MARK)
    with open(PAGE, "w") as file:
        file.write(before + MARK + HEAD + "".join(map(line, table.values())) + MARK + after)
    os.makedirs(PICTURES, exist_ok=True)
    for name in SHOWN:
        shutil.copyfile(os.path.join(FOLDER, name), os.path.join(PICTURES, name))
        shrink(os.path.join(PICTURES, name))


if __name__ == "__main__":
    main()
