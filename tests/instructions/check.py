#!/usr/bin/python3
"""Fails when plain code takes more instructions than it did: check.py PROGRAM [--update]

The numbers belong to one compiler and C library; --update writes those of this machine.
"""

import json
import pathlib
import re
import subprocess
import sys
import tempfile

EXPECTED = pathlib.Path(__file__).resolve().parent / "expected.json"
TOLERANCE = 0.05


def count(program):
    """Name to instructions, as callgrind counts them."""
    with tempfile.TemporaryDirectory() as directory:
        subprocess.run(
            ["valgrind", "--quiet", "--tool=callgrind", "--collect-atstart=no",
             "--combine-dumps=no", f"--callgrind-out-file={directory}/out", program], check=True)
        counts = {}
        for path in sorted(pathlib.Path(directory).iterdir()):
            text = path.read_text(encoding="utf-8")
            name = re.search(r"^desc: Trigger: Client Request: (.*)$", text, re.MULTILINE)
            if name:
                counts[name[1]] = int(re.search(r"^(?:totals|summary): (\d+)", text,
                                                re.MULTILINE)[1])
        return counts


def main():
    program, *options = sys.argv[1:]
    counts = count(program)
    if options == ["--update"]:
        EXPECTED.write_text(json.dumps(counts, indent=2) + "\n", encoding="utf-8")
        return 0
    expected = json.loads(EXPECTED.read_text(encoding="utf-8"))
    failed = expected.keys() ^ counts.keys()
    for name in failed:
        print(f"{name}: not both expected and counted")
    for name, now in counts.items():
        before = expected.get(name, now)
        growth = now / before - 1
        print(f"{name}: {now} instructions, {growth:+.1%}")
        if growth > TOLERANCE:
            failed.add(name)
        elif growth < -TOLERANCE:
            print(f"  fewer than before: make that the limit with {sys.argv[0]} {program} --update")
    for name in failed:
        print(f"FAILED: {name}")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
