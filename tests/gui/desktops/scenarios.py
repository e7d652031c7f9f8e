"""What a user goes through on a desktop, and where his keys arrive."""

import contextlib
import time

from desktops.other_program import Editor
from desktops.programs import PIN
from stage import scaled, wait_until

STILL_SECONDS = 0.6
ARRIVED, ELSEWHERE, LOST = "dialog", "**other program**", "**nowhere**"


class Run:
    """One desktop with the other program and something that asks for a PIN."""

    def __init__(self, place, subject, dialogs=1):
        self.place, self.subject, self.dialogs = place, subject, dialogs
        self.editor = None

    def open_editor(self, *options):
        self.editor = Editor(self.place.environment, options)
        self.editor.type_into(self.place.type)
        return self.editor

    def pixels(self):
        """Every sixteenth row of the screen."""
        x11 = self.place.x11
        _, _, width, height = x11.geometry(x11.root)
        return [pixel for row in range(0, height, 16) for pixel in x11.pixels((0, row, width, 1))]

    def settle(self, before=None, timeout=20):
        """Waits until the screen differs from `before` and stays the same; whether it differs."""
        deadline = time.monotonic() + scaled(timeout)
        last, since = self.pixels(), time.monotonic()
        while time.monotonic() < deadline:
            time.sleep(0.05)
            now = self.pixels()
            if now != last:
                last, since = now, time.monotonic()
            differs = before is None or different(before, now) > 500
            if differs and time.monotonic() - since > STILL_SECONDS:
                return True
        return False

    def open(self):
        """Has the PIN asked for; gives the question once nothing more changes on the screen."""
        self.settle()
        before = self.pixels()
        question = self.subject.ask()
        self.visible = self.settle(before)
        return question

    def where(self, question):
        """Types the PIN; where it arrives. A dialog that is left open is ended."""
        self.place.type(PIN + "\n")
        with contextlib.suppress(AssertionError):
            wait_until(lambda: question.answer() is not None or self.editor and self.editor.keys,
                       8)
        self.settle()
        answer = question.answer()
        keys = list(self.editor.keys) if self.editor else []
        if answer == PIN and not keys:
            return ARRIVED
        return ELSEWHERE if keys else LOST

    def close(self):
        if self.editor:
            self.editor.close()
        self.subject.close()


def different(one, other):
    """In how many pixels two pictures differ clearly: windows without the keyboard are paler."""
    return sum(a != b and max(abs(x - y) for x, y in zip(a, b)) > 60 for a, b in zip(one, other))


def alone(run):
    return run.where(run.open())


def beside(run):
    """The first dialog beside a program that is being typed into."""
    run.open_editor()
    return run.where(run.open())


def later(run):
    """Later dialogs of the same host, each after typing elsewhere."""
    run.open_editor()
    for number in range(1 + run.dialogs):
        if number:
            run.editor.type_into(run.place.type)
        found = run.where(run.open())
        if found != ARRIVED:
            break
    return found if run.dialogs == 1 else f"{number} of {run.dialogs}, then {found}"


def after_pad(run):
    run.open_editor()
    run.settle()
    before = run.pixels()
    run.subject.show_pad()
    run.settle(before)
    run.subject.hide_pad()
    run.settle()
    with contextlib.suppress(AssertionError):
        run.editor.type_into(run.place.type)
    return run.where(run.open())


def pad_and_space(run):
    """What a space that is being typed does to a pad that opens."""
    run.open_editor()
    run.settle()
    before = run.pixels()
    run.subject.show_pad()
    run.settle(before)
    run.place.type(" ")
    with contextlib.suppress(AssertionError):
        wait_until(lambda: run.editor.keys or run.subject.is_aborted(), 2)
    if run.subject.is_aborted():
        return "**aborts**"
    return "typed" if run.editor.keys else "ignored"


def over_fullscreen(run):
    run.open_editor("--fullscreen")
    found = run.where(run.open())
    if found == ARRIVED and run.visible:  # and once more: a later dialog
        run.editor.type_into(run.place.type)
        found = run.where(run.open())
    return found if run.visible else f"{found}, **not seen**"


def click_elsewhere(run):
    """Whether a dialog is still to be seen after a click on a large window beside it."""
    run.open_editor("--maximized")
    run.settle()
    before = run.pixels()
    run.open()
    shown = run.pixels()
    area = different(before, shown)
    _, _, width, height = run.place.x11.geometry(run.place.x11.root)
    run.place.x11.click(width // 2, height - 120)
    run.settle()
    covered = different(shown, run.pixels())
    return "stays" if covered < area / 2 else "**behind**"


def goes_back(run):
    """Whether the keyboard is back in the other program when a dialog has been answered."""
    run.open_editor()
    run.where(run.open())
    run.editor.keys.clear()
    run.settle()
    run.place.type("cd")
    with contextlib.suppress(AssertionError):
        wait_until(lambda: "".join(run.editor.keys).endswith("cd"), 3)
    return "yes" if "".join(run.editor.keys).endswith("cd") else "**no**"


def compositor_dies(run, with_dialog):
    question = run.open()
    if not with_dialog:
        run.where(question)
    run.place.compositor.kill()
    host = run.subject.host
    deadline = time.monotonic() + scaled(5)
    while host.running and time.monotonic() < deadline:
        time.sleep(0.1)
    return "lives" if host.running else "**ends**"


def two_pads(run):
    """Whether two pads can be told apart."""
    run.settle()
    before = run.pixels()
    run.subject.show_pad("one")
    run.settle(before)
    one = run.pixels()
    run.subject.show_pad("two")
    run.settle(one, 8)
    return "apart" if different(one, run.pixels()) > 250 else "**on each other**"


# Column: (scenario, for the library only, for compositors only).
SCENARIOS = {
    "alone": (alone, False, False),
    "beside a program": (beside, False, False),
    "a later dialog": (later, True, False),
    "after a pad": (after_pad, True, False),
    "space at a pad": (pad_and_space, True, False),
    "two pads": (two_pads, True, False),
    "over fullscreen": (over_fullscreen, False, False),
    "after a click elsewhere": (click_elsewhere, False, False),
    "keyboard goes back": (goes_back, False, False),
    "compositor dies, dialog": (lambda run: compositor_dies(run, True), True, True),
    "compositor dies, idle": (lambda run: compositor_dies(run, False), True, True),
}
