"""The plan: which calls a host makes, drawn from a seed, with what must come of each.

Every step is drawn from a generator of its own, seeded with the seed and the number of the step's
first call. Whatever was drawn before a step reaches it only through the model's world.
"""

import copy
import random
from dataclasses import dataclass, field

from .acts import CloseAll, Configure, PressAbort, ReadPads
from .arguments import arguments_for
from .model import (CHOICES, ENTRIES, EXPORTS, NOTIFICATIONS, PAD_ORDERS, PAD_SHOWS, PROMPTS,
                    TEXTS)
from .rules import FAILED, Answer
from .user import User
from .world import World

THREADS = tuple(f"host{number}" for number in range(5))
MOST_PADS = 4
FIRST_MEASURE = 200

FAMILIES = ((PROMPTS, 14), (ENTRIES, 24), (CHOICES, 10), (NOTIFICATIONS, 10), (PAD_SHOWS, 5),
            (PAD_ORDERS, 22), (TEXTS, 12))
EVERY_KIND = (PROMPTS, ENTRIES, CHOICES, TEXTS)
NOT_IN_TABLE = ("InitApp", "QuitApp")


@dataclass
class Call:
    """A call, what its user does, and what must come of both."""
    number: int
    export: str
    arguments: dict
    thread: str
    before: list = field(default_factory=list)  # acts with no dialog open
    title: str | None = None                    # of the dialog that comes up
    acts: list = field(default_factory=list)
    answer: Answer | None = None
    titles: list = field(default_factory=list)  # of the windows that are there afterwards
    stays: bool = False                         # whether what was done outlives the call

    @property
    def rule(self):
        return EXPORTS[self.export]


@dataclass
class Step:
    """Calls that are under way together: one as a rule."""
    calls: list
    measure: bool = False


class Plan:
    def __init__(self, seed, count):
        self.seed, self.count = seed, count
        self.world = World()
        self.pads_shown = 0
        self.forgotten = []  # names of pads that are no more

    def steps(self):
        """All steps, to the first one that reaches the count of calls."""
        number = 1
        measured = False
        while number <= self.count:
            last = number + 1 >= self.count
            measure = last or (number >= FIRST_MEASURE and not measured)
            measured = measured or measure
            step = self.step(number, measure)
            yield step
            number += len(step.calls)

    def step(self, number, measure):
        self.random = random.Random(f"{self.seed}/{number}")
        if number == 1:
            return Step([self.call(number, "InitApp")])
        if measure:
            # Without windows, and with a user interface that has just been started.
            return Step([self.call(number, "DLG_Finalize"), self.call(number + 1, "InitApp")], True)
        draw = self.random.random()
        if draw < 0.02 and number + len(THREADS) < self.count:
            return Step(self.crowd(number))
        if draw < 0.03:
            return Step([self.library_call(number)])
        return Step([self.call(number, self.export(), before=self.before())])

    # ---- one call

    def export(self):
        families, weights = zip(*FAMILIES)
        family = self.random.choices(families, weights)[0]
        if family is PAD_SHOWS and len(self.world.pads) >= MOST_PADS:
            return "DLG_PinPadHideDialog"
        return self.random.choice(list(family))

    def library_call(self, number):
        return self.call(number, self.random.choice(
            ("DLG_GetFunctionList", "DLG_SetParameter", "DLG_GetParameter", "InitApp",
             "DLG_Finalize", "QuitApp")))

    def call(self, number, export, thread=None, before=()):
        rule = EXPORTS[export]
        arguments = arguments_for(self.random, export, self.pad_name)
        if export not in NOT_IN_TABLE and self.random.random() < 0.2:
            arguments["via"] = "table"
        call = Call(number, export, arguments, thread or self.thread(), list(before))
        dialog = rule.dialog(self.world, arguments)
        if dialog is not None:
            call.acts = User(self.random, dialog).use()
            call.title = dialog.title if call.acts else None
        living = set(self.world.pads)
        call.answer = rule.answer(self.world, arguments, dialog)
        self.forgotten += sorted(living - set(self.world.pads))
        call.titles = self.world.titles()
        call.stays = rule.stays or bool(before)
        return call

    def thread(self):
        return THREADS[0] if self.random.random() < 0.7 else self.random.choice(THREADS)

    def pad_name(self, new):
        """A name for a new pad, or that of one to give an order to; now and then of a dead one."""
        if new:
            self.pads_shown += 1
            return f"pad{self.pads_shown}"
        if self.world.pads and self.random.random() < 0.9:
            return self.random.choice(list(self.world.pads))
        return self.random.choice(self.forgotten[-10:] or ["never"])

    # ---- what happens beside the calls

    def before(self):
        acts = []
        draw = self.random.random()
        pads = self.world.pads
        may_abort = [name for name, pad in pads.items() if pad.may_abort and not pad.abort]
        if draw < 0.01 and self.world.titles():
            acts.append(CloseAll())
        elif draw < 0.03 and pads:
            acts.append(ReadPads(tuple(sorted(tuple(pad.labels()) for pad in pads.values()))))
        elif draw < 0.05 and may_abort:
            name = self.random.choice(may_abort)
            pads[name].abort = True
            acts.append(PressAbort(name))
        elif draw < 0.06:
            settings = self.world.settings
            settings.ascii_only = self.random.random() < 0.5
            settings.hint = self.random.random() < 0.5
            acts.append(Configure(settings.ascii_only, settings.hint))
        return acts

    # ---- several threads at once

    def crowd(self, number):
        """A dialog, and calls of other threads that have to wait for it; sometimes the end of the
        user interface is among them.
        """
        threads = list(THREADS)
        self.random.shuffle(threads)
        calls = [self.waiting_call(number, (PROMPTS,), threads.pop())]
        for _ in range(self.random.randint(1, 3)):
            calls.append(self.waiting_call(number + len(calls), EVERY_KIND, threads.pop()))
        if self.random.random() < 0.25:
            self.refuse(calls[1:])
            calls.append(self.call(number + len(calls), "DLG_Finalize", threads.pop()))
            if threads:
                # Waits for the end, then starts anew. Of several, any could be the first.
                calls.append(self.waiting_call(number + len(calls), EVERY_KIND, threads.pop()))
        return calls

    def waiting_call(self, number, families, thread):
        """A call that takes its turn: one that fails may be answered before. Its dialog does not
        end by itself.
        """
        while True:
            family = self.random.choice(families)
            call = self.call(number, self.random.choice(list(family)), thread)
            if call.answer.result != FAILED and (call.title or call.export in TEXTS):
                return call

    @staticmethod
    def refuse(calls):
        """What still waits for its turn when the end is asked for is not carried out."""
        for call in calls:
            call.title, call.acts = None, []
            call.answer = call.rule.refusal(call.arguments)

    # ---- going on in the middle

    def from_call(self, first):
        """Two lists: the steps without which the world would not be what it is at that call, and
        those from there on; with the settings that the former start from.
        """
        needed, rest = [], []
        settings = copy.copy(self.world.settings)
        for step in self.steps():
            if step.calls[-1].number >= first:
                rest.append(step)
                continue
            if any(call.export in ("DLG_Finalize", "QuitApp") for call in step.calls):
                needed, settings = [], copy.copy(self.world.settings)
            elif any(call.stays for call in step.calls):
                needed.append(step)
        return settings, needed, rest
