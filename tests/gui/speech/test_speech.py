#!/usr/bin/python3
"""What somebody hears who does not see the dialogs, from Orca, the screen reader of Debian."""

import contextlib
import dataclasses
import unittest

from speech import ScreenReader
from stage import Gone, StageTestCase, wait_until
from stage.dialogs import (ALWAYS, IDS, LETTERS, find_dialog, remove_dialog, show_dialog,
                           wait_ready)

# The accessibility bridge's own, in every program of the toolkit that a screen reader asks for the
# headers of a list.
BRIDGE = "g_ptr_array_unref: assertion 'array' failed"

HEADING = 'To log in to "Identity card"'
LENGTHS = "Minimum PIN length 4 bytes Maximum PIN length 8 bytes"
MAY_LOCK = "WARNING: Repeated login failures may lock the token!"
NOTICE = "You are about to create a legally binding digital signature!"
SHORT = "Not met: Minimum PIN length 4 bytes"
LONG_ENOUGH = "Met: Minimum PIN length 4 bytes"
FULFILLED = ("The informed password is correct and fullfilled all the password policy "
             "requirements !")
FILLED = "password text ●● selected."
ALGORITHM = ("Please select the unlocking algorithm from the drop-down box below. Your helpdesk "
             "can tell you which algorithm you should select.")
CHALLENGE, WITNESS = "3DES ECB Challenge/Response", "3DES ECB Witness/Challenge/Response"
VALID = "Valid From: 2024-01-01. Valid To: 2034-01-01"
BIO = ("Please wait for the yellow light to start flashing. Then swipe your finger over the sensor "
       "of the Lumora Bio Token.")
SWIPE = ("Please swipe your finger over the Lumora Bio Token sensor when the yellow light starts "
         "flashing.")
AGAIN = "Would you like to try again?"


@dataclasses.dataclass(frozen=True)
class Scene:
    """A dialog, what is heard when it opens, and what on each act of its user or host."""
    name: str
    opening: list
    acts: list = ()  # (act, what is heard)
    arguments: dict = dataclasses.field(default_factory=dict)
    settings: tuple = None
    locked: bool = False  # with Caps Lock, which was pressed before


def typed(text, *heard):
    return f"type {text}", list(heard)


def key(name, *heard):
    return f"key {name}", list(heard)


def first_control(*heard):
    """Of a window where nothing had the keyboard."""
    return "first control", [] if ScreenReader.misses_first_control else list(heard)


def told(export, *heard):
    """By the host, of a PIN pad."""
    return f"call DLG_PinPadKeyboardInput{export}", list(heard)


def waits(*heard):
    return "wait", list(heard)


def prompt(name, texts, failure, **arguments):
    return Scene(name, [f"Enter PIN dialog {texts} {LENGTHS}.", "Enter PIN: password text.",
                        f"{failure} {SHORT}."],
                 [typed("zvp"), typed("k", LONG_ENOUGH), key("BackSpace", SHORT)], arguments)


def change(name, title, heading, old, kind, new, failure, pages=""):
    """The fields one after the other, each of them heard as it is filled, then the balls: one that
    is chosen says what it stands for.
    """
    old_rule = f"{kind} length between 4 and 8 bytes"
    rules = [old_rule, f"Minimum {new} length 4 bytes", f"Maximum {new} length 8 bytes",
             f"New {new} equal to confirmed new {new}"]
    missing = f"Not met: {rules[1]}" + (f". Not met: {pages}" if pages else "")
    met = f"Met: {rules[1]}" + (f". Met: {pages}" if pages else "")
    balls = [key("Tab", f"Met: {rule} button") for rule in rules]
    to_pages = [*balls[2:], key("Tab", "Met: Length button"),
                key("Down", "Met: Equality button", rules[3])]
    return Scene(name, [f'{title} dialog {heading} for "Identity card":',
                        f"Enter {old}: password text.", f"{failure} Not met: {old_rule}."],
                 [typed(LETTERS, f"Met: {old_rule}"),
                  key("Tab", f"Enter new {new}: password text.", f"{missing}."),
                  typed(LETTERS, met),
                  key("Tab", f"Confirm new {new}: password text.", f"Not met: {rules[3]}."),
                  typed(LETTERS, FULFILLED),
                  # Again from the first: what has failed before is said each time.
                  key("shift+Tab", f"Enter new {new}: {FILLED}", FULFILLED),
                  key("shift+Tab", f"Enter {old}: {FILLED}", f"{failure} {FULFILLED}"),
                  key("Tab", f"Enter new {new}: {FILLED}", FULFILLED),
                  key("Tab", f"Confirm new {new}: {FILLED}", FULFILLED),
                  *balls[:2], key("space", rules[1]), *(to_pages if pages else [])])


