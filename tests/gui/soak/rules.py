"""What the library owes its host, one rule for each kind of call.

A rule is asked twice. `dialog` says which dialog a call brings up: None when it answers without
one. `answer` says, once the dialog is over, what the host finds in its result and its outputs,
and does to the world what the call does to it. An output that an answer does not name must not
have been touched.
"""

import struct
from dataclasses import dataclass, field

from . import dialogs
from .policy import RESTRICTION, Policy
from .texts import (biometric_error, certificate_text, filled, is_utf8, shown_number, shown_text)
from .world import Notification, Pad

OK = 0
FAILED = 0x80003000
CANCELLED = 0x80003001
BUFFER_TOO_SMALL = 0x80003002

ANY = object()  # a value that is not zero and not known before


@dataclass
class Answer:
    result: object
    outputs: dict = field(default_factory=dict)  # bytes of buffers and of slots
    size: int | None = None                      # of texts only


class Rule:
    failure = FAILED   # the result of a call that cannot be carried out
    buffers = ()       # names of its outputs: those with a length beside them,
    slots = ()         # and those of a known size
    stays = False      # whether what it does outlives the call, in windows or settings

    def dialog(self, world, a):
        return None

    def answer(self, world, a, dialog):
        raise NotImplementedError

    def refusal(self, a):
        """The answer to a call that is not carried out."""
        return Answer(self.failure)


def is_null(a, *names):
    """Whether the host passes null for one of these."""
    return any(name in a and a[name] is None for name in names)


def fits(data, a, name):
    """A null buffer takes nothing, unless its capacity is 0 as well."""
    capacity = a[name + "Capacity"]
    return len(data) <= capacity and (capacity == 0 or not is_null(a, name))


def number(value, size):
    return struct.pack("<Q", value)[:size]


class ModalRule(Rule):
    """A call that fails when it cannot show its dialog, and answers only when the user confirms."""

    def answer(self, world, a, dialog):
        if dialog is None:
            return Answer(FAILED)
        return self.confirmed(a, dialog) if dialog.confirmed else Answer(CANCELLED)

    def confirmed(self, a, dialog):
        raise NotImplementedError


class PinRule(ModalRule):
    buffers = ("pin",)

    def __init__(self, confirm="OK", counter=False):
        self.button, self.counter = confirm, counter

    def dialog(self, world, a):
        if is_null(a, "record", "out", "label"):
            return None
        texts = [filled('To log in to "%s"', a["label"]), "Enter PIN:", *self.failure_lines(a),
                 f"Minimum PIN length {shown_number(a['min'])} bytes",
                 f"Maximum PIN length {shown_number(a['max'])} bytes"]
        return dialogs.PinEntry("Enter PIN", texts, a["min"], a["max"], self.button)

    def failure_lines(self, a):
        first = ("The PIN has previously been entered incorrectly" if a["failedEarlier"]
                 else "PIN incorrect")
        last_try = "WARNING: You have only 1 attempt left!"
        may_lock = "WARNING: Repeated login failures may lock the token!"
        if not self.counter:
            if a["finalTry"]:
                return [first, last_try]
            return [] if a["noFailure"] else [first, may_lock]
        if a["triesLeft"] == 1:
            return [first, last_try]
        if a["triesLeft"] == a["maxTries"]:
            return []
        return [first, f"{may_lock}\nYou have {shown_number(a['triesLeft'])} tries remaining"]

    def confirmed(self, a, dialog):
        pin = dialog.values[0].encode()
        # kept by the library: a PIN that does not fit counts as cancelled.
        return Answer(OK, {"pin": pin}) if fits(pin, a, "pin") else Answer(CANCELLED)


