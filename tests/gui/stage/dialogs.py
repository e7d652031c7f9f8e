"""Every dialog of the library: the list that each test goes through which looks at all of them."""

import dataclasses

from .host import CANCELLED, OK, policy
from .settings import registry

LABEL = "Identity card"
# Under the policy below it is in order; nothing that is shown has these letters in a row.
LETTERS = "zvpk"
IDS = "Multiple Digital IDs found; please select an appropriate Digital ID from the list below"
ALWAYS = "Always use this Digital ID (this dialog will not be displayed again)"
BALLS = ["Not met: PIN length between 4 and 8 bytes", "Not met: Minimum PIN length 4 bytes",
         "Met: Maximum PIN length 8 bytes", "Met: New PIN equal to confirmed new PIN"]
PAGE = "Not met: Length"  # the one of the group that Tab goes to
HINT_AGAIN = "Show this window during the next enrolment procedure"
NO_HINT = (("", "ShowEnrolmentHint", 0),)
POLICY = policy(b"0", enabled=15, p1_threshold=1, p2_min_length=4, p2_class_mask=31)


@dataclasses.dataclass(frozen=True)
class Dialog:
    name: str  # of the demo's command, where it has one for it
    export: str
    title: str  # in English
    arguments: dict
    role: str
    # What Tab goes through from the control that has the focus first, with nothing typed.
    order: list
    # Of the call: once Escape has closed the window, or of one that stays.
    result: int
    # Whether the user can close it.
    modal: bool = True
    # The export that ends what the call has begun, if there is one.
    hide: str = ""
    # What goes into the PIN fields and into the other one; Return then ends it with success.
    typed: tuple = ()
    answer: str = ""
    # (sub-key, value name, number) each.
    settings: tuple = ()
    # The key that brings the keyboard to what `order` begins with, where nothing has it at first.
    start: str = ""


def pin(name, export, **arguments):
    return Dialog(name, export, "Enter PIN", {"label": LABEL, **arguments}, "dialog",
                  ["Enter PIN", "Cancel"], CANCELLED, typed=(LETTERS,))


def change(name, export, title, old, kind="PIN", pages=(), **arguments):
    unlocks = title == "Unlock PIN"
    new = "PIN" if unlocks else kind
    balls = [BALLS[0].replace("PIN", kind), *(ball.replace("PIN", new) for ball in BALLS[1:])]
    fields = [f"Enter {old}", f"Enter new {new}", f"Confirm new {new}"]
    return Dialog(name, export, title, {"label": LABEL, "noFailure": 0, **arguments}, "dialog",
                  [*fields, *balls, *pages, "Explanation", "Cancel"], CANCELLED,
                  typed=(LETTERS, LETTERS, LETTERS))


def box(name, export, title, buttons, result, **arguments):
    return Dialog(name, export, title, arguments, "alert", buttons, result)


def stays(name, export, title, hide, order=(), result=OK, **more):
    return Dialog(name, export, title, more.pop("arguments", {}), "dialog", list(order), result,
                  False, hide, **more)


def pad(kind, abort):
    return stays(f"pad {kind}", f"DLG_PinPadShow{kind}Dialog", "PinPad", "DLG_PinPadHideDialog",
                 ["Abort"] if abort else [], 1, arguments={"allowAbort": abort}, start="Tab")