def pad(name, texts, abort, *steps):
    """Heard when the keyboard comes to it: it does not by itself."""
    digits = ["Digits entered: 0"] * ("NoPin" not in name)
    if abort:
        return Scene(name, [f"PinPad dialog {texts}"],
                     [first_control("Abort button", *digits), *steps])
    return Scene(name, [" ".join(["PinPad dialog", texts, *digits])], steps)


def box(name, title, text, button="Yes", **more):
    texts = [f"alert {title}.", text, f"{button} button."]
    if len(text.split()) < 3:  # it is the button's
        texts = [texts[0], *texts[:0:-1]]
    return Scene(name, texts, **more)


def without_stops(scene):
    """As the reader is heard."""
    def cut(heard):
        return [utterance.rstrip(".") for utterance in heard]
    return dataclasses.replace(scene, opening=cut(scene.opening),
                               acts=[(act, cut(heard)) for act, heard in scene.acts])


SCENES = list(map(without_stops, [
    prompt("pin", HEADING, f"PIN incorrect. {MAY_LOCK}"),
    prompt("pin-ex", HEADING, f"PIN incorrect. {MAY_LOCK}\nYou have 2 tries remaining."),
    dataclasses.replace(prompt("pin", HEADING, f"Caps Lock is on. PIN incorrect. {MAY_LOCK}"),
                        locked=True),
    prompt("legal-pin", f"{NOTICE} {HEADING}", f"PIN incorrect. {MAY_LOCK}"),
    prompt("legal-pin-ex", f"{NOTICE} {HEADING}",
           "PIN incorrect. WARNING: You have only 1 attempt left!"),
    change("change-pin", "Change transport PIN", "Changing the PIN", "transport PIN", "PIN", "PIN",
           f"PIN incorrect. {MAY_LOCK}"),
    change("change-puk", "Change PUK", "Changing the PUK", "old PUK", "PUK", "PUK",
           f"PUK incorrect. {MAY_LOCK}"),
    change("unblock-puk", "Change transport PIN", "Changing the PIN", "transport PIN", "PIN", "PIN",
           f"PIN incorrect. {MAY_LOCK}"),
    change("change-transport-pin", "Unlock PIN", "Unlocking the PIN", "PUK", "PUK", "PIN",
           f"PUK incorrect. {MAY_LOCK}"),
    change("change-policed-pin", "Change transport PIN", "Changing the PIN", "transport PIN", "PIN",
           "PIN", f"PIN incorrect. You have 2 tries remaining\n{MAY_LOCK}", "Diversification"),
    pad("pad Verification", "Enter your PIN", False,
        told("NextPin", "Enter your PIN"), told("AddChar", "Digits entered: 1"),
        told("Cancel", "Cancel Pressed")),
    pad("pad Modification", "Enter your PIN Enter the new PIN Confirm the new PIN", True,
        told("NextPin", "Enter your PIN"), told("AddChar", "Digits entered: 1"),
        told("AddChar", "Digits entered: 2"), told("DelChar", "Digits entered: 1"),
        told("NextPin", "Enter the new PIN"), told("NextPin", "Confirm the new PIN"),
        told("Timeout", "Timer Expired"), told("ClearChars", "Digits entered: 0"),
        told("Accept", "Ok Pressed")),
    pad("pad LegalVerification", f"{NOTICE} Enter your PIN", True,
        told("NextPin", "Enter your PIN")),
    pad("pad NoPinVerification", "Enter your PIN", True,
        told("NextPin", "Enter your PIN"), told("Timeout", "Timer Expired")),
    pad("pad LegalNoPinVerification", f"{NOTICE} Enter your PIN", False,
        told("NextPin", "Enter your PIN")),
    Scene("unblock-method", [f"Unlock PIN dialog {ALGORITHM}",
                             "Unlock PIN using the PUK selected radio button."]),
    Scene("unblock-method, off-line",
          [f"Unlock PIN dialog {ALGORITHM}",
           "Unlock PIN via off-line PIN unlock selected radio button."],
          [key("Tab", f"{CHALLENGE} combo box", "Unlocking algorithm read only.",
               f"{CHALLENGE}.", ALGORITHM)]),
    Scene("unblock-cr",
          ['Unlock PIN dialog Unlocking the PIN for "Identity card": Response is 8 bytes long.',
           "Response: text.", "Not met: Response is 8 bytes long."],
          [typed("0011223344556677", "Met: Response is 8 bytes long")]),
    Scene("unblock-cr, new PIN",
          ['Unlock PIN dialog Unlocking the PIN for "Identity card": Response is 8 bytes long '
           f"{LENGTHS} PIN equal to Confirmed PIN.",
           "Response: text.", "Not met: Response is 8 bytes long."],
          [key("Tab", "Enter new PIN: password text.", f"{SHORT}."),
           typed(LETTERS, LONG_ENOUGH),
           key("Tab", "Confirm new PIN: password text.", "Not met: PIN equal to Confirmed PIN."),
           typed(LETTERS, "Met: PIN equal to Confirmed PIN")]),
    Scene("select-token", ["Select a token dialog.", "Please select a token:",
                           "table with 2 rows 1 column", "Identity card (Reader)"],
          [key("Down", "Badge (Reader)")]),
    Scene("select-id",
          ["Select Digital ID dialog This computer is a member of the following Active Directory:",
           f"{IDS}:", "table with 3 rows 1 column", "Maria Santos.", f"{VALID}."],
          [key("Down", "Maria Santos.", f"{VALID}."),
           key("Tab", f"{ALWAYS} check box not checked.")]),
    Scene("select-id",
          ["Select Digital ID dialog This computer is a member of the following Active Directory:",
           f"{IDS}:", "table with 3 rows 1 column", "Maria Santos.",
           f"{VALID}. The selected Digital ID is confirmed automatically. Seconds left: 600."],
          [key("Down", "Maria Santos.", f"{VALID}.")], {"autoSelect": 1},
          (("CSP", "Automatic default selection timeout", 600),)),
    box("locked", "Token locked",
        'The token "Identity card" is locked.\nPlease use the token manager to unlock it,\nor '
        "contact your system administrator.", "OK"),
    box("confirm-delete", "Question",
        "The application Mail is trying to delete a certificate:\n\nIssued To: Maria Santos\n"
        "Issued By: Example Certification Authority\n\nValid From: 2024-01-01\n"
        'Valid To: 2034-01-01\n\nFrom the token with label "Identity card"\n\n'
        "Do you wish to allow this?"),
    box("ask-unlock", "Question", "This token is locked, would you like to unlock it?"),
    box("ask-transport-pin", "Question",
        "This token still has a transport PIN.\nWould you like to change it?"),
    box("ask-expiry", "Question", "The PIN on this token is about to expire in 3 days.\nWould you "
                                  "like to change it now ?"),
    box("cr-failed", "Error",
        "Off-line PIN unlock of your token failed!\nThe response to the presented challenge was "
        "incorrect!\n\nRepeated unlock failures may permanently lock your token!", "OK"),
    box("puk-locked", "Error", "PUK locked!", "OK"),
    box("biometric-error", "Error",
        f"Verification failed!\nYou have only 1 final try remaining!\n\n{AGAIN}"),
    box("retry auth", "Authentication failed",
        f"Authentication to the Lumora Bio Token failed!\n{AGAIN}"),
    Scene("retry enrol", ["alert Enrolment failed.",
                          "Enrolment of (new) fingerprint(s) on the Lumora Bio Token failed!\n"
                          + AGAIN, "Yes button.", "Seconds left: 36."],
          [waits("Seconds left: 30"), key("Tab", "No button.")],
          settings=(("Biometrics", "Automatic retry timeout", 36),)),
    Scene("keygen", ["Generating key-pair dialog Generating key-pair, please wait"]),
    Scene("biometric-auth",
          ["Lumora Bio Token dialog Authentication to the Lumora Bio Token is required for this "
           f"operation.\n\n{BIO}\n\nThis dialog will automatically disappear once the "
           f"authentication has completed. {SWIPE}"]),
    Scene("biometric-enrol",
          ["Lumora Bio Token - enrolling finger (scan 1) dialog You can now enrol a new "
           f"fingerprint on the Lumora Bio Token.\n\n{BIO}\n\nThis dialog will automatically "
           f"disappear once the enrolment has completed. {SWIPE}"],
          [("call DLG_UpdateSuperTokenEnrolDlg",
            ["Lumora Bio Token - enrolling finger (scan 2)"])]),
    Scene("enrolment-hint",
          ["Fingerprint enrolment information dialog You are about to enrol a (new) finger on the "
           "Lumora Bio Token. This enrolment process is carried out in 3 scans. The title bar of "
           "the window prompting you to swipe your finger over the sensor and the number in the "
           "window indicates which scan is being made. The process automatically terminates when "
           "you have made the three scans. It is important that you use exactly the same finger "
           "in all three scans.", "OK button."]),
]))


