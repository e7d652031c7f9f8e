"""What the user of a screen does, for tables that say it."""

from dataclasses import dataclass


@dataclass(frozen=True)
class Key:
    """Presses a key that is no character: `Return`, `Tab`, `shift+Tab`, `BackSpace`, `Down` ..."""
    name: str


@dataclass(frozen=True)
class Press:
    """Presses what has that accessible name, as a screen reader does."""
    name: str
