"""The prompts of the desktop that ours is shown beside: how each asks for the same PIN."""

import contextlib
import os
from typing import NamedTuple

from desktops.programs import PROMPTER, PeerQuestion
from stage import wait_until

# A state of the gallery.
OURS = "pin-incorrect"
DESCRIPTION, ERROR, PROMPT = 'To log in to "Identity card"', "PIN incorrect", "Enter PIN:"
TALK = (f"SETTITLE Enter PIN\nSETDESC {DESCRIPTION}\nSETERROR {ERROR}\nSETPROMPT {PROMPT}\n"
        "GETPIN\n")
# A window is painted in pieces, and a caret blinks twice a second.
STILL_SECONDS = 0.3


class Prompt(NamedTuple):
    name: str
    program: str
    command: list
    talk: str
    judgement: str


PROMPTS = [
    Prompt("beside-pinentry-gtk2", "pinentry-gtk-2", ["pinentry-gtk-2"], TALK,
           "better: the button `abc` shows what is typed, and no other program gets a key while it "
           "is open (on X11). Not: the failure is one line among others, and nothing says how long "
           "the PIN has to be."),
    Prompt("beside-pinentry-qt", "pinentry-qt", ["pinentry-qt"], TALK,
           "better: it takes a third of the room, and both buttons have access keys. Not: the "
           "failure stands out by its colour alone, and OK can be pressed with nothing typed."),
    Prompt("beside-pinentry-gnome3", "pinentry-gnome3", ["sh", "-c", PROMPTER], TALK,
           "better: where gnome-shell runs, that shows it over everything else and holds every "
           "other program off; here its kin does, in a window. Its field is higher. Not: the "
           "failure is the least of its texts, and it calls a PIN a password."),
    Prompt("beside-zenity", "zenity --password",
           ["zenity", "--password", "--title", DESCRIPTION], "",
           "better: any script has it with one line, and its field is higher. Not: it has a title "
           "and no text, so it can tell neither a failure nor a rule."),
]


def photograph(screen, prompt, path, margin):
    """Takes a picture of the prompt's window, and ends it."""
    before = {number for number, _, _ in screen.x11.windows()}

    def number():
        return next((number for number, _, _ in screen.x11.windows() if number not in before), None)
    with contextlib.closing(PeerQuestion(dict(os.environ), prompt.command, prompt.talk)):
        window = wait_until(number, 30, f"the window of {prompt.program}", seen=screen.x11.windows)
        screen.photograph_frame(path, window, margin, STILL_SECONDS)
    wait_until(lambda: number() is None, what=f"the end of {prompt.program}",
               seen=screen.x11.windows)

