"""What the tests saw of their hosts, for docs/hosts.md: kept in the folder that ZELDLG_HOSTS_SEEN
names, if it does.
"""

import json
import os
import subprocess

from gallery.__main__ import BACKGROUND

FOLDER = os.environ.get("ZELDLG_HOSTS_SEEN")
MARGIN = 12


def process_of(screen, window, host):
    """Where a window is: in the host's process (own), or in the library's helper."""
    return "own" if screen.bus.process_id(window.owner) == host.pid else "helper"


def record(host, process, **seen):
    """Adds a row: the host, who showed the dialog, and what else is told in page.py."""
    if FOLDER:
        with open(os.path.join(FOLDER, "seen"), "a") as file:
            print(json.dumps({"host": host, "process": process, **seen}), file=file)


def photograph(screen, name, *windows):
    """A picture of these windows, by their numbers in X, and of what lies over them."""
    if not FOLDER:
        return
    subprocess.run(["xsetroot", "-solid", BACKGROUND], check=True)
    areas = [screen.x11.geometry(window, frame=True) for window in windows]
    left, top = (min(area[side] for area in areas) - MARGIN for side in (0, 1))
    right, bottom = (max(area[side] + area[side + 2] for area in areas) + MARGIN
                     for side in (0, 1))
    screen.x11.screenshot(os.path.join(FOLDER, name + ".png"),
                          (left, top, right - left, bottom - top))
