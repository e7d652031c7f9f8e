"""What the gallery shows: one line for each picture, in the order of the page."""

import dataclasses

from stage import Key, Press, policy
from stage.dialogs import HINT_AGAIN, LABEL, Dialog, find_dialog

LONG_LABEL = "Staff badge of the research department, building 12, second floor, card 3 of 4"
RETRY_COUNT_DOWN = (("Biometrics", "Automatic retry timeout", 300),)
ID_COUNT_DOWN = (("CSP", "Automatic default selection timeout", 300),)


@dataclasses.dataclass(frozen=True)
class Fill:
    """Types into the fields in their order; an empty text leaves one alone."""
    values: tuple


@dataclasses.dataclass(frozen=True)
class Enabled:
    """Waits until the button with that accessible name can be pressed."""
    name: str


@dataclasses.dataclass(frozen=True)
class Run:
    """Lets the host call another export, a number of times."""
    export: str
    times: int = 1


@dataclasses.dataclass(frozen=True)
class Surroundings:
    """What a host process is started with: pictures with the same ones share a process."""
    settings: tuple = ()  # (sub-key, value name, number) each
    language: str = ""
    theme: str = ""
    scale: int = 1


@dataclasses.dataclass(frozen=True)
class State:
    """One picture: NAME.png, taken when the acts are done."""
    name: str
    caption: str
    dialog: Dialog
    acts: tuple = ()
    surroundings: Surroundings = Surroundings()

    def where(self, name, caption, **surroundings):
        """The same state in other surroundings."""
        settings = self.surroundings.settings
        return dataclasses.replace(self, name=name, caption=caption,
                                   surroundings=Surroundings(settings, **surroundings))


def typed(*values):
    return (Fill(values),)


def accepted(*values, button="OK"):
    """The same where everything is in order then."""
    return (Fill(values), Enabled(button))


def make(name, settings=(), title="", /, **common):
    """Makes the states of one dialog; what they have in common is said once."""
    dialog = find_dialog(name)
    dialog = dataclasses.replace(dialog, title=title or dialog.title)

    def state(name, caption, acts=(), **arguments):
        shown = dataclasses.replace(dialog, arguments={**common, **arguments})
        return State(name, caption, shown, acts, Surroundings((*dialog.settings, *settings)))
    return state


pin = make("pin", label=LABEL)
pin_ex = make("pin-ex", label=LABEL)
legal = make("legal-pin", label=LABEL)
legal_ex = make("legal-pin-ex", label=LABEL)

change = make("change-pin", label=LABEL)
change_puk = make("change-puk", label=LABEL, changePuk=1)
by_puk = make("unblock-puk", label=LABEL)
by_puk_puk = make("unblock-puk", (), "Change PUK", label=LABEL, changePuk=1)
transport = make("change-transport-pin", label=LABEL)
POLICY = policy(b"0", enabled=15, p1_threshold=1, p2_classes=2, p2_population=1, p2_min_length=6,
                p2_class_mask=31, p3_threshold=3, p3_history_size=5)
policed = make("change-policed-pin", label="Company badge", max=12, **POLICY)
unpoliced = make("change-policed-pin", label="Company badge")
NEW_PIN = ("2468", "zvpk97", "zvpk97")
REFUSED = ("2468", "9800", "9800")

INPUT = "DLG_PinPadKeyboardInput"
NEXT, ADD = INPUT + "NextPin", INPUT + "AddChar"
pad = make("pad Verification")
pad_change = make("pad Modification", allowAbort=1)
pad_legal = make("pad LegalVerification", allowAbort=1)
pad_plain = make("pad NoPinVerification", allowAbort=1)
pad_plain_legal = make("pad LegalNoPinVerification")

tokens = make("select-token")
TOKENS = [("Identity card", "Reader 1", 1), ("Company badge", "Reader 2", 2),
          ("Signature card", "Reader 3", 3)]
MANY_TOKENS = [(f"Card {number}", f"Reader {number}", number) for number in range(1, 31)]
ids = make("select-id", name="Maria Santos", directory="corp.example")
counted_ids = make("select-id", ID_COUNT_DOWN, name="Maria Santos", directory="corp.example",
                   count=3, autoSelect=1)

method = make("unblock-method")
OFF_LINE = "Unlock PIN via off-line PIN unlock"
response = make("unblock-cr", label=LABEL, serial="4711-0815", challenge="0123456789abcdef")
RESPONSE = "a1b2 c3d4 e5f6 0789"

