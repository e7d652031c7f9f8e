// Codes of the requests that travel from a host thread to the GUI thread.
#pragma once

#include <cstdint>

namespace zeldlg {

enum RequestCode : uint64_t {
    kErrorBox = 0x1001,
    kInformationBox = 0x1002,
    kQuestionBox = 0x1003,
    kBiometricError = 0x1004,
    kAuthenticationRetry = 0x1005,
    kEnrolmentRetry = 0x1006,
    kTokenLocked = 0x1007,

    kShowAuthentication = 0x1101,
    kShowEnrolment = 0x1102,
    kUpdateEnrolment = 0x1103,
    kHideNotification = 0x1104,

    kSelectToken = 0x1201,

    kShowPin = 0x1301,
    kShowPinEx = 0x1302,

    kTranslateUtf8 = 0x1401,
    kTranslateUtf16 = 0x1402,
    kGetLocale = 0x1403,

    kEnrolmentHint = 0x1501,

    kShowKeyGeneration = 0x1601,
    kHideKeyGeneration = 0x1602,

    kShowLegalPin = 0x1701,
    kShowLegalPinEx = 0x1702,

    kSelectDigitalId = 0x1801,

    kSelectUnblockMethod = 0x1901,

    kUnblockThroughPuk = 0x1981,
    kChangeTransportPin = 0x1982,
    kChangePin = 0x1983,
    kChangePolicedPin = 0x1984,

    kPinPadShowVerification = 0x1991,
    kPinPadShowModification = 0x1992,
    kPinPadHide = 0x1993,
    kPinPadNextPin = 0x1994,
    kPinPadCancel = 0x1995,
    kPinPadTimeout = 0x1996,
    kPinPadAccept = 0x1997,
    kPinPadAddChar = 0x1998,
    kPinPadDelChar = 0x1999,
    kPinPadClearChars = 0x199a,
    kPinPadShouldAbort = 0x199b,
    kPinPadShowLegalVerification = 0x199c,
    kPinPadShowNoPinVerification = 0x199d,
    kPinPadShowLegalNoPinVerification = 0x199e,

    kUnblockThroughCr = 0x19f1,
};

}  // namespace zeldlg
