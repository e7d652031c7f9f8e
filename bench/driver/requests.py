"""Requests without a window, and what the library costs while nothing happens."""

from . import programs
from .figures import Figure

US = 1e3
THREADS = (1, 2, 4, 8)
NOT_LESS = 0.95  # medians of the same thing differ by less


def measure_round_trips(rounds, requests):
    notes = programs.host("roundtrips", rounds, requests)

    def of(what):
        return [value / US for value in notes.all(what)]
    return [
        Figure("round trip, one after the other", of("request"), "µs", 30),
        Figure("round trip, 99th percentile", of("request"), "µs", 200, share=0.99),
        Figure("two threads that wake each other", of("pingpong"), "µs"),
        Figure("round trip after a pause of 25 ms", of("request-spaced"), "µs"),
        Figure("round trip after a pause, 99th percentile", of("request-spaced"), "µs",
               share=0.99),
        Figure("two threads, after a pause", of("pingpong-spaced"), "µs"),
        Figure("memory requests of a round trip", notes.all("allocations"), ""),
    ]


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


def measure_idle(rounds, milliseconds):
    notes = programs.host("idle", rounds, milliseconds)
    polled = programs.bare("poll", rounds, milliseconds)
    asleep = programs.bare("sleep", rounds, milliseconds)
    return [
        Figure("idle: share of a core", [ppm / 1e4 for ppm in notes.all("ppm")], "%", 0.3),
        Figure("idle: a bare program that looks for events every 10 ms",
               [ppm / 1e4 for ppm in polled.all("ppm")], "%"),
        Figure("idle: a program that only sleeps, 10 ms at a time",
               [ppm / 1e4 for ppm in asleep.all("ppm")], "%"),
        Figure("idle: wake-ups a second", notes.all("wakeups"), ""),
        Figure("idle: memory requests in a second",
               [count * 1000 / milliseconds for count in notes.all("allocations")], "", 0),
    ]
