"""What the user of the stage's screen does beside Key and Press, and a host beside its calls."""

from dataclasses import dataclass


@dataclass(frozen=True)
class Type:
    """Types characters into what has the keyboard."""
    text: str


@dataclass(frozen=True)
class Click:
    """Presses a button by its name with the mouse."""
    name: str


@dataclass(frozen=True)
class Close:
    """Sends what a window manager sends for its close button."""


@dataclass(frozen=True)
class Read:
    """Reads what the dialog shows: these texts among others, and whether it may be confirmed."""
    texts: tuple
    button: str
    enabled: bool


@dataclass(frozen=True)
class Fork:
    """The host forks; the child calls the library."""


# What happens before a call, with no dialog open.

@dataclass(frozen=True)
class CloseAll:
    """The window manager asks every window of the host to close."""


@dataclass(frozen=True)
class ReadPads:
    """Reads the labels of every PIN pad."""
    labels: tuple


@dataclass(frozen=True)
class PressAbort:
    """Presses Abort on a PIN pad, and waits until the host hears of it."""
    pad: str


@dataclass(frozen=True)
class Configure:
    """The settings file is written anew."""
    ascii_only: bool
    hint: bool
