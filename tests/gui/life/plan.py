"""The cases, drawn from a seed: the same seed and number give the same case."""

import random
from dataclasses import dataclass

QUICK = ("locale", "translate", "keygen", "pad", "poll", "finger", "wait")
DIALOGS = ("pin", "message", "question")
WINDOWS = DIALOGS + ("pad", "keygen", "finger")
WAYS = ("main", "thread", "caller", "quick", "signal", "signal-call", "signal-finalise")
MOMENTS = ("starting", "up", "showing", "ending", "idle")


def _drawn_from(part, seed, number):
    return random.Random(f"{part}/{seed}/{number}")


@dataclass
class ExitCase:
    number: int
    way: str
    at: int          # microseconds after the first call
    threads: int
    calls: tuple
    status: int
    seed: int
    finalise: str = "no"
    allocate: bool = False
    answered: bool = False   # a user closes the dialogs
    bridge: bool = False     # with the accessibility bridge

    def arguments(self, library):
        return ["exit", library, f"way={self.way}", f"finalise={self.finalise}", f"at={self.at}",
                f"threads={self.threads}", f"calls={','.join(self.calls)}",
                f"allocate={int(self.allocate)}", f"status={self.status}", f"seed={self.seed}"]

    def environment(self):
        return {} if self.bridge else {"NO_AT_BRIDGE": "1"}


def _some(draw, names):
    return tuple(draw.sample(names, draw.randint(1, len(names))))


def exit_case(seed, number):
    """Any exit, at any moment from 0 to 400 ms after the first call."""
    draw = _drawn_from("exit", seed, number)
    way = draw.choice(WAYS)
    calls = _some(draw, QUICK)
    # Only a dialog keeps DLG_Finalize waiting.
    dialogs = _some(draw, DIALOGS) if way == "signal-finalise" or draw.random() < 0.5 else ()
    answered = draw.random() < (0.2 if way == "signal-finalise" else 0.5)
    finalise = "no"
    if way.startswith("signal"):
        finalise = draw.choice(("no", "atexit", "atexit"))
    else:
        # First of all, which waits for a dialog: only where somebody answers.
        ways = ["no", "no"] + ["atexit"] * (way != "quick")
        finalise = draw.choice(ways + ["first"] * ((not dialogs or answered) and way != "caller"))
    calls += dialogs + ("finalise",) * (draw.random() < 0.25)
    return ExitCase(number=number, way=way, finalise=finalise,
                    at=draw.randrange(60_000 if draw.random() < 0.25 else 400_000),
                    threads=draw.randint(1, 8), calls=calls, allocate=draw.random() < 0.5,
                    answered=answered, bridge=draw.random() < 0.5, status=draw.randrange(90),
                    seed=draw.randrange(1 << 16))


def early_case(seed, number):
    """An exit within 60 ms of the first call."""
    draw = _drawn_from("early", seed, number)
    return ExitCase(number=number, way=draw.choice(("main", "thread", "signal")),
                    at=draw.randrange(60_000), threads=draw.randint(1, 3), calls=("locale",),
                    status=draw.randrange(90), seed=number)


def loop_case(seed, number):
    """One thread starts and ends in a loop, another exits."""
    draw = _drawn_from("loop", seed, number)
    return ExitCase(number=number, way=draw.choice(("main", "thread")),
                    at=draw.randrange(50_000, 800_000), threads=1, calls=("locale", "finalise"),
                    status=draw.randrange(90), seed=number)


def poll_case(seed, number):
    """One thread that only polls, another exits."""
    draw = _drawn_from("poll", seed, number)
    return ExitCase(number=number, way="main", at=draw.randrange(100_000, 600_000), threads=1,
                    calls=("poll",), status=draw.randrange(90), seed=number)


@dataclass
class DeathCase:
    number: int
    moment: str
    kill: float      # seconds after the host has come to that moment
    stop: float      # seconds from then until no more calls are begun
    threads: int
    calls: tuple
    status: int
    seed: int

    def arguments(self, library):
        return ["death", library, f"first={int(self.moment != 'starting')}",
                f"rest={int(self.moment == 'idle')}", f"threads={self.threads}",
                f"calls={','.join(self.calls)}", f"status={self.status}", f"seed={self.seed}"]


def death_case(seed, number):
    draw = _drawn_from("death", seed, number)
    moment = draw.choice(MOMENTS)
    calls = _some(draw, WINDOWS if moment == "showing" else QUICK)
    if moment == "starting" or (moment in ("ending", "idle") and draw.random() < 0.3):
        calls += _some(draw, DIALOGS)
    if moment in ("starting", "up") and draw.random() < 0.3:
        calls += ("finalise",)
    most = {"ending": 0.04, "idle": 0.02}.get(moment, 0.2)
    return DeathCase(number=number, moment=moment, kill=draw.random() * most,
                     stop=draw.random() * 0.05, threads=draw.randint(1, 4), calls=calls,
                     status=draw.randrange(90), seed=draw.randrange(1 << 16))
