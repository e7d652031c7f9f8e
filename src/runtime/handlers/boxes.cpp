#include "biometric/retry_boxes.h"
#include "dialogs/message_boxes.h"
#include "resources/texts.h"
#include "runtime/handlers/handlers.h"
#include "runtime/request_codes.h"

namespace zeldlg {

namespace {

wxString TextOf(const CMessage& message) {
    const auto* const text = message.Param1As<const wchar_t>();
    return text != nullptr ? text : L"";
}

}  // namespace

// kept: no answer is written back. A host learns that a box was shown, not what the user chose.
bool HandleMessageBox(CMessage* message) {
    switch (message->Code()) {
        case kErrorBox:
            ShowErrorBox(g_currentParent, TextOf(*message));
            return true;
        case kInformationBox:
            ShowInformationBox(g_currentParent, TextOf(*message));
            return true;
        case kQuestionBox:
            ShowQuestionBox(g_currentParent, TextOf(*message));
            return true;
        case kBiometricError:
            ShowBiometricError(g_currentParent, *message->Param1As<const uint64_t>());
            return true;
        case kAuthenticationRetry:
            AskAuthenticationRetry(g_currentParent);
            return true;
        case kEnrolmentRetry:
            AskEnrolmentRetry(g_currentParent);
            return true;
        case kTokenLocked:
            ShowTokenLockedBox(g_currentParent, HostText(message->Param1As<const char>()));
            return true;
        default:
            return false;
    }
}

}  // namespace zeldlg
