"""What a user goes through on a desktop, and where his keys arrive."""

import collections
import contextlib
import os
import time

from desktops.other_program import Editor
from desktops.programs import PIN
from stage import scaled, wait_until

# What is seen and who has the keyboard is settled when neither has changed for so long.
STILL_SECONDS = 0.1
# A cursor may blink meanwhile.
CURSOR_PIXELS = 20
# Another window is there when so many of the pixels that are looked at have changed.
WINDOW_PIXELS = 500
ARRIVED, ELSEWHERE, LOST = "dialog", "**other program**", "**nowhere**"


class Run:
    """One desktop with the other program and something that asks for a PIN."""

    def __init__(self, place, subject, dialogs):
        self.place, self.subject, self.dialogs = place, subject, dialogs
        self.editor = None
        self.visible = True

    def open_editor(self, *options):
        self.editor = None if options else self.place.editor
        if self.editor is None:
            self.editor = Editor(self.place.environment, options)
        if not options:
            self.place.editor = self.editor
        self.type_elsewhere()

    def type_elsewhere(self):
        self.editor.type_into(self.place.type)

    def picture(self, area=None):
        """Every sixteenth row of the screen or of a part of it; none where nothing can be seen."""
        eyes = self.place.eyes
        if eyes is None:
            return []
        x, y, width, height = area or eyes.geometry(eyes.root)
        return [eyes.bytes((x, row, width, 1)) for row in range(y, y + height, 16)]

    def look(self):
        """What is to be seen, and what the desktop says of windows and the keyboard."""
        x11, editor = self.place.x11, self.editor
        return (self.picture(), x11 and (x11.windows(), x11.focus()), editor and editor.active)

    def settle(self, before=None):
        """Waits until what there is differs from `before` by a window, and changes no more; whether
        it did so.
        """
        deadline = time.monotonic() + scaled(2)
        last, since = self.look(), time.monotonic()
        while time.monotonic() < deadline:
            time.sleep(0.04)
            now = self.look()
            if now != last and (now[1:] != last[1:] or different(now[0], last[0]) > CURSOR_PIXELS):
                last, since = now, time.monotonic()
            elif (time.monotonic() - since > scaled(STILL_SECONDS)
                  and (before is None or appeared(before, now))):
                return True
        return False

    def open(self):
        """Has the PIN asked for; gives the question once the desktop is settled."""
        self.settle()
        before = self.look()
        question = self.subject.ask()
        self.visible = self.settle(before)
        return question

    def show_pad(self, name="pad"):
        self.settle()
        before = self.look()
        self.subject.show_pad(name)
        self.settle(before)

    def where(self, question):
        """Types the PIN; where it arrives."""
        self.place.type(PIN + "\n")

        def keys():
            return list(self.editor.keys) if self.editor else []
        with contextlib.suppress(AssertionError):
            wait_until(lambda: question.answer() == PIN or len(keys()) > len(PIN), 2)
        answer, keys = question.answer(), keys()
        if answer == PIN and not keys:
            found = ARRIVED
        else:
            self.keep_evidence()
            found = ELSEWHERE if keys else LOST
        return found if self.visible or self.place.eyes is None else found + ", **not seen**"

    def keep_evidence(self):
        directory = os.environ.get("ZELDLG_ARTIFACTS")
        if directory and self.place.eyes:
            os.makedirs(directory, exist_ok=True)
            self.place.eyes.screenshot(os.path.join(directory, f"{time.time():.0f}.png"))

    def close(self):
        """An editor that is still good is left to the next run."""
        self.subject.close()
        if self.editor:
            with contextlib.suppress(AssertionError):
                wait_until(lambda: self.editor.active, 0.5)
            if not self.editor.active and self.editor is self.place.editor:
                self.place.editor = None
            if self.editor is not self.place.editor:
                self.editor.close()
            self.editor.keys.clear()


def different(one, other):
    """In how many pixels two pictures differ clearly, in green: windows without the keyboard are
    only paler.
    """
    return sum(abs(x - y) > 60 for a, b in zip(one, other) if a != b
               for x, y in zip(a[1::3], b[1::3]))


def appeared(before, now):
    """Whether a window has: painted, not only mapped, where that can be seen."""
    return different(before[0], now[0]) > WINDOW_PIXELS if now[0] else now != before


def alone(run):
    return run.where(run.open())


def beside(run):
    """The first dialog beside a program that is being typed into."""
    run.open_editor()
    return run.where(run.open())