DIALOGS = [
    pin("pin", "DLG_ShowPinDialog", noFailure=0),
    pin("pin-ex", "DLG_ShowPinDialogEx", triesLeft=2),
    pin("legal-pin", "DLG_ShowLegalPinDialog", noFailure=0),
    pin("legal-pin-ex", "DLG_ShowLegalPinDialogEx", triesLeft=1),
    change("change-pin", "DLG_ShowChangePinDialog", "Change transport PIN", "transport PIN"),
    change("change-puk", "DLG_ShowChangePinDialog", "Change PUK", "old PUK", "PUK", changePuk=1),
    change("unblock-puk", "DLG_ShowUnblockThroughPUK", "Change transport PIN", "transport PIN"),
    change("change-transport-pin", "DLG_ShowChangeTransportPIN", "Unlock PIN", "PUK", "PUK"),
    change("change-policed-pin", "DLG_ShowChangePolicedPinDialog_func", "Change transport PIN",
           "transport PIN", pages=[PAGE], triesLeft=2, **POLICY),
    pad("Verification", 0),
    pad("Modification", 1),
    pad("LegalVerification", 1),
    pad("NoPinVerification", 1),
    pad("LegalNoPinVerification", 0),
    Dialog("unblock-method", "DLG_ShowSelectUnblockMethod", "Unlock PIN",
           {"pukOffered": 1, "code": [0, 1]}, "dialog",
           ["Unlock PIN using the PUK", "OK", "Cancel"], CANCELLED),
    Dialog("unblock-method, off-line", "DLG_ShowSelectUnblockMethod", "Unlock PIN",
           {"pukOffered": 0, "code": [0, 1]}, "dialog",
           ["Unlock PIN via off-line PIN unlock", "Unlocking algorithm", "OK", "Cancel"],
           CANCELLED),
    Dialog("unblock-cr", "DLG_ShowUnblockThroughCR", "Unlock PIN",
           {"label": LABEL, "serial": "4711-0815", "challenge": "0123456789abcdef"}, "dialog",
           ["Response", "Cancel", "Challenge"], CANCELLED),
    Dialog("unblock-cr, new PIN", "DLG_ShowUnblockThroughCR", "Unlock PIN",
           {"label": LABEL, "serial": "4711-0815", "challenge": "0123456789abcdef",
            "askNewPin": 1}, "dialog",
           ["Response", "Enter new PIN", "Confirm new PIN", "Cancel", "Challenge"], CANCELLED,
           typed=(LETTERS, LETTERS), answer="0011223344556677"),
    Dialog("select-token", "DLG_ShowTokenSelectionDialog", "Select a token",
           {"entry": [(LABEL, "Reader", 1), ("Badge", "Reader", 2)]}, "dialog",
           ["Please select a token", "OK"], CANCELLED),
    Dialog("select-id", "DLG_ShowDigitalIDSelection", "Select Digital ID",
           {"name": "Maria Santos", "count": 3, "directory": "corp.example"}, "dialog",
           [IDS, ALWAYS, "OK", "Cancel"], CANCELLED),
    box("locked", "DLG_ShowLockedDialog", "Token locked", ["OK"], OK, label=LABEL),
    box("confirm-delete", "DLG_ShowConfirmDeleteCertificate", "Question", ["Yes", "No"], CANCELLED,
        application="Mail", label=LABEL, issuedTo="Maria Santos",
        issuedBy="Example Certification Authority"),
    box("ask-unlock", "DLG_ShowUnlockTokenDialog", "Question", ["Yes", "No"], CANCELLED),
    box("ask-transport-pin", "DLG_AskChangeTransportPIN", "Question", ["Yes", "No"], CANCELLED),
    box("ask-expiry", "DLG_AskEarlyUnexpirePin", "Question", ["Yes", "No"], CANCELLED, number=3),
    box("cr-failed", "DLG_ShowCRUnblockFailed", "Error", ["OK"], CANCELLED),
    box("puk-locked", "DLG_ShowPUKIsLocked", "Error", ["OK"], CANCELLED),
    box("biometric-error", "DLG_ShowSupertokenError", "Error", ["Yes", "No"], 1, number=0x63C1),
    box("retry auth", "DLG_AuthFailRetryDialog", "Authentication failed", ["Yes", "No"], 1),
    box("retry enrol", "DLG_EnrolFailRetryDialog", "Enrolment failed", ["Yes", "No"], 1),
    stays("keygen", "DLG_ShowKeyGenerationProgressDialog", "Generating key-pair",
          "DLG_HideKeyGenerationProgressDialog"),
    stays("biometric-auth", "DLG_ShowSupertokenAuthDlg", "Lumora Bio Token",
          "DLG_HideSupertokenDlg"),
    stays("biometric-enrol", "DLG_ShowSupertokenEnrolDlg",
          "Lumora Bio Token - enrolling finger (scan 1)", "DLG_HideSupertokenDlg",
          settings=NO_HINT),
    # What it explains follows it.
    Dialog("enrolment-hint", "DLG_ShowSupertokenEnrolDlg", "Fingerprint enrolment information",
           {}, "dialog", ["OK", HINT_AGAIN], OK, hide="DLG_HideSupertokenDlg"),
]


def find_dialog(name):
    return next(dialog for dialog in DIALOGS if dialog.name == name)


def show_dialog(screen, host, dialog, title="", settings=None):
    """Shows a dialog with its settings, or with the text of others; its call and its window."""
    host.write_registry(registry(*dialog.settings) if settings is None else settings)
    call = host.call(dialog.export, **dialog.arguments)
    return call, screen.find_window(title or dialog.title, host)


def wait_ready(screen, dialog, window):
    """Waits until what `order` begins with has the keyboard, as far as anything is to have it."""
    if not dialog.order:
        return
    if dialog.start:
        screen.go_to(window)
        screen.x11.key(dialog.start)
    screen.wait_focused()


def remove_dialog(screen, host, dialog, call, window):
    """Takes a dialog from the screen, as its user or its host does; the result of its call."""
    if dialog.modal:
        screen.close_window(window)
    result = call.result()
    if dialog.hide:
        host.run(dialog.hide)
    screen.wait_gone(window)
    return result
