"""What the tests saw of their hosts, for docs/hosts.md: see script/hosts --docs."""

import json
import os


def record(host, **seen):
    """Adds a row: the host, and what happened there. Kept where ZELDLG_HOSTS_SEEN says, if so."""
    path = os.environ.get("ZELDLG_HOSTS_SEEN")
    if path:
        with open(path, "a") as file:
            print(json.dumps({"host": host, **seen}), file=file)


def process_of(window, host):
    """Where a window is: in the host's process, or in the library's helper."""
    return "own" if window.process_id == host.pid else "helper"
