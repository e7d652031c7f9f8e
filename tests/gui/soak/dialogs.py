"""The modal dialogs as their user meets them: what each act does, and when OK may be pressed.

A dialog is open while `confirmed` is None; it ends with True (OK, Yes, Sign) or False.
"""

from stage import Key, Press

from .acts import Click, Close, Fork, Read, Type

ASCII_END = 0x80
HEX_DIGITS = "0123456789abcdefABCDEF"
ELLIPSIS = "\u2026"


class Dialog:
    """What all dialogs have in common."""
    confirm, cancel = "OK", "Cancel"  # the names of the two buttons

    def __init__(self, title, texts=()):
        self.title = title
        self.texts = list(texts)  # what a reader finds in it, among other texts
        self.confirmed = None

    def may_confirm(self):
        return True

    def take(self, act):
        assert self.confirmed is None, f"{act} after the end"
        match act:
            case Close():
                self.confirmed = False
            case Key(name="Escape"):
                self.confirmed = False
            case Key(name="Return"):
                self.on_return()
            case Key(name=name):
                self.on_key(name)
            case Type(text=text):
                for character in text:
                    self.on_character(character)
            case Press(name=name) | Click(name=name):
                self.on_button(name)
            case Read() | Fork():
                pass
            case _:
                raise AssertionError(f"nobody does {act}")

    def on_return(self):
        """The Return key presses the default button, which is OK; disabled, it does nothing."""
        if self.may_confirm():
            self.confirmed = True

    def on_button(self, name):
        if name == self.cancel:
            self.confirmed = False
        elif self.may_confirm():
            assert name == self.confirm, name
            self.confirmed = True

    def on_key(self, name):
        raise AssertionError(f"{name} means nothing in {self.title}")

    def on_character(self, character):
        raise AssertionError(f"nothing is typed in {self.title}")


class Box(Dialog):
    """A message with OK alone, or with Yes and No."""
    cancel = None

    def __init__(self, title, text, question):
        super().__init__(title, [text])
        if question:
            self.confirm, self.cancel = "Yes", "No"

    def on_character(self, character):
        assert character == " "  # on the default button, which has the keyboard
        self.confirmed = True


class Entries(Dialog):
    """A dialog with text fields, which Tab and shift+Tab go along."""

    def __init__(self, title, texts, count):
        super().__init__(title, texts)
        self.values = [""] * count
        self.place = 0
        self.selected = False  # a field that Tab goes to has its text selected

    def takes(self, character):
        return True

    def changed(self):
        pass

    def on_refused(self):
        pass

    def on_character(self, character):
        if not self.takes(character):
            self.on_refused()
            return
        self.values[self.place] = ("" if self.selected else self.values[self.place]) + character
        self.selected = False
        self.changed()

    def on_key(self, name):
        if name in ("Tab", "shift+Tab"):
            self.place += 1 if name == "Tab" else -1
            assert 0 <= self.place < len(self.values), "beyond the fields"
            self.selected = True
        elif name == "BackSpace":
            if self.values[self.place]:
                self.values[self.place] = "" if self.selected else self.values[self.place][:-1]
                self.changed()
            self.selected = False
        else:
            super().on_key(name)


class PinEntry(Entries):
    """OK starts disabled and is looked at again when a rule changes sides: with a minimum of 0 it
    takes a first edit. Lengths are counted in characters.
    """

    def __init__(self, title, texts, minimum, maximum, confirm):
        super().__init__(title, texts, 1)
        self.minimum, self.maximum, self.confirm = minimum, maximum, confirm
        self.rules = (False, True)
        self.enabled = False

    def changed(self):
        length = len(self.values[0])
        rules = (length >= self.minimum, length <= self.maximum)
        if rules != self.rules:
            self.rules = rules
            self.enabled = all(rules)

    def may_confirm(self):
        return self.enabled


class Change(Entries):
    """Old value, new value, confirmation; lengths are counted in bytes."""

    def __init__(self, title, texts, old_bounds, new_bounds, ascii_only, policy):
        super().__init__(title, texts, 3)
        self.old_bounds, self.new_bounds = old_bounds, new_bounds
        self.ascii_only, self.policy = ascii_only, policy

    def takes(self, character):
        return not self.ascii_only or ord(character) < ASCII_END

    def may_confirm(self):
        old, new, confirmation = (value.encode() for value in self.values)
        return (within(old, self.old_bounds) and within(new, self.new_bounds)
                and new == confirmation and (self.policy is None or self.policy.accepts(new)))


