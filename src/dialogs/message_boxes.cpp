#include "dialogs/message_boxes.h"

#include "dialogs/biometric_error.h"
#include "dialogs/common/window_ptr.h"
#include "dialogs/message_dialog.h"
#include "dialogs/token_error.h"
#include "registry/settings.h"
#include "resources/catalogue_key.h"
#include "resources/texts.h"

namespace zeldlg {

namespace {

// An error that is a question: the icon of the one, the buttons of the other.
constexpr long kRetryQuestion = wxICON_ERROR | wxICON_QUESTION;
static_assert(kRetryQuestion == 0x600);

bool ShowBox(wxWindow* parent, const char* caption, const wxString& text, long style,
             int64_t countDownSeconds = 0) {
    const auto box =
        MakeWindow<CMessageDialog>(parent, Translate(caption), text, style, countDownSeconds);
    return box->ShowModal() == wxID_OK;
}

bool AskForRetry(wxWindow* parent, const char* caption, const wxString& text) {
    return ShowBox(parent, caption, text, kRetryQuestion, GetAutomaticRetryTimeout());
}

}  // namespace

void ShowWarningBox(wxWindow* parent, const wxString& text) {
    ShowBox(parent, CATALOGUE_KEY("Warning"), text, wxICON_WARNING);
}

void ShowErrorBox(wxWindow* parent, const wxString& text) {
    ShowBox(parent, CATALOGUE_KEY("Error"), text, wxICON_ERROR);
}

void ShowInformationBox(wxWindow* parent, const wxString& text) {
    ShowBox(parent, CATALOGUE_KEY("Information"), text, wxICON_INFORMATION);
}

bool ShowQuestionBox(wxWindow* parent, const wxString& text) {
    return ShowBox(parent, CATALOGUE_KEY("Question"), text, wxICON_QUESTION);
}

bool AskAuthenticationRetry(wxWindow* parent) {
    return AskForRetry(parent, CATALOGUE_KEY("Authentication failed"),
                       Translate(CATALOGUE_KEY("Authentication to the Lumora Bio Token failed!\n"
                                               "Would you like to try again?")));
}

bool AskEnrolmentRetry(wxWindow* parent) {
    return AskForRetry(
        parent, CATALOGUE_KEY("Enrolment failed"),
        Translate(CATALOGUE_KEY("Enrolment of (new) fingerprint(s) on the Lumora Bio Token "
                                "failed!\nWould you like to try again?")));
}

void ShowTokenLockedBox(wxWindow* parent, const wxString& label) {
    ShowBox(parent, CATALOGUE_KEY("Token locked"),
            FormatHostTexts(CATALOGUE_KEY("The token \"%s\" is locked.\n"
                                          "Please use the token manager to unlock it,\n"
                                          "or contact your system administrator."),
                            label),
            wxICON_ERROR);
}

bool ShowBiometricError(wxWindow* parent, uint64_t code) {
    const BiometricError error = DescribeBiometricError(code);
    if (error.retry) {
        return AskForRetry(parent, CATALOGUE_KEY("Error"), error.text);
    }
    ShowErrorBox(parent, error.text);
    return false;
}

void ShowTokenErrorBox(wxWindow* parent, uint64_t code) {
    ShowErrorBox(parent, TokenErrorText(code));
}

void ShowUnknownErrorBox(wxWindow* parent, uint64_t code) {
    ShowErrorBox(parent, UnknownErrorText(code));
}

int64_t GetAutomaticRetryTimeout() {
    static const int64_t seconds = registry::ReadDword(
        L"SOFTWARE\\Corvenna\\Tessaly\\2.0\\Biometrics", L"Automatic retry timeout", 0);
    return seconds;
}

}  // namespace zeldlg
