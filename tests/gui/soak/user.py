"""A random user of a dialog: draws acts, does them to the model of the dialog, and so goes on until
it is over.
"""

from stage import Key, Press

from . import dialogs
from .acts import Click, Close, Fork, Read, Type

ASCII = "0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ!$%&()+,-./:;<=>?@[]_{}~ "
OTHERS = "\u00e4\u00f6\u00fc\u00e9\u0416\u20ac\u6f22\U0001f511"  # each needs a key of its own
LONGEST = 40  # of what is typed, in bytes


class User:
    def __init__(self, random, dialog):
        self.random, self.dialog = random, dialog
        self.acts = []
        self.typed = False

    def use(self):
        """The acts, from the dialog's appearance to its end."""
        if self.dialog.confirmed is not None:
            return []  # it ends by itself
        if self.random.random() < 0.01:
            self.do(Fork())
        if self.random.random() < 0.65:
            self.work()
        elif self.random.random() < 0.3 and isinstance(self.dialog, dialogs.Entries):
            self.type(self.text(self.random.randrange(6)))
        self.finish()
        return self.acts

    def do(self, act):
        self.dialog.take(act)
        self.acts.append(act)
        self.typed = self.typed or isinstance(act, (Key, Type))

    @property
    def over(self):
        return self.dialog.confirmed is not None

    def finish(self):
        if self.over:
            return
        if self.random.random() < 0.06:
            self.do(Read(tuple(self.dialog.texts), self.dialog.confirm,
                         self.dialog.may_confirm()))
        if self.dialog.may_confirm() and self.random.random() < 0.75:
            self.confirm()
        else:
            self.leave()

    def confirm(self):
        draw = self.random.random()
        if draw < 0.1:
            self.do(Key("Return"))
        elif draw < 0.4 and not self.typed:
            self.do(Press(self.dialog.confirm))  # would overtake what was typed
        else:
            self.do(Click(self.dialog.confirm))

    def leave(self):
        ways = [Key("Escape"), Close()]
        if self.dialog.cancel is not None:
            ways.append(Click(self.dialog.cancel))
        self.do(self.random.choice(ways))

    # ---- typing

    def type(self, text):
        if text:
            self.do(Type(text))

    def text(self, size):
        """A text of so many bytes."""
        text = ""
        while size > 0:
            alphabet = OTHERS if self.random.random() < 0.04 else ASCII
            character = self.random.choice(alphabet)
            if len(character.encode()) <= size:
                text += character
                size -= len(character.encode())
        return text

    def value_within(self, bounds):
        low, high = max(bounds[0], 0), min(bounds[1], LONGEST)
        return self.text(self.random.randint(low, high)) if low <= high else self.text(3)

    def wrong(self, text):
        """Something that is not quite the text."""
        return self.random.choice([text[:-1], text + "x", text * 4 + "12345", "", text.swapcase()])

    def retype(self, text):
        """Replaces what the field at the keyboard holds."""
        while self.dialog.values[self.dialog.place] and not self.over:
            self.do(Key("BackSpace"))
        self.type(text)

    def go_to(self, place):
        while self.dialog.place != place:
            self.do(Key("Tab" if self.dialog.place < place else "shift+Tab"))

    def try_in_vain(self):
        """Return while a rule is not met must do nothing."""
        if not self.dialog.may_confirm() and self.random.random() < 0.5:
            self.do(Key("Return"))

    # ---- what is done in each dialog

    def work(self):
        match self.dialog:
            case dialogs.PinEntry():
                self.enter_pin()
            case dialogs.Entries():
                self.enter_values()
            case dialogs.DigitalIds():
                self.choose_row()
                if self.random.random() < 0.4:
                    self.do(Key("Tab"))
                    self.do(Type(" "))
            case dialogs.Rows():
                self.choose_row()
            case dialogs.EnrolmentHint():
                self.do(Key("Tab"))
                for _ in range(self.random.choice((0, 1, 1, 2))):
                    self.do(Type(" "))
            case dialogs.UnblockMethod():
                self.choose_method()
            case dialogs.Box():
                if self.random.random() < 0.1:
                    self.do(Type(" "))

    def enter_pin(self):
        pin = self.value_within((self.dialog.minimum, self.dialog.maximum))
        if self.random.random() < 0.4:
            self.type(self.wrong(pin))
            self.try_in_vain()
            if not self.over:
                self.retype(pin)
        else:
            self.type(pin)
        if self.dialog.values == [""]:  # nothing was edited yet
            self.do(Type("1"))
            self.do(Key("BackSpace"))

    def enter_values(self):
        """Types right values, some of them wrong at first."""
        values = self.right_values()
        wrong = {place for place in range(len(values)) if self.random.random() < 0.2}
        for place, value in enumerate(values):
            self.go_to(place)
            self.type(self.wrong(value) if place in wrong else value)
        if wrong:
            self.try_in_vain()
        for place in sorted(wrong, reverse=True):
            self.go_to(place)
            self.retype(values[place])

    def right_values(self):
        dialog = self.dialog
        if isinstance(dialog, dialogs.Change):
            new = self.policed_value()
            return [self.value_within(dialog.old_bounds), new, new]
        pin = self.value_within(dialog.pin_bounds) if dialog.pin_bounds else ""
        return [self.response(), pin, pin][:len(dialog.values)]

    def policed_value(self):
        """A value that the policy accepts, if a few attempts find one."""
        policy = self.dialog.policy
        for _ in range(100):
            value = self.value_within(self.dialog.new_bounds)
            if policy is None or policy.accepts(value.encode()):
                break
        return value

    def response(self):
        count = 2 * min(max(self.dialog.response_length, 0), LONGEST)
        digits = [self.random.choice(dialogs.HEX_DIGITS) for _ in range(count)]
        for _ in range(self.random.choice((0, 0, 3))):
            digits.insert(self.random.randint(0, len(digits)), self.random.choice(" g-\u00e9"))
        return "".join(digits)

    def choose_row(self):
        for _ in range(self.random.randrange(4)):
            if self.dialog.count:
                self.do(Key(self.random.choice(("Down", "Down", "Up", "Home", "End"))))

    def choose_method(self):
        dialog = self.dialog
        if len(dialog.methods) == 2:
            for _ in range(self.random.randrange(4)):
                self.do(Key("Down" if dialog.method == dialog.PUK else "Up"))
        if dialog.method == dialog.OFFLINE and self.random.random() < 0.7:
            self.do(Key("Tab"))
            for _ in range(self.random.randrange(3)):
                down = dialog.algorithm + 1 < dialog.algorithm_count
                if down or dialog.algorithm:
                    for key in ("Down", "Down" if down else "Up", "Return"):
                        self.do(Key(key))
