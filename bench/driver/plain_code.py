"""Plain code: typing and the registry."""

import subprocess
import tempfile

from . import programs
from .figures import Figure, ratios

SIZES = (10, 100, 1_000, 10_000, 100_000)
US = 1e3


def measure(repetitions):
    times = programs.plain(repetitions)

    def of(name, size=None, scale=US):
        key = name if size is None else f"{name}/{size}"
        return [time / scale for time in times[key]]
    figures = [
        Figure("revalidation of 64 bytes", of("UpdatePagesUnchanged", 64), "µs", 5),
        Figure("revalidation that changes a page", of("UpdatePagesChanging", 64), "µs"),
        Figure("one setting of 10,000 keys", of("Setting", 10_000), "µs"),
        Figure("GKeyFile, 10,000 keys", of("GLibKeyFile", 10_000), "µs"),
        Figure("read and line pass, 10,000 keys", of("ReadAndFindLines", 10_000), "µs"),
        Figure("GKeyFile beside the store, 10,000 keys",
               ratios(of("GLibKeyFile", 10_000), of("Setting", 10_000)), "", 40, at_least=True),
        Figure("store beside read and line pass, 10,000 keys",
               ratios(of("Setting", 10_000), of("ReadAndFindLines", 10_000)), "", 5),
        Figure("growth from 10,000 to 100,000 keys",
               ratios(of("Setting", 100_000), of("Setting", 10_000))),
        Figure("growth of read and line pass",
               ratios(of("ReadAndFindLines", 100_000), of("ReadAndFindLines", 10_000))),
        Figure("growth beside that of read and line pass",
               ratios(ratios(of("Setting", 100_000), of("Setting", 10_000)),
                      ratios(of("ReadAndFindLines", 100_000), of("ReadAndFindLines", 10_000))),
               "", 1.25),
        Figure("a query among 10 open handles", of("QueryAmongOpenKeys", 10), "µs"),
        Figure("a query among 10,000 open handles", of("QueryAmongOpenKeys", 10_000), "µs"),
        Figure("look-up among a thousand times as many handles",
               ratios(of("QueryAmongOpenKeys", 10_000), of("QueryAmongOpenKeys", 10)), "", 3),
        Figure("opening ten times as many keys of a file ten times as large",
               ratios(of("OpenEveryKey", 10_000), of("OpenEveryKey", 1_000)), "", 30),
        Figure("a look at an event that is not set", of("PollUnsetEvent", scale=1), "ns"),
    ]
    curves = {name: [(size, sorted(of(name, size))[repetitions // 2]) for size in SIZES]
              for name in ("Setting", "GLibKeyFile", "ReadAndFindLines")}
    curves["CheckPolicies"] = [(size, sorted(of("CheckPolicies", size))[repetitions // 2])
                               for size in (8, 16, 32, 64, 128)]
    return figures, curves


def measure_size():
    with tempfile.NamedTemporaryFile() as stripped:
        subprocess.run(["strip", "-o", stripped.name, programs.LIBRARY], check=True)
        return [Figure("stripped library", [len(stripped.read()) / 1024], "KiB", 700)]
