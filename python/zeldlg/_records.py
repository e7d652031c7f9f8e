"""The records of zeldlg.h for ctypes. Made by make_records.py: not to be edited."""

# What stands here is named as in zeldlg.h, where each record and function is described.
# pylint: disable=invalid-name,missing-class-docstring,too-few-public-methods

from __future__ import annotations

from ctypes import (CFUNCTYPE, POINTER, Structure, c_char_p, c_int32, c_uint8, c_uint32, c_uint64,
                    c_void_p, c_wchar_p, sizeof)


class PinDialogRequest(Structure):
    _fields_ = [
        ("tokenLabel", c_char_p),
        ("minPinLength", c_uint32),
        ("maxPinLength", c_uint32),
        ("noFailure", c_uint8),
        ("finalTry", c_uint8),
        ("failedEarlier", c_uint8),
    ]


class PinDialogRequestEx(Structure):
    _fields_ = [
        ("tokenLabel", c_char_p),
        ("minPinLength", c_uint32),
        ("maxPinLength", c_uint32),
        ("failedEarlier", c_uint8),
        ("maxTries", c_uint32),
        ("triesLeft", c_uint32),
    ]


class PinBuffer(Structure):
    _fields_ = [
        ("pin", POINTER(c_uint8)),
        ("pinLength", c_uint32),
    ]


class PinChangeRequest(Structure):
    _fields_ = [
        ("tokenLabel", c_char_p),
        ("minLength", c_uint32),
        ("maxLength", c_uint32),
        ("noFailure", c_uint8),
        ("finalTry", c_uint8),
        ("changePuk", c_uint8),
    ]


class PinPolicyCharList(Structure):
    _fields_ = [
        ("length", c_uint32),
        ("reserved", c_uint32),
        ("characters", c_char_p),
    ]


class PinPolicyWire(Structure):
    _fields_ = [
        ("headerByte", c_uint8),
        ("enabledMask", c_uint8),
        ("p1Threshold", c_uint8),
        ("p1CaseSensitive", c_uint8),
        ("p1FullPinCheck", c_uint8),
        ("p2NbClass", c_uint8),
        ("p2PopMin", c_uint8),
        ("p2MinLen", c_uint8),
        ("p2ClassMask", c_uint8),
        ("p3Threshold", c_uint8),
        ("p3HistorySize", c_uint8),
        ("p3CaseInsensitive", c_uint8),
        ("p3LengthNormalize", c_uint8),
        ("p3StrictOnly", c_uint8),
        ("reserved1", c_uint8 * 2),
        ("charList", POINTER(PinPolicyCharList)),
        ("lastRefusedCharacter", c_uint8),
        ("p4IsWhiteList", c_uint8),
        ("reserved2", c_uint8 * 2),
        ("source", c_int32),
    ]


class PinPolicyDescriptor(Structure):
    _fields_ = [
        ("tag", c_uint32),
        ("size", c_uint32),
        ("block", POINTER(PinPolicyWire)),
    ]


class PolicedPinChangeRequest(Structure):
    _fields_ = [
        ("tokenLabel", c_char_p),
        ("minLength", c_uint32),
        ("maxLength", c_uint32),
        ("noFailure", c_uint8),
        ("finalTry", c_uint8),
        ("changePuk", c_uint8),
        ("initialisePin", c_uint8),
        ("triesLeft", c_uint32),
        ("policy", POINTER(PinPolicyDescriptor)),
        ("oldMinLength", c_uint32),
        ("oldMaxLength", c_uint32),
    ]


class PinChangeBuffers(Structure):
    _fields_ = [
        ("oldValue", POINTER(c_uint8)),
        ("oldLength", c_uint64),
        ("newValue", POINTER(c_uint8)),
        ("newLength", c_uint64),
    ]


class ByteBuffer(Structure):
    _fields_ = [
        ("data", POINTER(c_uint8)),
        ("length", c_uint64),
    ]


class ChallengeResponseRequest(Structure):
    _fields_ = [
        ("tokenLabel", c_char_p),
        ("challenge", POINTER(ByteBuffer)),
        ("serialNumber", c_char_p),
        ("responseLength", c_int32),
        ("minPinLength", c_int32),
        ("maxPinLength", c_int32),
        ("askNewPin", c_int32),
    ]


class ChallengeResponseBuffers(Structure):
    _fields_ = [
        ("response", POINTER(c_uint8)),
        ("responseLength", c_uint64),
        ("newPin", POINTER(c_uint8)),
        ("newPinLength", c_uint64),
    ]


