"""How long a clean build and the unit tests take, and where the time goes."""

import collections
import os
import subprocess
import tempfile
import time

from .figures import Figure

MOST = 8


def _timed(command, **options):
    began = time.monotonic()
    subprocess.run(command, check=True, stdout=subprocess.DEVNULL, **options)
    return time.monotonic() - began


def _shares(build):
    """Compiler seconds of each part of the tree, largest first; the rest in one."""
    spent = collections.Counter()
    with open(os.path.join(build, ".ninja_log"), encoding="utf-8") as log:
        for line in list(log)[1:]:
            start, end, _, output, _ = line.rstrip("\n").split("\t")
            parts = output.split("/")
            if "CMakeFiles" in parts:
                place = parts.index("CMakeFiles")
                inside = [part for part in parts[place + 2:-1] if part != ".."]
                name = "/".join([*parts[:place], *inside[:1]])
            else:
                name = "linking and the rest"
            spent[name] += (int(end) - int(start)) / 1000
    most = spent.most_common(MOST)
    return [*most, ("all others", sum(spent.values()) - sum(each for _, each in most))]


def measure(source):
    with tempfile.TemporaryDirectory() as build:
        subprocess.run(["cmake", "-S", source, "-B", build, "-G", "Ninja", "-DCCACHE=OFF",
                        "-DCMAKE_BUILD_TYPE=RelWithDebInfo", "-DCMAKE_INSTALL_PREFIX=/usr"],
                       check=True, stdout=subprocess.DEVNULL)
        built = _timed(["cmake", "--build", build])
        tested = _timed([os.path.join(build, "bin", "zeldlg_unit"), "--gtest_brief=1"])
        return [Figure("clean release build without a cache", [built], "s", 90),
                Figure("unit tests", [tested], "s", 20)], _shares(build)