locked = make("locked", label=LABEL)
delete = make("confirm-delete", application="Mail", label=LABEL, issuedTo="Maria Santos",
              issuedBy="Example Certification Authority")
unlock = make("ask-unlock")
ask_transport = make("ask-transport-pin")
expiry = make("ask-expiry")
cr_failed = make("cr-failed")
puk_locked = make("puk-locked")
error = make("biometric-error")
counted_error = make("biometric-error", RETRY_COUNT_DOWN)
auth_retry = make("retry auth")
counted_auth = make("retry auth", RETRY_COUNT_DOWN)
enrol_retry = make("retry enrol")
counted_enrol = make("retry enrol", RETRY_COUNT_DOWN)

key_generation = make("keygen")
authentication = make("biometric-auth")
enrolment = make("biometric-enrol")
hint = make("enrolment-hint")

ENGLISH = {
    "PIN entry": [
        pin("pin", "Just opened: the PIN is too short yet"),
        pin("pin-typed", "Both rules are met, OK is enabled", accepted("135790")),
        pin("pin-too-long", "One character more than the token takes", typed("123456789")),
        pin("pin-incorrect", "After a wrong PIN", noFailure=0),
        pin("pin-failed-earlier", "A wrong PIN was entered before this prompt", noFailure=0,
            failedEarlier=1),
        pin("pin-last-try", "The next wrong PIN locks the token", noFailure=0, finalTry=1),
        pin("pin-final-try-earlier", "The last try, after failures before this prompt",
            finalTry=1, failedEarlier=1),
        pin("pin-long-label", "A label that is longer than a line", label=LONG_LABEL),
        pin_ex("pin-ex", "With a counter: all tries are left"),
        pin_ex("pin-ex-tries-left", "With a counter: two tries are left", triesLeft=2),
        pin_ex("pin-ex-last-try", "With a counter: the last try", triesLeft=1, failedEarlier=1),
    ],
    "PIN for a legally binding signature": [
        legal("legal-pin", "Just opened"),
        legal("legal-pin-typed", "Both rules are met, Sign is enabled",
              accepted("135790", button="Sign")),
        legal("legal-pin-incorrect", "After a wrong PIN", noFailure=0),
        legal_ex("legal-pin-ex", "With a counter: all tries are left"),
        legal_ex("legal-pin-ex-tries-left", "With a counter: two tries are left", triesLeft=2),
        legal_ex("legal-pin-ex-last-try", "With a counter: the last try", triesLeft=1),
    ],
    "PIN pad of a reader": [
        pad("pad-verification", "The step before its start"),
        pad("pad-verification-typing", "Four digits have been typed", (Run(NEXT), Run(ADD, 4))),
        pad("pad-verification-full", "All 15 places are taken", (Run(NEXT), Run(ADD, 15))),
        pad("pad-cancelled", "Cancelled on the reader", (Run(NEXT), Run(INPUT + "Cancel"))),
        pad("pad-timed-out", "Nobody has typed in time", (Run(NEXT), Run(INPUT + "Timeout"))),
        pad("pad-accepted", "The PIN has been confirmed", (Run(NEXT), Run(INPUT + "Accept"))),
        pad_change("pad-modification", "A change of PIN, which can be aborted"),
        pad_change("pad-modification-old", "Its first step", (Run(NEXT), Run(ADD, 4))),
        pad_change("pad-modification-new", "Its second step", (Run(NEXT, 2), Run(ADD, 6))),
        pad_change("pad-modification-confirm", "Its third step", (Run(NEXT, 3), Run(ADD, 2))),
        pad_legal("pad-legal", "For a legally binding signature", (Run(NEXT), Run(ADD, 4))),
        pad_plain("pad-no-pin", "The reader does not tell of digits", (Run(NEXT),)),
        pad_plain_legal("pad-legal-no-pin", "The same for a signature, not to be aborted",
                        (Run(NEXT),)),
    ],
    "Change of PIN and PUK": [
        change("change-pin", "Just opened"),
        change("change-pin-old-typed", "The transport PIN has its length", typed("2468")),
        change("change-pin-mismatch", "The confirmation differs", typed("2468", "13579", "1357")),
        change("change-pin-met", "Everything is met, OK is enabled",
               accepted("2468", "13579", "13579")),
        change("change-pin-ball", "What a red ball asks for, once it is pressed",
               (Press("Not met: Minimum PIN length 4 bytes"),)),
        change("change-pin-incorrect", "After a wrong PIN", noFailure=0),
        change("change-pin-last-try", "The last try", finalTry=1),
        change_puk("change-puk", "Change of the PUK"),
        change_puk("change-puk-incorrect", "Change of the PUK after a wrong one", noFailure=0),
        by_puk("unblock-puk", "Unblocking by an administrator's request"),
        by_puk_puk("unblock-puk-change-puk", "The same for the PUK, last try", finalTry=1),
        transport("transport-pin", "Unlocking a PIN with the PUK"),
        transport("transport-pin-incorrect", "After a wrong PUK", noFailure=0),
        transport("transport-pin-met", "Everything is met",
                  accepted("12345678", "13579", "13579")),
    ],
    "Change of PIN under a policy": [
        policed("policed-pin", "Just opened"),
        policed("policed-pin-refused", "A PIN that the policy refuses", typed(*REFUSED)),
        policed("policed-pin-met", "A PIN that the policy takes", accepted(*NEW_PIN)),
        policed("policed-pin-distance", "Why the distance of neighbours is refused",
                (*typed(*REFUSED), Press("Not met: Distance"))),
        policed("policed-pin-diversification", "Why the mixture of characters is refused",
                (*typed(*REFUSED), Press("Not met: Diversification"))),
        policed("policed-pin-restriction", "Why a character is refused",
                (*typed(*REFUSED), Press("Not met: Restriction"))),
        policed("policed-pin-similarity", "What the token itself compares",
                (Press("Met: Similarity"),)),
        policed("policed-pin-tries-left", "After a wrong PIN, two tries are left", noFailure=0,
                triesLeft=2),
        policed("policed-pin-last-try", "The last try, a long label", noFailure=0, finalTry=1,
                triesLeft=1, label=LONG_LABEL),
        unpoliced("policed-pin-no-policy", "The token has no policy"),
    ],
    "Choice of how to unblock a PIN": [
        method("unblock-method", "PUK and help desk are offered", code=[0, 1]),
        method("unblock-method-off-line", "The help desk is chosen", (Press(OFF_LINE),),
               code=[0, 1]),
        method("unblock-method-no-puk", "There is no PUK", pukOffered=0, code=[1, 0]),
        method("unblock-method-puk-only", "There is no algorithm for the help desk"),
        method("unblock-method-none", "Nothing is offered", pukOffered=0),
    ],
    "Unblocking with the help desk": [
        response("response", "Just opened"),
        response("response-short", "The response is not complete", typed("a1b2 c3d4")),
        response("response-complete", "The response is complete", accepted(RESPONSE)),
        response("response-new-pin", "A new PIN is asked for", askNewPin=1),
        response("response-new-pin-mismatch", "The confirmation differs",
                 typed(RESPONSE, "13579", "1357"), askNewPin=1),
        response("response-new-pin-met", "Everything is met",
                 accepted(RESPONSE, "13579", "13579"), askNewPin=1),
        response("response-long-challenge", "A challenge of 64 bytes, a long label",
                 label=LONG_LABEL, challenge=bytes(range(64)).hex(), responseLength=64),
    ],
    "Choice of a token": [
        tokens("tokens", "Three tokens", entry=TOKENS),
        tokens("tokens-second", "The second is chosen", (Key("Down"),), entry=TOKENS),
        tokens("tokens-many", "Thirty tokens", entry=MANY_TOKENS),
        tokens("tokens-long", "A long name", entry=[(LONG_LABEL, "Reader 1", 1), *TOKENS]),
        tokens("tokens-none", "No token: nothing can be confirmed"),
    ],
    "Choice of a digital ID": [
        ids("ids", "Three digital IDs: a host gives one text for all rows", count=3),
        ids("ids-second", "The second is chosen", (Key("Down"),), count=3),
        ids("ids-many", "Thirty digital IDs with one text", count=30),
        ids("ids-none", "None: nothing can be confirmed", count=0),
        ids("ids-no-directory", "Outside of a directory", count=2, directory=""),
        counted_ids("ids-count-down", "The default is taken when the time is over"),
        counted_ids("ids-count-down-ended", "A choice has ended the count-down", (Key("Down"),)),
    ],
    "Questions": [
        delete("delete-certificate", "A program wants to delete a certificate"),
        unlock("ask-unlock", "The token is locked"),
        ask_transport("ask-transport-pin", "The token has its transport PIN still"),

        expiry("ask-expiry", "The PIN is about to expire", number=3),
    ],
    "Notices": [
        locked("token-locked", "The token is locked"),
        puk_locked("puk-locked", "The PUK is locked"),
        cr_failed("response-wrong", "The response of the help desk was wrong"),
    ],
    "Fingerprint token: errors and retries": [
        auth_retry("auth-retry", "Authentication failed"),
        counted_auth("auth-retry-count-down", "The same with a count-down"),
        enrol_retry("enrol-retry", "Enrolment failed"),
        counted_enrol("enrol-retry-count-down", "The same with a count-down"),
        error("biometric-5-tries", "Verification failed, five tries are left", number=0x63C5),
        error("biometric-last-try", "Verification failed, the last try", number=0x63C1),
        error("biometric-blocked", "Verification failed for the last time", number=0x63C0),
        error("biometric-was-blocked", "The method was blocked before", number=0x6983),
        error("biometric-no-finger", "No fingerprint is enrolled", number=0x6A82),
        error("biometric-too-slow", "The finger was moved too slowly", number=0xA712),
        error("biometric-broken", "The sensor is broken", number=0xA716),
        error("biometric-device-error", "A code without a text of its own", number=0x6400),
        counted_error("biometric-count-down", "A retry with a count-down", number=0xA712),
    ],
    "Fingerprint token: notifications": [
        authentication("authentication", "A finger is asked for"),
        enrolment("enrolment", "The first scan of an enrolment"),
        enrolment("enrolment-scan-3", "The third scan", (Run("DLG_UpdateSuperTokenEnrolDlg", 2),)),
        hint("enrolment-hint", "What an enrolment is"),
        hint("enrolment-hint-never", "Not to be shown again", (Press(HINT_AGAIN),)),
    ],
    "Key generation": [
        key_generation("key-generation", "A key pair is being generated"),
    ],
}