class TokenChoiceEntry(Structure):
    _fields_ = [
        ("name", c_char_p),
        ("detail", c_char_p),
        ("identifier", c_uint64),
    ]


class TokenChoiceList(Structure):
    _fields_ = [
        ("entries", POINTER(TokenChoiceEntry)),
        ("count", c_uint32),
    ]


class DigitalIdTexts(Structure):
    _fields_ = [
        ("name", c_char_p),
        ("validFrom", c_char_p),
        ("validTo", c_char_p),
        ("value", c_void_p),
    ]


class DigitalIdChoice(Structure):
    _fields_ = [
        ("texts", POINTER(DigitalIdTexts)),
        ("count", c_uint32),
        ("defaultIndex", c_uint32),
        ("directory", c_char_p),
        ("presetAlwaysUse", c_uint32),
        ("autoSelect", c_uint32),
    ]


class DigitalIdResult(Structure):
    _fields_ = [
        ("value", c_uint64),
        ("alwaysUse", c_uint8),
    ]


class DLG_FunctionList(Structure):
    _fields_ = [
        ("version", c_uint64),
        ("ShowPinDialog", CFUNCTYPE(c_uint32, POINTER(PinDialogRequest), POINTER(PinBuffer))),
        ("ShowLockedDialog", CFUNCTYPE(c_uint32, c_char_p)),
        ("GetTranslationUTF8", CFUNCTYPE(c_uint32, c_char_p, c_char_p, POINTER(c_uint32))),
        ("GetFunctionList", CFUNCTYPE(c_void_p)),
        ("ShowTokenSelectionDialog", CFUNCTYPE(c_uint32, POINTER(TokenChoiceList), POINTER(c_uint64))),
        ("GetTranslationUTF16", CFUNCTYPE(c_uint32, c_wchar_p, c_wchar_p, POINTER(c_uint32))),
        ("GetLocale", CFUNCTYPE(c_uint32, c_wchar_p, POINTER(c_uint32))),
        ("ShowSupertokenAuthDlg", CFUNCTYPE(c_uint32, POINTER(c_uint64))),
        ("ShowSupertokenEnrolDlg", CFUNCTYPE(c_uint32, POINTER(c_uint64))),
        ("HideSupertokenDlg", CFUNCTYPE(c_uint32)),
        ("AuthFailRetryDialog", CFUNCTYPE(c_uint32)),
        ("EnrolFailRetryDialog", CFUNCTYPE(c_uint32)),
        ("UpdateSuperTokenEnrolDlg", CFUNCTYPE(c_uint32)),
        ("ShowSupertokenError", CFUNCTYPE(c_uint32, c_uint64)),
        ("ShowKeyGenerationProgressDialog", CFUNCTYPE(c_uint32)),
        ("HideKeyGenerationProgressDialog", CFUNCTYPE(c_uint32)),
        ("ShowPinDialogEx", CFUNCTYPE(c_uint32, POINTER(PinDialogRequestEx), POINTER(PinBuffer))),
        ("ShowLegalPinDialog", CFUNCTYPE(c_uint32, POINTER(PinDialogRequest), POINTER(PinBuffer))),
        ("ShowLegalPinDialogEx", CFUNCTYPE(c_uint32, POINTER(PinDialogRequestEx), POINTER(PinBuffer))),
        ("ShowConfirmDeleteCertificate", CFUNCTYPE(c_uint32, c_char_p, c_char_p, c_char_p, c_char_p, c_char_p, c_char_p)),
        ("ShowDigitalIDSelection", CFUNCTYPE(c_uint32, POINTER(DigitalIdChoice), POINTER(DigitalIdResult))),
        ("ShowUnlockTokenDialog", CFUNCTYPE(c_uint32)),
        ("AskChangeTransportPIN", CFUNCTYPE(c_uint32)),
        ("ShowSelectUnblockMethod", CFUNCTYPE(c_uint32, c_int32, POINTER(c_uint32), c_uint32, POINTER(c_uint32), POINTER(c_uint32))),
        ("ShowUnblockThroughPUK", CFUNCTYPE(c_uint32, POINTER(PinChangeRequest), POINTER(PinChangeBuffers))),
        ("ShowUnblockThroughCR", CFUNCTYPE(c_uint32, POINTER(ChallengeResponseRequest), POINTER(ChallengeResponseBuffers))),
        ("ShowChangeTransportPIN", CFUNCTYPE(c_uint32, POINTER(PinChangeRequest), POINTER(PinChangeBuffers))),
        ("ShowCRUnblockFailed", CFUNCTYPE(c_uint32)),
        ("ShowPUKIsLocked", CFUNCTYPE(c_uint32)),
        ("PinPadShowVerificationDialog", CFUNCTYPE(c_uint32, POINTER(c_void_p), c_uint8)),
        ("PinPadShowModificationDialog", CFUNCTYPE(c_uint32, POINTER(c_void_p), c_uint8)),
        ("PinPadHideDialog", CFUNCTYPE(None, c_void_p)),
        ("PinPadKeyboardInputNextPin", CFUNCTYPE(None, c_void_p)),
        ("PinPadKeyboardInputCancel", CFUNCTYPE(None, c_void_p)),
        ("PinPadKeyboardInputTimeout", CFUNCTYPE(None, c_void_p)),
        ("PinPadKeyboardInputAccept", CFUNCTYPE(None, c_void_p)),
        ("PinPadKeyboardInputAddChar", CFUNCTYPE(None, c_void_p)),
        ("PinPadKeyboardInputDelChar", CFUNCTYPE(None, c_void_p)),
        ("PinPadKeyboardInputClearChars", CFUNCTYPE(None, c_void_p)),
        ("PinPadKeyboardInputShouldAbort", CFUNCTYPE(c_uint32, c_void_p)),
        ("Finalize", CFUNCTYPE(None)),
        ("SetParameter", CFUNCTYPE(c_uint32, c_uint64, c_uint64)),
        ("GetParameter", CFUNCTYPE(c_uint32, c_uint64, c_uint64)),
        ("PinPadShowLegalVerificationDialog", CFUNCTYPE(c_uint32, POINTER(c_void_p), c_uint8)),
        ("PinPadShowNoPinVerificationDialog", CFUNCTYPE(c_uint32, POINTER(c_void_p), c_uint8)),
        ("PinPadShowLegalNoPinVerificationDialog", CFUNCTYPE(c_uint32, POINTER(c_void_p), c_uint8)),
        ("AskEarlyUnexpirePin", CFUNCTYPE(c_uint32, c_uint32)),
        ("ShowChangePinDialog", CFUNCTYPE(c_uint32, POINTER(PinChangeRequest), POINTER(PinChangeBuffers))),
        ("ShowChangePolicedPinDialog_func", CFUNCTYPE(c_uint32, POINTER(PolicedPinChangeRequest), POINTER(PinChangeBuffers))),
    ]