class SpeechCase(StageTestCase):
    @classmethod
    def setUpClass(cls):
        cls.reader = cls.enterClassContext(ScreenReader())

    def hear(self, expected, after):
        """Waits for just that."""
        wait_until(lambda: self.reader.said() == expected, 30, what=f"{expected} after {after}",
                   seen=lambda: "\n".join(map(repr, self.reader.said())))
        self.reader.forget()

    def setUp(self):
        super().setUp()
        # The reader loses the next window of a program when another one ends meanwhile: all stay.
        self.hosts = [self.start_host(strict=False)]

    def host_for(self, scene):
        """Some settings are read once in the life of a program."""
        if scene.settings is not None:
            self.hosts.append(self.start_host(strict=False))
            return self.hosts[-1]
        return self.hosts[0]

    left = None  # the title of the last scene's window

    def close(self):
        with contextlib.suppress(Gone):
            self.left = self.window.name
        remove_dialog(self.screen, self.host, self.dialog, self.call, self.window)

    def open(self, scene):
        dialog = find_dialog(scene.name)
        dialog = dataclasses.replace(
            dialog, arguments={**dialog.arguments, **scene.arguments},
            settings=dialog.settings if scene.settings is None else scene.settings)
        self.host = self.host_for(scene)
        self.reader.forget()
        self.call, self.window = show_dialog(self.screen, self.host, dialog)
        if dialog.order and not dialog.start:
            wait_ready(self.screen, dialog, self.window)
        else:
            self.screen.go_to(self.window)
        self.dialog = dialog

    @contextlib.contextmanager
    def caps_lock(self, locked):
        if locked:
            self.toggle_caps_lock()
        try:
            yield
        finally:
            if locked:
                self.toggle_caps_lock()

    def toggle_caps_lock(self):
        """Over a PIN field: its sign shows that the program knows of it."""
        self.open(Scene("pin", []))
        field = self.screen.wait_focused()
        before = len(field.children)
        self.screen.key("Caps_Lock", field)
        wait_until(lambda: len(field.children) != before, what="the sign", seen=self.window.dump)
        self.close()

    def act(self, act):
        what, _, words = act.partition(" ")
        match what:
            case "first":
                self.screen.x11.key("Tab")
                self.screen.wait_focused()
            case "type":
                self.screen.type_text(words)
            case "key":
                self.screen.key(words)
            case "call":
                self.host.run(words)


