#!/usr/bin/python3
"""Shows dialogs of the demo program on a private display: types into them, takes pictures.

Started by script/demo where there is no display to show them on.
"""

import os
import subprocess
import sys

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "tests", "gui"))

from stage import Screen  # noqa: E402
from stage.dialogs import DIALOGS  # noqa: E402

TITLES = {dialog.name: dialog.title for dialog in DIALOGS}
# File name, words of the command, what is typed into each field, the key that ends the dialog (none:
# it ends by itself), the program's exit code.
SCENES = [
    ("pin", ["pin", "--label", "Identity card", "--reveal"], ["2468"], "Return", 0),
    ("pin-too-long", ["pin", "--label", "Identity card"], ["123456789"], "Escape", 1),
    ("pin-ex-tries-left", ["pin-ex", "--label", "Company badge", "--tries-left", "2"], ["13579"],
     "Return", 0),
    ("pin-ex-last-try", ["pin-ex", "--label", "Company badge", "--tries-left", "1",
                         "--failed-earlier"], [], "Escape", 1),
    ("legal-pin", ["legal-pin", "--label", "Identity card"], ["2468"], "Return", 0),
    ("change-pin", ["change-pin", "--label", "Identity card"], ["2468", "13579", "13579"],
     "Return", 0),
    ("change-policed-pin", ["change-policed-pin", "--label", "Company badge", "--enabled", "15",
                            "--p1-threshold", "1", "--p2-min-length", "6", "--p2-class-mask",
                            "31", "--p4-characters", "0"], ["2468", "9800", "9800"], "Escape", 1),
    ("select-token", ["select-token", "--count", "5"], [], "Return", 0),
    ("select-id", ["select-id", "--auto", "--directory", "corp.example"], [], "Return", 0),
    ("unblock-method", ["unblock-method", "--no-puk"], [], "Return", 0),
    ("unblock-cr", ["unblock-cr", "--label", "Identity card", "--new-pin"],
     ["a1b2 c3d4 e5f6 0789", "13579", "13579"], "Return", 0),
    ("confirm-delete", ["confirm-delete"], [], "Escape", 0),
    ("biometric-error", ["biometric-error", "0x63C1"], [], "Escape", 0),
    ("biometric-auth", ["biometric", "auth", "--seconds", "2"], [], None, 0),
    ("enrolment-hint", ["biometric", "enrol", "--scans", "1", "--seconds", "2"], [], "Return", 0),
    ("keygen", ["keygen", "--seconds", "2"], [], None, 0),
]

# Scenes in which another window comes by itself, with its file name.
FOLLOWED = {"enrolment-hint": "biometric-enrol"}


def photograph(screen, window, directory, name):
    path = os.path.join(directory, name + ".png")
    screen.photograph(path, window)
    print(f"  (picture {os.path.relpath(path)})", flush=True)


def show(screen, process, directory, scene):
    name, words, values, end, _ = scene
    window = screen.find_window(TITLES.get(name) or TITLES[words[0]], process)
    if end is not None:
        screen.wait_focused()  # a window that ends by itself has nothing for the keyboard
    screen.fill(window, values)
    for value in values:
        print(f"  (typed {len(value)} characters)", flush=True)
    photograph(screen, window, directory, name)
    if end is not None:
        screen.key(end)
    if name in FOLLOWED:
        following = FOLLOWED[name]
        photograph(screen, screen.find_window(TITLES[following], process), directory, following)


def play(screen, program, directory, scene):
    words = scene[1]
    print(f"$ zeldlg-demo {' '.join(words)}", flush=True)
    with subprocess.Popen([program, *words]) as process:
        try:
            show(screen, process, directory, scene)
        except BaseException:
            process.kill()  # its end is waited for
            raise
    return process.returncode


def main():
    program, directory = sys.argv[1:3]
    os.makedirs(directory, exist_ok=True)
    screen = Screen()
    failed = []
    for scene in SCENES:
        if play(screen, program, directory, scene) != scene[4]:
            failed.append(scene[0])
    screen.close()
    if failed:
        print(f"not as expected: {', '.join(failed)}", file=sys.stderr)
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
