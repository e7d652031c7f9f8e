#!/usr/bin/python3
"""Shows dialogs of the demo program on a private display: types into them, takes pictures.

Started by script/demo where there is no display to show them on.
"""

import os
import subprocess
import sys

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "tests", "gui"))

from stage import Screen, wait_until  # noqa: E402

# File name, words of the command, title of the window, what is typed, how the dialog is ended.
SCENES = [
    ("pin", ["pin", "--label", "Identity card", "--reveal"], "Enter PIN", "2468", "Return"),
    ("pin-too-long", ["pin", "--label", "Identity card"], "Enter PIN", "123456789", "Escape"),
    ("pin-ex-tries-left", ["pin-ex", "--label", "Company badge", "--tries-left", "2"],
     "Enter PIN", "13579", "Return"),
    ("pin-ex-last-try", ["pin-ex", "--label", "Company badge", "--tries-left", "1",
                         "--failed-earlier"], "Enter PIN", "", "Escape"),
]


def play(screen, program, directory, scene):
    name, words, title, typed, end = scene
    print(f"$ zeldlg-demo {' '.join(words)}", flush=True)
    with subprocess.Popen([program, *words]) as process:
        window = screen.find_window(title, process)
        field = window.find("password text")
        if typed:
            screen.type_text(typed, field)
            wait_until(lambda: field.length == len(typed), what="the typed characters")
            print(f"  (typed {len(typed)} characters)", flush=True)
        path = os.path.join(directory, name + ".png")
        screen.screenshot(path, window)
        print(f"  (picture {os.path.relpath(path)})", flush=True)
        screen.key(end, field)
    return process.returncode


def main():
    program, directory = sys.argv[1:3]
    os.makedirs(directory, exist_ok=True)
    screen = Screen()
    failed = []
    for scene in SCENES:
        expected = 0 if scene[4] == "Return" else 1
        if play(screen, program, directory, scene) != expected:
            failed.append(scene[0])
    screen.close()
    if failed:
        print(f"not as expected: {', '.join(failed)}", file=sys.stderr)
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
