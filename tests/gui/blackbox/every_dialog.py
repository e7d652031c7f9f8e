"""Every dialog of the library, for tests that look at all of them. One line for each."""

import collections

from stage import CANCELLED, OK, policy

# Shown while its call lasts (`result` is what Escape makes of it), or, where `hide` names an
# export, until that is called: nothing the user does ends it.
# `order`: what Tab goes through from the control that has the focus first, with nothing typed.
# `start`: the key that brings the keyboard to that first one, where nothing has it at first.
# `typed`: what goes into the PIN fields, `answer`: into the other one; Return then ends the dialog
# with success.
Dialog = collections.namedtuple(
    "Dialog", "name export title arguments role order result hide typed answer registry start",
    defaults=(None, None, (), None, None, None))

IDS = "Multiple Digital IDs found; please select an appropriate Digital ID from the list below"
ALWAYS = "Always use this Digital ID (this dialog will not be displayed again)"
BALLS = ["Not met: PIN length between 4 and 8 bytes", "Not met: Minimum PIN length 4 bytes",
         "Met: Maximum PIN length 8 bytes", "Met: New PIN equal to confirmed new PIN"]
PAGES = ["Not met: Length", "Met: Equality", "Met: Distance", "Not met: Diversification",
         "Met: Similarity", "Met: Restriction"]
ALGORITHM = "Unlocking algorithm"
HINT_AGAIN = "Show this window during the next enrolment procedure"
NO_HINT = ("REGEDIT4\r\n\r\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Corvenna\\Tessaly\\2.0]\r\n"
           '"ShowEnrolmentHint"=dword:00000000\r\n')
POLICY = policy(b"0", enabled=15, p1_threshold=1, p2_min_length=4, p2_class_mask=31)

FAILED_BEFORE = {"label": "Identity card", "noFailure": 0}
# Under the policy above it is in order; nothing that is shown has these letters in a row.
LETTERS = "zvpk"


def pin(name, export, ok="OK", **arguments):
    return Dialog(name, export, "Enter PIN", {**FAILED_BEFORE, **arguments}, "dialog",
                  ["Enter PIN", "Cancel"], CANCELLED, typed=(LETTERS,))


def change(name, export, title, old, kind="PIN", pages=(), **arguments):
    balls = [ball.replace("PIN", kind) for ball in BALLS]
    if title == "Unlock PIN":
        balls[1:] = BALLS[1:]
    fields = [f"Enter {old}", f"Enter new {kind}", f"Confirm new {kind}"]
    if title == "Unlock PIN":
        fields[1:] = ["Enter new PIN", "Confirm new PIN"]
    return Dialog(name, export, title, {**FAILED_BEFORE, **arguments}, "dialog",
                  [*fields, *balls, *pages, "Explanation", "Cancel"], CANCELLED,
                  typed=(LETTERS, LETTERS, LETTERS))


def box(name, export, title, buttons, result, **arguments):
    return Dialog(name, export, title, arguments, "alert", buttons, result)


def pad(kind, abort):
    return Dialog(f"pad {kind}", f"DLG_PinPadShow{kind}Dialog", "PinPad", {"allowAbort": abort},
                  "dialog", ["Abort"] if abort else [], hide="DLG_PinPadHideDialog", start="Tab")


def wait_ready(screen, dialog, window):
    """Waits until what `order` begins with has the keyboard, as far as anything is to have it."""
    if not dialog.order:
        return
    if dialog.start:
        screen.go_to(window)
        screen.x11.key(dialog.start)
    screen.wait_focused()