class ChangeRule(ModalRule):
    buffers = ("old", "new")

    def __init__(self, title, heading, policed=False):
        self.title, self.heading, self.policed = title, heading, policed

    def dialog(self, world, a):
        if is_null(a, "record", "out", "label") or self.policed and self.is_unusable(a):
            return None
        title, heading = (("Change PUK", 'Changing the PUK for "%s":') if a["changePuk"]
                          else (self.title, self.heading))
        bounds = (a["min"], a["max"])
        old_bounds = (a["oldMin"], a["oldMax"]) if self.policed else (0, 0)
        return dialogs.Change(title, [filled(heading, a["label"])],
                              bounds if old_bounds == (0, 0) else old_bounds, bounds,
                              world.settings.ascii_only, self.policy(a) if self.policed else None)

    @staticmethod
    def has_policy(a):
        return a["policy"] is not None and a["policyTag"] <= 3

    def policy(self, a):
        if not self.has_policy(a):
            return None
        characters = "" if is_null(a, "policyListDescriptor") else a["policyList"]
        return Policy(bytes.fromhex(a["policy"]), bytes.fromhex(characters))

    def is_unusable(self, a):
        """Whether there is a policy that cannot be read."""
        return self.has_policy(a) and (
            a["policySize"] < 32 or is_null(a, "policyBlock")
            or is_null(a, "policyListDescriptor")
            and bytes.fromhex(a["policy"])[1] & RESTRICTION != 0)

    def confirmed(self, a, dialog):
        old, new = (value.encode() for value in dialog.values[:2])
        if not (fits(old, a, "old") and fits(new, a, "new")):
            return Answer(FAILED)
        return Answer(OK, {"old": old, "new": new})


class ChallengeResponseRule(ModalRule):
    buffers = ("response", "newPin")

    def dialog(self, world, a):
        no_bytes = is_null(a, "challengeData") and a["challengeLength"] > 0
        if is_null(a, "record", "out", "label", "serial", "challenge") or no_bytes:
            return None
        return dialogs.ChallengeResponse(
            ["Challenge:", f"Response is {a['responseLength']} bytes long"], a["responseLength"],
            (a["min"], a["max"]) if a["askNewPin"] else None, world.settings.ascii_only)

    def confirmed(self, a, dialog):
        outputs = {"response": dialog.response()}
        if a["askNewPin"]:
            outputs["newPin"] = dialog.values[1].encode()
        if not all(fits(data, a, name) for name, data in outputs.items()):
            return Answer(FAILED)
        return Answer(OK, outputs)


class TokenRule(ModalRule):
    slots = ("identifier",)

    def dialog(self, world, a):
        no_entries = is_null(a, "entries") and a["entry"]
        null_text = any(None in entry for entry in a["entry"])
        if is_null(a, "record", "identifier") or no_entries or null_text:
            return None
        return dialogs.Tokens(len(a["entry"]))

    def confirmed(self, a, dialog):
        return Answer(OK, {"identifier": number(a["entry"][dialog.chosen][2], 8)})


class DigitalIdRule(ModalRule):
    slots = ("chosen",)

    def dialog(self, world, a):
        if is_null(a, "record", "chosen", "texts", "name", "validFrom", "validTo", "directory"):
            return None
        dialog = dialogs.DigitalIds(["Valid From:", "Valid To:"], a["count"], a["defaultIndex"],
                                    a["alwaysUse"] != 0)
        if a["autoSelect"] and a["count"]:
            dialog.confirmed = True  # by itself: the count-down is set to 0 seconds
        return dialog

    def confirmed(self, a, dialog):
        return Answer(OK, {"chosen": number(a["value"], 8) + bytes([dialog.always_use])})


class UnblockMethodRule(ModalRule):
    slots = ("method", "algorithm")

    def dialog(self, world, a):
        no_codes = is_null(a, "algorithms") and a["count"] > 0
        if is_null(a, "method", "algorithm") or no_codes:
            return None
        return dialogs.UnblockMethod(a["pukOffered"] != 0, a["count"])

    def confirmed(self, a, dialog):
        return Answer(OK, {"method": number(dialog.method, 4),
                           "algorithm": number(dialog.algorithm, 4)})


class BoxRule(Rule):
    """A question or a notice. The host learns that it was shown, not what the user chose."""

    def __init__(self, title, text, question=False, result=CANCELLED):
        self.title, self.text, self.question, self.result = title, text, question, result

    def dialog(self, world, a):
        return dialogs.Box(self.title, self.text, self.question)

    def answer(self, world, a, dialog):
        return Answer(FAILED if dialog is None else self.result)