_ALL = {state.name: state for states in ENGLISH.values() for state in states}


def german(name, caption):
    return _ALL[name].where(name + "-de", caption, language="de")


def mirrored(name, caption):
    """In Hebrew letters that make no words: what is looked at is the direction."""
    return _ALL[name].where(name + "-he", caption, language="he")


def themed(theme):
    return [_ALL[name].where(name, _ALL[name].caption, theme=theme) for name in LOOKS]


def doubled(*names):
    return [_ALL[name].where(name + "-2x", _ALL[name].caption, scale=2) for name in names]


# What has warnings, signs, pictures, lists and buttons of each kind.
LOOKS = ("pin-last-try", "legal-pin-ex-tries-left", "pad-modification-new", "policed-pin-refused",
         "policed-pin-met", "response-new-pin-mismatch", "ids", "delete-certificate",
         "authentication", "key-generation")

GALLERY = {
    **ENGLISH,
    "In German": [
        german("pin-ex-tries-left", "PIN entry"),
        german("legal-pin", "Signature"),
        german("pad-modification-new", "PIN pad"),
        german("policed-pin-refused", "Change of PIN under a policy"),
        german("unblock-method", "Unblocking"),
        german("delete-certificate", "Question"),
        german("enrolment-hint", "Enrolment"),
    ],
    "From right to left (the letters make no words)": [
        mirrored("pin-ex-tries-left", "PIN entry"),
        mirrored("legal-pin-ex-tries-left", "Signature"),
        mirrored("policed-pin-refused", "Change of PIN under a policy"),
        mirrored("response-new-pin", "Unblocking with the help desk"),
    ],
    "At twice the scale": doubled("pin-last-try", "legal-pin", "policed-pin-refused",
                                  "authentication", "key-generation"),
}

# Contact sheets: their names, what they are of, and their states.
SHEETS = {"sheet-" + name: (theme, themed(theme)) for name, theme in (
    ("dark", "Adwaita:dark"), ("contrast", "HighContrast"), ("inverse", "HighContrastInverse"),
    ("breeze", "Breeze"), ("breeze-dark", "Breeze-Dark"), ("arc", "Arc"), ("arc-dark", "Arc-Dark"))}

STATES = [state for states in GALLERY.values() for state in states]
