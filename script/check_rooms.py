#!/usr/bin/env python3
"""Fails when a file of src/ includes a room that its own room must not know.

Dependencies point one way:
api -> runtime -> dialogs, pin, policy, biometric -> registry, resources -> platform.
"""

import pathlib
import re
import sys

GROUND = {"platform"}
STORES = GROUND | {"registry", "resources"}
ALLOWED = {
    "platform": GROUND,
    "registry": GROUND | {"registry"},
    "resources": GROUND | {"resources"},
    "dialogs": STORES | {"dialogs", "pin"},
    "pin": STORES | {"pin", "dialogs/common"},
    "policy": STORES | {"policy", "pin", "dialogs/common"},
    "biometric": STORES | {"biometric", "dialogs"},
    "runtime": STORES | {"runtime", "dialogs", "pin", "policy", "biometric"},
    "api": STORES | {"api", "runtime", "dialogs"},
}
# What all dialogs share knows none of them.
COMMON = STORES | {"dialogs/common"}
# Dialogs share the parts in dialogs/common and know nothing of hosts: the record types of the
# public header are for the rooms that deal with hosts.
KNOW_HOSTS = {"api", "runtime", "policy"}
NO_TOOLKIT = {"platform", "registry"}

INCLUDE = re.compile(r'^\s*#\s*include\s+([<"])([^>"]+)[>"]', re.MULTILINE)


def is_allowed(folder, allowed):
    return any(folder == each or folder.startswith(each + "/") for each in allowed)


def problems(root):
    rooms = set(ALLOWED)
    for path in sorted(root.rglob("*")):
        if path.suffix not in {".h", ".cpp"} or path.parent == root:
            continue
        room = path.relative_to(root).parts[0]
        if room not in rooms:
            yield f"{path}: unknown room '{room}'"
            continue
        allowed = COMMON if "common" in path.parts else ALLOWED[room]
        for kind, name in INCLUDE.findall(path.read_text(encoding="utf-8")):
            if kind == '"':
                folder = str(pathlib.PurePosixPath(name).parent)
                if not is_allowed(folder, allowed):
                    yield f'{path}: room {room} must not include "{name}"'
            elif name.startswith("zeldlg/") and room not in KNOW_HOSTS:
                yield f"{path}: room {room} must not know the records of hosts"
            elif re.match(r"(wx|gtk|gdk)/", name) and room in NO_TOOLKIT:
                yield f"{path}: room {room} must not use the toolkit"


def main():
    root = pathlib.Path(__file__).resolve().parent.parent / "src"
    found = list(problems(root))
    for each in found:
        print(each, file=sys.stderr)
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