def _check(record: type[Structure], size: int, offsets: tuple[int, ...]) -> None:
    found = tuple(getattr(record, field[0]).offset for field in record._fields_)
    if (sizeof(record), found) != (size, offsets):
        raise ImportError(f"{record.__name__}: not laid out as libzeldlglib has it on this machine")


_check(PinDialogRequest, 24, (0, 8, 12, 16, 17, 18))
_check(PinDialogRequestEx, 32, (0, 8, 12, 16, 20, 24))
_check(PinBuffer, 16, (0, 8))
_check(PinChangeRequest, 24, (0, 8, 12, 16, 17, 18))
_check(PinPolicyCharList, 16, (0, 4, 8))
_check(PinPolicyWire, 32, (0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 16, 24, 25, 26, 28))
_check(PinPolicyDescriptor, 16, (0, 4, 8))
_check(PolicedPinChangeRequest, 40, (0, 8, 12, 16, 17, 18, 19, 20, 24, 32, 36))
_check(PinChangeBuffers, 32, (0, 8, 16, 24))
_check(ByteBuffer, 16, (0, 8))
_check(ChallengeResponseRequest, 40, (0, 8, 16, 24, 28, 32, 36))
_check(ChallengeResponseBuffers, 32, (0, 8, 16, 24))
_check(TokenChoiceEntry, 24, (0, 8, 16))
_check(TokenChoiceList, 16, (0, 8))
_check(DigitalIdTexts, 32, (0, 8, 16, 24))
_check(DigitalIdChoice, 32, (0, 8, 12, 16, 24, 28))
_check(DigitalIdResult, 16, (0, 8))
_check(DLG_FunctionList, 400, (0, 8, 16, 24, 32, 40, 48, 56, 64, 72, 80, 88, 96, 104, 112, 120, 128, 136, 144, 152, 160, 168, 176, 184, 192, 200, 208, 216, 224, 232, 240, 248, 256, 264, 272, 280, 288, 296, 304, 312, 320, 328, 336, 344, 352, 360, 368, 376, 384, 392))
