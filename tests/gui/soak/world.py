"""What there is between two calls: windows that stay open, and the settings."""

from dataclasses import dataclass, field

NOTICE = "You are about to create a legally binding digital signature!"
WIDTH = 15
BLANK = "_" * WIDTH


@dataclass
class Settings:
    ascii_only: bool = True  # "LimitPinToAscii"
    hint: bool = True        # "ShowEnrolmentHint"


@dataclass
class Pad:
    """The window beside a reader with keys of its own."""
    verification: bool
    legal: bool
    with_row: bool
    may_abort: bool
    row: str = BLANK
    words: str = ""  # that the row shows instead of digits
    step: int = 0
    abort: bool = False

    def next_pin(self):
        self.step += 1
        self.clear()

    def add(self):
        """The place after the last mask character; the first where there is none."""
        place = self.row.rfind("*") + 1
        if place < WIDTH:
            self.row, self.words = self.row[:place] + "*" + self.row[place + 1:], ""

    def delete(self):
        place = self.row.rfind("*")
        if place >= 0:
            self.row, self.words = self.row[:place] + "_" + self.row[place + 1:], ""

    def clear(self):
        self.row, self.words = BLANK, ""

    def show(self, words):
        """Status words stand in the middle; of two middles, in the left one."""
        left = (WIDTH - len(words)) // 2
        self.row = ("_" * left + words.replace(" ", "_")).ljust(WIDTH, "_")
        self.words = words

    def spoken_row(self):
        """What a reader finds for the row: status words as long as no digit has changed it."""
        return self.words or f"Digits entered: {self.row.count('*')}"

    def labels(self):
        return ([NOTICE] * self.legal + ["Action to perform", "Enter your PIN"]
                + ([] if self.verification else ["Enter the new PIN", "Confirm the new PIN"])
                + [self.spoken_row()] * self.with_row)


@dataclass
class Notification:
    """The window of the fingerprint token, for authentication or enrolment."""
    enrols: bool
    scans: int = 0

    def title(self):
        if self.scans == 0:
            return "Lumora Bio Token"
        return f"Lumora Bio Token - enrolling finger (scan {self.scans})"


@dataclass
class World:
    settings: Settings = field(default_factory=Settings)
    pads: dict = field(default_factory=dict)  # by the names that the host gives them
    notification: Notification | None = None
    progress: bool = False

    def titles(self):
        """The titles of the windows on the screen, sorted."""
        return sorted(["PinPad"] * len(self.pads)
                      + ([self.notification.title()] if self.notification else [])
                      + ["Generating key-pair"] * self.progress)

    def end(self):
        """The user interface ends, and its windows with it. The settings stay."""
        self.pads.clear()
        self.notification, self.progress = None, False
