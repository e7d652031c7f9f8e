#!/usr/bin/env python3
"""Fails when a file of src/ includes a room that its own room must not know, or anything before its
own header: that is how each header is compiled by itself once.
"""

import pathlib
import re
import sys

# A room includes itself and rooms behind it in this list, no others.
RANKS = ("helper", "api", "runtime", "biometric", "dialogs", "policy", "pin", "widgets",
         "resources", "registry", "platform")
# Dialogs know nothing of hosts: the record types of the public header are for those who do.
KNOW_HOSTS = {"helper", "api", "runtime"}
NO_TOOLKIT = {"registry", "platform"}

INCLUDE = re.compile(r'^\s*#\s*include\s+([<"])([^>"]+)[>"]', re.MULTILINE)


def problems(root):
    for path in sorted(root.rglob("*")):
        if path.suffix not in {".h", ".cpp"} or path.parent == root:
            continue
        room = path.relative_to(root).parts[0]
        if room not in RANKS:
            yield f"{path}: unknown room '{room}'"
            continue
        allowed = RANKS[RANKS.index(room):]
        includes = INCLUDE.findall(path.read_text(encoding="utf-8"))
        own = str(path.relative_to(root).with_suffix(".h"))
        if path.suffix == ".cpp" and (root / own).exists() and includes[:1] != [('"', own)]:
            yield f'{path}: the first include must be "{own}"'
        for kind, name in includes:
            if kind == '"':
                if pathlib.PurePosixPath(name).parts[0] not in allowed:
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