class EveryDialog(SpeechCase):
    def test_what_is_heard_on_opening_and_on_what_happens_then(self):
        self.whole = 0  # so many openings were heard from their first word on
        for scene in SCENES:
            with self.subTest(scene.name, settings=scene.settings), self.caps_lock(scene.locked):
                self.open(scene)
                try:
                    self.play(scene)
                finally:  # or it would be heard in the next scene
                    self.close()
        self.assertGreater(self.whole, 3 / 4 * len(SCENES))
        self.check_secrets()
        for host in self.hosts:
            self.assertEqual([], [line for line in host.faults if BRIDGE not in line])

    def hear_opening(self, scene):
        """A busy reader loses the first words of a window at times, whatever program it is of, and
        Orca 48 says no label of a list; what has the keyboard both say always.
        """
        def said():
            return "\n".join(map(repr, self.reader.said()))
        wait_until(lambda: self.reader.said()[-1:] == scene.opening[-1:], 30,
                   f"{scene.opening[-1]!r} in the end", seen=said)
        heard = self.reader.said()
        if heard[0] == self.left:  # a busy reader says so late
            heard = heard[1:]
        left = iter(scene.opening)
        self.assertTrue(all(utterance in left for utterance in heard), heard)
        self.whole += heard == scene.opening
        self.reader.forget()

    def play(self, scene):
        self.hear_opening(scene)
        for act, heard in scene.acts:
            self.act(act)
            self.hear(heard, act)

    def check_secrets(self):
        """Neither a PIN nor a letter of it has been said."""
        for utterance in self.reader.everything():
            self.assertNotIn(LETTERS, utterance.lower())
            self.assertNotIn(utterance.strip().lower(), [*LETTERS])


if __name__ == "__main__":
    unittest.main()
