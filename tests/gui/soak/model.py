"""The model: every export that the soak calls, with its rule."""

from .rules import (ANY, CANCELLED, BiometricErrorRule, BoxRule, CertificateRule,
                    ChallengeResponseRule, ChangeRule, DigitalIdRule, EffectRule, ExpiryRule,
                    LockedRule, NotificationRule, PadAbortRule, PadRule, PadShowRule, PinRule,
                    TextRule, TokenRule, UnblockMethodRule, translated, translated_wide)

NOT_SUPPORTED = 87
RETRY_SHOWN = 1       # of the three calls about the fingerprint token
LOCALE = "en_US"      # what the toolkit makes of the stage's locale, C.UTF-8


def nothing(world):
    pass


def end(world):
    world.end()


def show_progress(world):
    world.progress = True


def hide_progress(world):
    world.progress = False


def count_scan(world):
    if world.notification is not None:
        world.notification.scans += 1


def hide_notification(world):
    world.notification = None


def pad_order(carry_out):
    return PadRule(lambda world, name: carry_out(world.pads[name]))


CHANGING = 'Changing the PIN for "%s":'
PROMPTS = {
    "DLG_ShowUnlockTokenDialog":
        BoxRule("Question", "This token is locked, would you like to unlock it?", True),
    "DLG_AskChangeTransportPIN":
        BoxRule("Question", "This token still has a transport PIN.\nWould you like to change it?",
                True),
    "DLG_AskEarlyUnexpirePin":
        ExpiryRule("Question", "The PIN on this token is about to expire in %d days.\n"
                   "Would you like to change it now ?", True),
    "DLG_ShowConfirmDeleteCertificate": CertificateRule("Question", None, True),
    "DLG_ShowCRUnblockFailed":
        BoxRule("Error", "Off-line PIN unlock of your token failed!\n"
                "The response to the presented challenge was incorrect!\n\n"
                "Repeated unlock failures may permanently lock your token!"),
    "DLG_ShowPUKIsLocked": BoxRule("Error", "PUK locked!"),
    "DLG_ShowLockedDialog":
        LockedRule("Token locked", 'The token "%s" is locked.\n'
                   "Please use the token manager to unlock it,\n"
                   "or contact your system administrator.", result=0),
    "DLG_AuthFailRetryDialog":
        BoxRule("Authentication failed", "Authentication to the Lumora Bio Token failed!\n"
                "Would you like to try again?", True, RETRY_SHOWN),
    "DLG_EnrolFailRetryDialog":
        BoxRule("Enrolment failed", "Enrolment of (new) fingerprint(s) on the Lumora Bio Token "
                "failed!\nWould you like to try again?", True, RETRY_SHOWN),
    "DLG_ShowSupertokenError": BiometricErrorRule("Error", None, result=RETRY_SHOWN),
}
ENTRIES = {
    "DLG_ShowPinDialog": PinRule(),
    "DLG_ShowPinDialogEx": PinRule(counter=True),
    "DLG_ShowLegalPinDialog": PinRule("Sign"),
    "DLG_ShowLegalPinDialogEx": PinRule("Sign", counter=True),
    "DLG_ShowUnblockThroughPUK": ChangeRule("Change transport PIN", CHANGING),
    "DLG_ShowChangeTransportPIN": ChangeRule("Unlock PIN", 'Unlocking the PIN for "%s":'),
    "DLG_ShowChangePinDialog": ChangeRule("Change transport PIN", CHANGING),
    "DLG_ShowChangePolicedPinDialog_func": ChangeRule("Change transport PIN", CHANGING, True),
    "DLG_ShowUnblockThroughCR": ChallengeResponseRule(),
}
CHOICES = {
    "DLG_ShowTokenSelectionDialog": TokenRule(),
    "DLG_ShowDigitalIDSelection": DigitalIdRule(),
    "DLG_ShowSelectUnblockMethod": UnblockMethodRule(),
}
NOTIFICATIONS = {
    "DLG_ShowSupertokenAuthDlg": NotificationRule(enrols=False),
    "DLG_ShowSupertokenEnrolDlg": NotificationRule(enrols=True),
    "DLG_UpdateSuperTokenEnrolDlg": EffectRule(count_scan),
    "DLG_HideSupertokenDlg": EffectRule(hide_notification),
    "DLG_ShowKeyGenerationProgressDialog": EffectRule(show_progress),
    "DLG_HideKeyGenerationProgressDialog": EffectRule(hide_progress),
}
PAD_SHOWS = {
    "DLG_PinPadShowVerificationDialog": PadShowRule(),
    "DLG_PinPadShowModificationDialog": PadShowRule(verification=False),
    "DLG_PinPadShowLegalVerificationDialog": PadShowRule(legal=True),
    "DLG_PinPadShowNoPinVerificationDialog": PadShowRule(with_row=False),
    "DLG_PinPadShowLegalNoPinVerificationDialog": PadShowRule(legal=True, with_row=False),
}
PAD_ORDERS = {
    "DLG_PinPadHideDialog": PadRule(lambda world, name: world.pads.pop(name)),
    "DLG_PinPadKeyboardInputNextPin": pad_order(lambda pad: pad.next_pin()),
    "DLG_PinPadKeyboardInputCancel": pad_order(lambda pad: pad.show("Cancel Pressed")),
    "DLG_PinPadKeyboardInputTimeout": pad_order(lambda pad: pad.show("Timer Expired")),
    "DLG_PinPadKeyboardInputAccept": pad_order(lambda pad: pad.show("Ok Pressed")),
    "DLG_PinPadKeyboardInputAddChar": pad_order(lambda pad: pad.add()),
    "DLG_PinPadKeyboardInputDelChar": pad_order(lambda pad: pad.delete()),
    "DLG_PinPadKeyboardInputClearChars": pad_order(lambda pad: pad.clear()),
    "DLG_PinPadKeyboardInputShouldAbort": PadAbortRule(),
}
TEXTS = {
    "DLG_GetTranslationUTF8": TextRule("utf-8", 1, translated),
    "DLG_GetTranslationUTF16": TextRule("utf-32-le", 4, translated_wide),
    "DLG_GetLocale": TextRule("utf-32-le", 4, lambda a: LOCALE),
}
LIBRARY = {
    "DLG_GetFunctionList": EffectRule(nothing, ANY),
    "DLG_SetParameter": EffectRule(nothing, NOT_SUPPORTED),
    "DLG_GetParameter": EffectRule(nothing, NOT_SUPPORTED),
    "InitApp": EffectRule(nothing, ANY),
    "DLG_Finalize": EffectRule(end, None),
    "QuitApp": EffectRule(end, None),
}
# All exports but the built-in demonstration, whose pauses are minutes long.
EXPORTS = {**PROMPTS, **ENTRIES, **CHOICES, **NOTIFICATIONS, **PAD_SHOWS, **PAD_ORDERS, **TEXTS,
           **LIBRARY}
assert len(EXPORTS) == 51
