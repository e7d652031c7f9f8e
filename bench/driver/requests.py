"""Requests without a window, and what the library costs while nothing happens."""

from stage import Stage

from . import programs
from .figures import Figure, ratios

US = 1e3
MS = 1e6
THREADS = (1, 2, 4, 8)
NOT_LESS = 0.95  # medians of the same thing differ by less


def measure_round_trips(rounds, requests):
    notes = programs.host("roundtrips", rounds, requests)

    def of(what):
        return [value / US for value in notes.all(what)]
    return [
        Figure("round trip, one after the other", of("request"), "µs"),
        Figure("round trip, 99th percentile", of("request"), "µs", share=0.99),
        Figure("two threads that wake each other", of("pingpong"), "µs"),
        Figure("round trip beside two threads", ratios(of("request"), of("pingpong")), "", 1.5),
        Figure("round trip after a pause of 25 ms", of("request-spaced"), "µs"),
        Figure("round trip after a pause, 99th percentile", of("request-spaced"), "µs",
               share=0.99),
        Figure("two threads, after a pause", of("pingpong-spaced"), "µs"),
        Figure("memory requests of a round trip", notes.all("allocations"), ""),
    ]


def measure_loss(rounds):
    """Each on a stage of its own, whose display is killed."""
    times = []
    for _ in range(rounds):
        with Stage(accessibility=False) as stage:
            notes = programs.host("loss", stage.servers["Xvfb"].pid, stage=stage)
            times += [value / MS for value in notes.between("lost-call", "lost-return")]
    return [Figure("a call after the loss of the display, the longest", times, "ms", 1000,
                   share=1)]


def measure_throughput(rounds, milliseconds):
    notes = programs.host("throughput", rounds, milliseconds)
    alone = notes.all("threads1")
    figures = [Figure("requests a second, 1 thread", alone, "")]
    for count in THREADS[1:]:
        together = notes.all(f"threads{count}")
        figures.append(Figure(f"requests a second, {count} threads", together, ""))
        figures.append(Figure(f"throughput of {count} threads beside one",
                              [many / one for many, one in zip(together, alone)], "",
                              NOT_LESS, at_least=True))
    return figures


def measure_idle(rounds, milliseconds, say):
    kinds = {
        "ours": lambda: programs.host("idle", 1, milliseconds),
        "looking": lambda: programs.bare("poll", 1, milliseconds),
        "asleep": lambda: programs.bare("sleep", 1, milliseconds),
    }
    share = {kind: [] for kind in kinds}
    wake_ups, allocations, looks = [], [], []
    for turn in range(rounds):
        say(f"idle, {turn + 1} of {rounds}")
        # Each comes first in turn.
        first = turn % len(kinds)
        for kind in [*kinds][first:] + [*kinds][:first]:
            notes = kinds[kind]()
            share[kind].append(notes.first("ppm") / 1e4)
            if kind == "ours":
                wake_ups.append(notes.first("wakeups"))
                allocations.append(notes.first("allocations") * 1000 / milliseconds)
            elif kind == "looking":
                looks.append(notes.first("at-once") / US * 100 / 1e4)
    return [
        Figure("idle: share of a core", share["ours"], "%"),
        Figure("idle: a bare program that looks for events every 10 ms", share["looking"], "%"),
        Figure("idle: beside that program", ratios(share["ours"], share["looking"]), "", 1.1),
        Figure("idle: a program that only sleeps, 10 ms at a time", share["asleep"], "%"),
        Figure("idle: beyond sleeping",
               [mine - theirs for mine, theirs in zip(share["ours"], share["asleep"])], "%"),
        Figure("idle: a hundred looks for events, one after the other", looks, "%"),
        Figure("idle: wake-ups a second", wake_ups),
        Figure("idle: memory requests in a second", allocations, "", 0),
    ]


def measure_animation(rounds, milliseconds):
    """The three pictures of the key generation, one every 500 ms."""
    notes = programs.host("animation", rounds, milliseconds, probed=True)
    steps, last = [], None
    for what, value in notes:
        if what == "frame":
            if last is not None:
                steps.append((value - last) / MS)
            last = value
        elif what in ("appeared", "enough"):
            last = None
    return [
        Figure("animation: from picture to picture", steps, "ms"),
        Figure("animation: furthest from its 500 ms", [abs(step - 500) for step in steps], "ms",
               25, share=1),
        Figure("animation: share of a core", [ppm / 1e4 for ppm in notes.all("ppm")], "%"),
    ]
