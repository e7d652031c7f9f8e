"""The programs that are measured, and what they note while they run."""

import collections
import json
import os
import subprocess
import tempfile
import threading

LIBRARY = os.environ["ZELDLG_LIBRARY"]
BUILD = os.environ["ZELDLG_BENCH_BUILD"]
HOST = os.path.join(BUILD, "bin", "zeldlg_bench_host")
BARE = os.path.join(BUILD, "bin", "zeldlg_bench_bare")
PLAIN = os.path.join(BUILD, "bin", "zeldlg_bench")
INSTRUCTIONS = os.path.join(BUILD, "bin", "zeldlg_instructions")
PROBE = os.path.join(BUILD, "libzeldlg_bench_probe.so")


class MeasureError(Exception):
    """A program failed, or did not note what it should."""


class Notes(list):
    """What a program noted, as (what, value) in the order in which it did."""

    def all(self, what):
        return [value for name, value in self if name == what]

    def first(self, what):
        values = self.all(what)
        if not values:
            raise MeasureError(f"no note {what!r} among {sorted({name for name, _ in self})}")
        return values[0]

    def between(self, begin, end):
        """Each time from a `begin` to the `end` after it, in the unit of the notes."""
        spans, began = [], None
        for name, value in self:
            if name == begin:
                began = value
            elif name == end and began is not None:
                spans.append(value - began)
                began = None
        return spans

    def counts(self, what, begin, end):
        """How many notes `what` stand between each `begin` and the `end` after it."""
        counts, count = [], None
        for name, _ in self:
            if name == begin:
                count = 0
            elif name == end and count is not None:
                counts.append(count)
                count = None
            elif name == what and count is not None:
                count += 1
        return counts


def run(command, probed=False, stage=None, process="own"):
    """Runs a program to its end and gives its notes. `probed`: with the user that types; on
    another stage if one is given; windows in that process (see ZELDLG_PROCESS).
    """
    environment = {**(os.environ if stage is None else stage.environment),
                   "ZELDLG_PROCESS": process}
    if probed:
        environment["GTK_MODULES"] = PROBE
    with tempfile.TemporaryDirectory() as folder:
        pipe = environment["ZELDLG_BENCH_NOTES"] = os.path.join(folder, "notes")
        os.mkfifo(pipe)
        reader = os.open(pipe, os.O_RDONLY | os.O_NONBLOCK)
        writer = os.open(pipe, os.O_WRONLY)  # until the program is there
        os.set_blocking(reader, True)
        process = subprocess.Popen(command, env=environment)
        ended = threading.Thread(target=lambda: (process.wait(), os.close(writer)))
        ended.start()
        with open(reader, encoding="ascii") as lines:
            notes = Notes((name, int(value)) for name, value in map(str.split, lines))
        ended.join()
    if process.wait() != 0:
        raise MeasureError(f"{' '.join(command)} ended with {process.returncode}")
    return notes


def host(*words, **options):
    return run([HOST, LIBRARY, *map(str, words)], **options)


def bare(*words, **options):
    """In the same way as the host: as a process that is started first and then becomes it."""
    return run([HOST, "--run", BARE, *map(str, words)], **options)


def plain(repetitions):
    """Times of the plain code: name to nanoseconds of each repetition, taken in turns."""
    out = subprocess.run(
        [PLAIN, "--benchmark_format=json", f"--benchmark_repetitions={repetitions}",
         "--benchmark_enable_random_interleaving=true", "--benchmark_min_time=0.05"],
        stdout=subprocess.PIPE, check=True).stdout
    times = collections.defaultdict(list)
    for entry in json.loads(out)["benchmarks"]:
        if entry["run_type"] == "iteration":
            scale = {"ns": 1, "us": 1e3, "ms": 1e6}[entry["time_unit"]]
            times[entry["run_name"]].append(entry["cpu_time"] * scale)
    return dict(times)
