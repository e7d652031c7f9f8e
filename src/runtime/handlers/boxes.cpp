#include "biometric/retry_boxes.h"
#include "dialogs/message_boxes.h"
#include "resources/texts.h"
#include "runtime/handlers/handlers.h"

namespace zeldlg {

namespace {

// kept: no answer is written back. A host learns that a box was shown, not what the user chose.

template <void (*kShowBox)(wxWindow*, const wxString&)>
void ShowText(const wchar_t* text, bool*) {
    kShowBox(g_currentParent, text != nullptr ? text : L"");
}

// The request has a text and no more: the one question that a certificate hangs on ends so.
void ShowQuestion(wxWindow* parent, const wxString& text) {
    const bool deletes = text.EndsWith(Translate("Do you wish to allow this?"));
    ShowQuestionBox(parent, text, deletes ? Emphasis::Destructive : Emphasis::Suggested);
}

template <bool (*kAsk)(wxWindow*)>
void AskAgain(bool*) {
    kAsk(g_currentParent);
}

void ShowError(const uint64_t* code, bool*) { ShowBiometricError(g_currentParent, *code); }

void ShowLocked(const char* label) { ShowTokenLockedBox(g_currentParent, HostText(label)); }

}  // namespace

bool HandleMessageBox(CMessage* message) {
    return Serve(kErrorBox, *message, ShowText<ShowErrorBox>) ||
           Serve(kInformationBox, *message, ShowText<ShowInformationBox>) ||
           Serve(kQuestionBox, *message, ShowText<ShowQuestion>) ||
           Serve(kBiometricError, *message, ShowError) ||
           Serve(kAuthenticationRetry, *message, AskAgain<AskAuthenticationRetry>) ||
           Serve(kEnrolmentRetry, *message, AskAgain<AskEnrolmentRetry>) ||
           Serve(kTokenLocked, *message, ShowLocked);
}

}  // namespace zeldlg