class ChallengeResponse(Entries):
    """The help desk's response and, where it is asked for, a new PIN with its confirmation."""

    def __init__(self, texts, response_length, pin_bounds, ascii_only):
        super().__init__("Unlock PIN", texts, 3 if pin_bounds else 1)
        self.response_length, self.pin_bounds = response_length, pin_bounds
        self.ascii_only = ascii_only

    def takes(self, character):
        if self.place == 0:
            return character in HEX_DIGITS + " "
        return not self.ascii_only or ord(character) < ASCII_END

    def on_refused(self):
        """The response is put back as it was, without a selection."""
        if self.place == 0:
            self.selected = False

    def response(self):
        digits = self.values[0].replace(" ", "")
        return bytes.fromhex(digits[:len(digits) // 2 * 2])

    def may_confirm(self):
        if len(self.response()) != self.response_length:
            return False
        if self.pin_bounds is None:
            return True
        pin, confirmation = (value.encode() for value in self.values[1:])
        return within(pin, self.pin_bounds) and pin == confirmation


class Rows(Dialog):
    """A list to choose from; without rows there is nothing to confirm."""

    def __init__(self, title, texts, count, chosen=0):
        super().__init__(title, texts)
        self.count, self.chosen = count, chosen

    def may_confirm(self):
        return self.count > 0

    def on_key(self, name):
        last = self.count - 1
        move = {"Down": min(self.chosen + 1, last), "Up": max(self.chosen - 1, 0),
                "Home": 0, "End": last}
        self.chosen = move[name]


class Tokens(Rows):
    cancel = None

    def __init__(self, count):
        super().__init__("Select a token", ["Please select a token:"], count)


class DigitalIds(Rows):
    """Tab goes from the list to the box, where the space bar is."""

    def __init__(self, texts, count, default, always_use):
        super().__init__("Select Digital ID", texts, count, default if default < count else 0)
        self.always_use = always_use
        self.at_box = False

    def on_key(self, name):
        if name == "Tab":
            self.at_box = True
        else:
            assert not self.at_box
            super().on_key(name)

    def on_character(self, character):
        assert self.at_box and character == " "
        self.always_use = not self.always_use


class EnrolmentHint(Dialog):
    """The state of its box is stored at every change, however the dialog ends."""
    cancel = None

    def __init__(self, settings):
        super().__init__("Fingerprint enrolment information")
        self.settings = settings
        self.at_box = False

    def on_key(self, name):
        assert name == "Tab"
        self.at_box = not self.at_box

    def on_character(self, character):
        assert character == " "
        if self.at_box:
            self.settings.hint = not self.settings.hint
        else:
            self.confirmed = True


class UnblockMethod(Dialog):
    """Two choices, and a list of algorithms that belongs to the second."""
    PUK, OFFLINE = 1, 2

    def __init__(self, puk_offered, algorithm_count):
        super().__init__("Unlock PIN")
        self.methods = [self.PUK] * puk_offered + [self.OFFLINE] * bool(algorithm_count)
        self.method = self.methods[0] if self.methods else None
        self.algorithm_count, self.algorithm = algorithm_count, 0
        self.at_list = False
        self.row = None  # while the list is open

    def may_confirm(self):
        return bool(self.methods)

    def on_return(self):
        """With nothing to choose the keyboard is at Cancel."""
        if self.row is not None:
            self.algorithm, self.row = self.row, None
        else:
            self.confirmed = bool(self.methods)

    def on_key(self, name):
        if name == "Tab":
            assert self.method == self.OFFLINE and not self.at_list
            self.at_list = True
        elif self.at_list and self.row is None:
            assert name == "Down", "it opens the list"
            self.row = self.algorithm
        elif self.at_list:
            self.row += {"Down": 1, "Up": -1}[name]
            assert 0 <= self.row < self.algorithm_count, "beyond the list"
        else:
            assert len(self.methods) == 2
            self.method = {"Down": self.OFFLINE, "Up": self.PUK}[name]


def within(data, bounds):
    minimum, maximum = bounds
    return minimum <= len(data) <= maximum


def is_shown(text, labels):
    """Whether a text is among the labels, which are wrapped, and cut with an ellipsis where they
    are too long.
    """
    wanted = squeezed(text)
    return any(wanted == label or (label.endswith(ELLIPSIS) and wanted.startswith(label[:-1]))
               for label in map(squeezed, labels))


def squeezed(text):
    return "".join(text.split())
