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


# Every way to leave a dialog without its OK: does it to a window on a screen.
WAYS_OUT = {
    "Cancel": lambda screen, window: window.find("push button", "Cancel").press(),
    "close box": lambda screen, window: screen.close_window(window),
    "task bar": lambda screen, window: screen.x11.ask_manager_to_close(screen.x11_window(window)),
    "Escape": lambda screen, window: screen.key("Escape"),
    "Alt+F4": lambda screen, window: screen.key("alt+F4"),
}
