"""How many instructions plain code takes, against what it took before.

The numbers in expected.json belong to one compiler and C library; --update-instructions writes
those of this machine.
"""

import json
import pathlib
import re
import subprocess
import tempfile

from . import programs
from .figures import Figure

EXPECTED = pathlib.Path(__file__).resolve().parents[1] / "instructions" / "expected.json"
TOLERANCE = 0.05


def count():
    """Name to instructions, as callgrind counts them."""
    with tempfile.TemporaryDirectory() as directory:
        subprocess.run(
            ["valgrind", "--quiet", "--tool=callgrind", "--collect-atstart=no",
             "--combine-dumps=no", f"--callgrind-out-file={directory}/out",
             programs.INSTRUCTIONS], check=True)
        counts = {}
        for path in sorted(pathlib.Path(directory).iterdir()):
            text = path.read_text(encoding="utf-8")
            name = re.search(r"^desc: Trigger: Client Request: (.*)$", text, re.MULTILINE)
            if name:
                counts[name[1]] = int(re.search(r"^(?:totals|summary): (\d+)", text,
                                                re.MULTILINE)[1])
        return counts


def measure(update):
    counts = count()
    if update:
        EXPECTED.write_text(json.dumps(counts, indent=2) + "\n", encoding="utf-8")
    expected = json.loads(EXPECTED.read_text(encoding="utf-8"))
    if expected.keys() != counts.keys():
        raise programs.MeasureError("not both expected and counted: "
                                    + ", ".join(expected.keys() ^ counts.keys()))
    return [Figure(name, [number], "", round(expected[name] * (1 + TOLERANCE)))
            for name, number in counts.items()]
