"""What it costs to have the windows in a helper process: beside the host's own, in turns."""

from . import programs
from .dialogs import DIALOGS, Runs
from .figures import Figure, ratios

US = 1e3


def _beyond(ours, others):
    return [mine - other for mine, other in zip(ours, others)]


def measure(rounds, requests, say):
    runs = {"own": Runs(), "helper": Runs()}
    for turn in range(rounds):
        say(f"helper, {turn + 1} of {rounds}")
        for process in (("own", "helper") if turn % 2 else ("helper", "own")):
            runs[process].add(programs.host("dialogs", DIALOGS, probed=True, process=process))
    own, helper = runs["own"], runs["helper"]
    trips = {process: programs.host("roundtrips", 5, requests, process=process)
             for process in ("own", "helper")}

    def of(process, what):
        return [value / US for value in trips[process].all(what)]
    return [
        Figure("cold: program start to focus, in a helper", helper.cold, "ms"),
        Figure("cold: beyond the host's own process", _beyond(helper.cold, own.cold), "ms", 25),
        Figure("warm: call to focus, in a helper", helper.warm, "ms"),
        Figure("warm: beyond the host's own process", _beyond(helper.warm, own.warm), "ms", 2),
        Figure("OK to return, in a helper", helper.closing, "ms"),
        Figure("memory of a host that has a helper", helper.rss, "MiB"),
        Figure("round trip to a helper", of("helper", "request"), "µs", 100),
        Figure("round trip in the host's own process", of("own", "request"), "µs"),
        Figure("two processes that wake each other", of("helper", "echo"), "µs"),
        Figure("round trip beside the host's own process",
               ratios(of("helper", "request"), of("own", "request")), ""),
        Figure("round trip beside two processes",
               ratios(of("helper", "request"), of("helper", "echo")), ""),
    ]
