// The numbers that hosts, tokens and files know this library by. The compiler compares them with
// the code's own; what a number does is for other tests to see.
#include <gtest/gtest.h>
#include <zeldlg/zeldlg.h>

#include <string_view>

#include "platform/event.h"
#include "platform/result.h"
#include "policy/pin_policy.h"
#include "policy/policy_checker.h"
#include "registry/registry_error.h"
#include "registry/registry_store.h"
#include "registry/registry_value.h"
#include "runtime/own_runner.h"
#include "runtime/requests.h"
#include "runtime/wx_runner.h"

namespace zeldlg {

// Requests, which a trace names as the code does
#define ZELDLG_REQUEST(request, number)    \
    static_assert((request) == (number) && \
                  std::string_view((request).name) == std::string_view(#request).substr(1))
ZELDLG_REQUEST(kErrorBox, 0x1001);
ZELDLG_REQUEST(kInformationBox, 0x1002);
ZELDLG_REQUEST(kQuestionBox, 0x1003);
ZELDLG_REQUEST(kBiometricError, 0x1004);
ZELDLG_REQUEST(kAuthenticationRetry, 0x1005);
ZELDLG_REQUEST(kEnrolmentRetry, 0x1006);
ZELDLG_REQUEST(kTokenLocked, 0x1007);
ZELDLG_REQUEST(kShowAuthentication, 0x1101);
ZELDLG_REQUEST(kShowEnrolment, 0x1102);
ZELDLG_REQUEST(kUpdateEnrolment, 0x1103);
ZELDLG_REQUEST(kHideNotification, 0x1104);
ZELDLG_REQUEST(kSelectToken, 0x1201);
ZELDLG_REQUEST(kShowPin, 0x1301);
ZELDLG_REQUEST(kShowPinEx, 0x1302);
ZELDLG_REQUEST(kTranslateUtf8, 0x1401);
ZELDLG_REQUEST(kTranslateUtf16, 0x1402);
ZELDLG_REQUEST(kGetLocale, 0x1403);
ZELDLG_REQUEST(kEnrolmentHint, 0x1501);
ZELDLG_REQUEST(kShowKeyGeneration, 0x1601);
ZELDLG_REQUEST(kHideKeyGeneration, 0x1602);
ZELDLG_REQUEST(kShowLegalPin, 0x1701);
ZELDLG_REQUEST(kShowLegalPinEx, 0x1702);
ZELDLG_REQUEST(kSelectDigitalId, 0x1801);
ZELDLG_REQUEST(kSelectUnblockMethod, 0x1901);
ZELDLG_REQUEST(kUnblockThroughPuk, 0x1981);
ZELDLG_REQUEST(kChangeTransportPin, 0x1982);
ZELDLG_REQUEST(kChangePin, 0x1983);
ZELDLG_REQUEST(kChangePolicedPin, 0x1984);
ZELDLG_REQUEST(kPinPadShowVerification, 0x1991);
ZELDLG_REQUEST(kPinPadShowModification, 0x1992);
ZELDLG_REQUEST(kPinPadHide, 0x1993);
ZELDLG_REQUEST(kPinPadNextPin, 0x1994);
ZELDLG_REQUEST(kPinPadCancel, 0x1995);
ZELDLG_REQUEST(kPinPadTimeout, 0x1996);
ZELDLG_REQUEST(kPinPadAccept, 0x1997);
ZELDLG_REQUEST(kPinPadAddChar, 0x1998);
ZELDLG_REQUEST(kPinPadDelChar, 0x1999);
ZELDLG_REQUEST(kPinPadClearChars, 0x199a);
ZELDLG_REQUEST(kPinPadShouldAbort, 0x199b);
ZELDLG_REQUEST(kPinPadShowLegalVerification, 0x199c);
ZELDLG_REQUEST(kPinPadShowNoPinVerification, 0x199d);
ZELDLG_REQUEST(kPinPadShowLegalNoPinVerification, 0x199e);
ZELDLG_REQUEST(kUnblockThroughCr, 0x19f1);
ZELDLG_REQUEST(kPrompt, 0);
static_assert(kNotDelivered == -2);

// Statuses and parts of PIN policies
static_assert(kPolicyAccepted == 0x9000);
static_assert(kCharacterRefused == 0x6400);
static_assert(kDistanceTooSmall == 0x6440);
static_assert(kTooFewClasses == 0x6490);
static_assert(kPinTooShort == 0x64A0);
static_assert(kClassTooSmall == 0x64B0);
static_assert(kHistoryRefused == 0x64C0);
static_assert(kPolicyElementaryDistance == 1);
static_assert(kPolicyCharacterClassification == 2);
static_assert(kPolicyHistoryChecking == 4);
static_assert(kPolicyCharacterRestriction == 8);
static_assert(kClassLower == 1);
static_assert(kClassUpper == 2);
static_assert(kClassDigit == 4);
static_assert(kClassPunctuation == 8);
static_assert(kClassOther == 16);
static_assert(static_cast<int>(PolicySource::Card) == -4);
static_assert(static_cast<int>(PolicySource::Registry) == -3);
static_assert(static_cast<int>(PolicySource::Unknown) == -2);

// The settings' store
static_assert(registry::HKEY_CLASSES_ROOT == 0x80000000);
static_assert(registry::HKEY_CURRENT_USER == 0x80000001);
static_assert(registry::HKEY_LOCAL_MACHINE == 0x80000002);
static_assert(registry::kTypeString == 1);
static_assert(registry::kTypeBinary == 3);
static_assert(registry::kTypeNumber == 4);
static_assert(registry::kAccessReadValues == 0x04);
static_assert(registry::kAccessWriteValues == 0x08);
static_assert(registry::kAccessSubKeys == 0x10);
static_assert(registry::kAccessDefault == 0x11c);
static_assert(registry::kCreatedNewKey == 1);
static_assert(registry::kOpenedExistingKey == 2);
static_assert(registry::kSuccess == 0);
static_assert(registry::kNullPointer == 1);
static_assert(registry::kNotFound == 2);
static_assert(registry::kAccessDenied == 5);
static_assert(registry::kInvalidHandle == 6);
static_assert(registry::kNoMemory == 8);
static_assert(registry::kCorrupt == 1015);
static_assert(registry::kFileError == 1016);
static_assert(registry::kNotRegistry == 1017);

// The layer above the system
static_assert(platform::kSuccess == 0);
static_assert(platform::kFailure == 6);
static_assert(platform::kMissingArgument == 7);
static_assert(platform::kNoTimeout == 0xFFFFFFFF);
static_assert(platform::kWaitTimedOut == -2);
static_assert(platform::kWaitError == -1);

// Milliseconds
static_assert(OwnRunner::kStartWaitMs == 180);
static_assert(CWXRunner::kPollMs == 10);

// What exports return
static_assert(ZELDLG_OK == 0);
static_assert(ZELDLG_FAILED == 0x80003000);
static_assert(ZELDLG_CANCELLED == 0x80003001);
static_assert(ZELDLG_BUFFER_TOO_SMALL == 0x80003002);
static_assert(ZELDLG_NOT_SUPPORTED == 87);
static_assert(ZELDLG_FUNCTION_LIST_VERSION == 14);

}  // namespace zeldlg