def later(run):
    """Later dialogs of the same host, each after typing elsewhere."""
    run.open_editor()
    found = run.where(run.open())
    for number in range(run.dialogs):
        if found != ARRIVED:
            return found if run.dialogs == 1 else f"{found} after {number} of {run.dialogs}"
        run.type_elsewhere()
        found = run.where(run.open())
    return found if run.dialogs == 1 else f"{found}, {run.dialogs} of {run.dialogs}"


def after_pad(run):
    run.open_editor()
    run.show_pad()
    run.subject.hide_pad()
    with contextlib.suppress(AssertionError):
        run.type_elsewhere()
    return run.where(run.open())


def pad_and_space(run):
    """What a space that is being typed does to a pad that opens."""
    run.open_editor()
    run.show_pad()
    run.place.type(" ")
    with contextlib.suppress(AssertionError):
        wait_until(lambda: run.editor.keys or run.subject.is_aborted(), 1)
    if run.subject.is_aborted():
        return "**aborts**"
    return "typed" if run.editor.keys else "ignored"


def over_fullscreen(run):
    run.where(run.open())  # what comes next is a later dialog
    run.open_editor("--fullscreen")
    return run.where(run.open())


def click_elsewhere(run):
    """Whether a dialog is still to be seen after a click on a large window beside it."""
    run.open_editor("--maximized")
    run.settle()
    before = run.picture()
    run.open()
    shown = run.picture()
    x, y, width, height = run.place.monitors()[0]
    run.place.eyes.click(x + width // 2, y + height - 60)
    run.settle()
    covered = different(shown, run.picture())
    return "stays" if covered < different(before, shown) / 2 else "**behind**"


def goes_back(run):
    """Whether the keyboard is back in the other program when a dialog has been answered."""
    run.open_editor()
    run.where(run.open())
    run.settle()
    run.editor.keys.clear()
    run.place.type("cd")
    with contextlib.suppress(AssertionError):
        wait_until(lambda: run.editor.keys == ["c", "d"], 2)
    return "yes" if run.editor.keys == ["c", "d"] else "**no**"


def at_pointer(run):
    """Whether a dialog opens on the monitor that the pointer is on, of two."""
    monitors = run.place.monitors()
    x, y, width, height = monitors[1]
    run.place.eyes.point(x + width // 2, y + height - 60)
    run.settle()
    before = [run.picture(monitor) for monitor in monitors]
    run.open()
    there = [different(*pair) for pair in zip(before, map(run.picture, monitors))]
    return "there" if there[1] > there[0] else "**on the other one**"


def two_pads(run):
    """Whether two pads can be told apart."""
    run.show_pad("one")
    one = run.picture()
    run.show_pad("two")
    return "apart" if different(one, run.picture()) > WINDOW_PIXELS else "**on each other**"


def compositor_dies(run, with_dialog):
    question = run.open()
    if not with_dialog:
        run.where(question)
    if run.place.x11:
        run.place.x11.close()  # Xlib ends the process that uses a connection to what is gone
    run.place.compositor.kill()
    with contextlib.suppress(AssertionError):
        wait_until(lambda: not run.subject.host.running, 2)
    return "lives" if run.subject.host.running else "**ends**"


# `library_only`: not for what ends with its dialog. `sees`: not where there is nothing to look at.
# `scale`, `monitors`: of the desktop; `ends_it`: the scenario does, so it has to be a compositor.
Scenario = collections.namedtuple("Scenario", "play library_only sees scale monitors ends_it",
                                  defaults=(False, False, 1, 1, False))
SCENARIOS = {
    "alone": Scenario(alone, sees=True),
    "beside a program that is typed into": Scenario(beside),
    "a later dialog of the host": Scenario(later, library_only=True),
    "after a PIN pad": Scenario(after_pad, library_only=True),
    "over a window that fills the screen": Scenario(over_fullscreen, sees=True),
    "after a click elsewhere": Scenario(click_elsewhere, sees=True),
    "the keyboard goes back": Scenario(goes_back),
    "a space that is typed when a PIN pad opens": Scenario(pad_and_space, library_only=True),
    "two PIN pads": Scenario(two_pads, library_only=True, sees=True),
    "at twice the scale": Scenario(beside, scale=2),
    "on the pointer's monitor": Scenario(at_pointer, sees=True, monitors=2),
    "the compositor dies, a dialog is open": Scenario(
        lambda run: compositor_dies(run, True), library_only=True, ends_it=True),
    "the compositor dies, nothing is open": Scenario(
        lambda run: compositor_dies(run, False), library_only=True, ends_it=True),
}