class ExpiryRule(BoxRule):
    def dialog(self, world, a):
        text = self.text.replace("%d", shown_number(a["number"]))
        return dialogs.Box(self.title, text, self.question)


class LockedRule(BoxRule):
    def dialog(self, world, a):
        if is_null(a, "label"):
            return None
        return dialogs.Box(self.title, filled(self.text, a["label"]), self.question)


class CertificateRule(BoxRule):
    NAMES = ("application", "label", "issuedTo", "issuedBy", "validFrom", "validTo")

    def dialog(self, world, a):
        # The first two have a second reading, as texts of the locale: here that is UTF-8, too.
        if is_null(a, *self.NAMES) or not all(is_utf8(a[name]) for name in self.NAMES[:2]):
            return None
        return dialogs.Box(self.title, certificate_text(a), self.question)


class BiometricErrorRule(BoxRule):
    def dialog(self, world, a):
        return dialogs.Box(self.title, *biometric_error(a["number"]))


class NotificationRule(Rule):
    """The window of the fingerprint token; before an enrolment the hint is shown."""
    slots = ("shown",)
    stays = True

    def __init__(self, enrols):
        self.enrols = enrols

    def dialog(self, world, a):
        if is_null(a, "shown") or not self.enrols or not world.settings.hint:
            return None
        return dialogs.EnrolmentHint(world.settings)

    def answer(self, world, a, dialog):
        if is_null(a, "shown"):
            return Answer(FAILED)
        world.notification = Notification(self.enrols, scans=1 if self.enrols else 0)
        return Answer(OK, {"shown": number(1, 8)})


class EffectRule(Rule):
    """A call without arguments and dialog that does something to the world."""
    stays = True

    def __init__(self, effect, result=OK):
        self.effect, self.result = effect, result

    def answer(self, world, a, dialog):
        self.effect(world)
        return Answer(self.result)


class PadShowRule(Rule):
    failure = 0
    slots = ("handle",)
    stays = True

    def __init__(self, verification=True, legal=False, with_row=True):
        self.kind = {"verification": verification, "legal": legal, "with_row": with_row}

    def answer(self, world, a, dialog):
        if is_null(a, "handle"):
            return Answer(0)
        world.pads[a["pad"]] = Pad(**self.kind, may_abort=a["allowAbort"] != 0)
        return Answer(1, {"handle": ANY})


class PadRule(Rule):
    """An order to a pad. Without a living pad, by that name or handle, it has no effect."""
    failure = None
    stays = True

    def __init__(self, order):
        self.order = order

    def answer(self, world, a, dialog):
        if a.get("handle") is None and a["pad"] in world.pads:
            self.order(world, a["pad"])
        return Answer(None)


class PadAbortRule(Rule):
    failure = 0

    def answer(self, world, a, dialog):
        pad = world.pads.get(a["pad"]) if a.get("handle") is None else None
        return Answer(int(pad is not None and pad.abort))


class TextRule(Rule):
    """A text with its size; a buffer that is too small is left alone, and the size told."""
    buffers = ("buffer",)

    def __init__(self, encoding, unit, text):
        self.encoding, self.unit, self.text = encoding, unit, text

    def answer(self, world, a, dialog):
        text = self.text(a)
        if text is None or is_null(a, "size"):
            return self.refusal(a)
        data = (text + "\0").encode(self.encoding)
        size = len(data) // self.unit
        if size > a["bufferCapacity"] or is_null(a, "buffer"):
            return Answer(BUFFER_TOO_SMALL, size=size)
        return Answer(OK, {"buffer": data}, size)

    def refusal(self, a):
        return Answer(FAILED, size=a["bufferCapacity"])


def translated(a):
    """There is no catalogue: every text is its own translation."""
    return None if a["source"] is None else shown_text(a["source"])


def translated_wide(a):
    """Null is the empty text."""
    return "" if a["source"] is None else a["source"].decode("utf-32-le")