DIALOGS = [
    pin("pin", "DLG_ShowPinDialog"),
    pin("pin-ex", "DLG_ShowPinDialogEx", triesLeft=2, noFailure=None),
    pin("legal-pin", "DLG_ShowLegalPinDialog"),
    pin("legal-pin-ex", "DLG_ShowLegalPinDialogEx", triesLeft=1, noFailure=None),
    change("change-pin", "DLG_ShowChangePinDialog", "Change transport PIN", "transport PIN"),
    change("change-puk", "DLG_ShowChangePinDialog", "Change PUK", "old PUK", "PUK", changePuk=1),
    change("unblock-puk", "DLG_ShowUnblockThroughPUK", "Change transport PIN", "transport PIN"),
    change("transport-pin", "DLG_ShowChangeTransportPIN", "Unlock PIN", "PUK", "PUK"),
    change("policed-pin", "DLG_ShowChangePolicedPinDialog_func", "Change transport PIN",
           "transport PIN", pages=PAGES, triesLeft=2, **POLICY),
    pad("Verification", 0),
    pad("Modification", 1),
    pad("LegalVerification", 1),
    pad("NoPinVerification", 1),
    pad("LegalNoPinVerification", 0),
    Dialog("unblock method", "DLG_ShowSelectUnblockMethod", "Unlock PIN",
           {"pukOffered": 1, "code": [0, 1]}, "dialog",
           ["Unlock PIN using the PUK", "OK", "Cancel"], CANCELLED),
    Dialog("unblock off-line", "DLG_ShowSelectUnblockMethod", "Unlock PIN",
           {"pukOffered": 0, "code": [0, 1]}, "dialog",
           ["Unlock PIN via off-line PIN unlock", ALGORITHM, "OK", "Cancel"], CANCELLED),
    Dialog("challenge", "DLG_ShowUnblockThroughCR", "Unlock PIN", {"label": "Identity card"},
           "dialog", ["Response", "Cancel", "Challenge"], CANCELLED),
    Dialog("challenge, PIN", "DLG_ShowUnblockThroughCR", "Unlock PIN",
           {"label": "Identity card", "askNewPin": 1}, "dialog",
           ["Response", "Enter new PIN", "Confirm new PIN", "Cancel", "Challenge"], CANCELLED,
           typed=(LETTERS, LETTERS), answer="0011223344556677"),
    Dialog("tokens", "DLG_ShowTokenSelectionDialog", "Select a token",
           {"entry": [("Identity card", "Reader", 1), ("Badge", "Reader", 2)]}, "dialog",
           ["Please select a token", "OK"], CANCELLED),
    Dialog("digital IDs", "DLG_ShowDigitalIDSelection", "Select Digital ID",
           {"count": 3, "directory": "corp.example"}, "dialog", [IDS, ALWAYS, "OK", "Cancel"],
           CANCELLED),
    box("locked", "DLG_ShowLockedDialog", "Token locked", ["OK"], OK),
    box("delete", "DLG_ShowConfirmDeleteCertificate", "Question", ["Yes", "No"], CANCELLED),
    box("unlock", "DLG_ShowUnlockTokenDialog", "Question", ["Yes", "No"], CANCELLED),
    box("transport", "DLG_AskChangeTransportPIN", "Question", ["Yes", "No"], CANCELLED),
    box("expiry", "DLG_AskEarlyUnexpirePin", "Question", ["Yes", "No"], CANCELLED, number=3),
    box("unblock failed", "DLG_ShowCRUnblockFailed", "Error", ["OK"], CANCELLED),
    box("PUK locked", "DLG_ShowPUKIsLocked", "Error", ["OK"], CANCELLED),
    box("error", "DLG_ShowSupertokenError", "Error", ["Yes", "No"], 1, number=0x63C1),
    box("auth retry", "DLG_AuthFailRetryDialog", "Authentication failed", ["Yes", "No"], 1),
    box("enrol retry", "DLG_EnrolFailRetryDialog", "Enrolment failed", ["Yes", "No"], 1),
    Dialog("key generation", "DLG_ShowKeyGenerationProgressDialog", "Generating key-pair", {},
           "dialog", [], hide="DLG_HideKeyGenerationProgressDialog"),
    Dialog("authentication", "DLG_ShowSupertokenAuthDlg", "Lumora Bio Token", {}, "dialog", [],
           hide="DLG_HideSupertokenDlg"),
    Dialog("enrolment", "DLG_ShowSupertokenEnrolDlg",
           "Lumora Bio Token - enrolling finger (scan 1)", {}, "dialog", [],
           hide="DLG_HideSupertokenDlg", registry=NO_HINT),
    Dialog("enrolment hint", "DLG_ShowSupertokenEnrolDlg", "Fingerprint enrolment information",
           {}, "dialog", ["OK", HINT_AGAIN], OK),
]
