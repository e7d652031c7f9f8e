#include "biometric/retry_boxes.h"

#include "biometric/errors.h"
#include "dialogs/message_boxes.h"
#include "dialogs/message_dialog.h"
#include "registry/settings.h"
#include "resources/texts.h"

namespace zeldlg {

namespace {

// An error that is a question: the icon of the one, the buttons of the other.
constexpr long kRetryQuestion = wxICON_ERROR | wxICON_QUESTION;
static_assert(kRetryQuestion == 0x600);

bool AskForRetry(wxWindow* parent, const char* caption, const wxString& text) {
    return CMessageDialog(parent, Translate(caption), text, kRetryQuestion,
                          GetAutomaticRetryTimeout())
               .ShowModal() == wxID_OK;
}

}  // namespace

bool AskAuthenticationRetry(wxWindow* parent) {
    return AskForRetry(parent, CATALOGUE_KEY("Authentication failed"),
                       Translate("Authentication to the Lumora Bio Token failed!\n"
                                 "Would you like to try again?"));
}

bool AskEnrolmentRetry(wxWindow* parent) {
    return AskForRetry(parent, CATALOGUE_KEY("Enrolment failed"),
                       Translate("Enrolment of (new) fingerprint(s) on the Lumora Bio Token "
                                 "failed!\nWould you like to try again?"));
}

bool ShowBiometricError(wxWindow* parent, uint64_t code) {
    const BiometricError error = DescribeBiometricError(code);
    if (error.retry) {
        return AskForRetry(parent, CATALOGUE_KEY("Error"), error.text);
    }
    ShowErrorBox(parent, error.text);
    return false;
}

int64_t GetAutomaticRetryTimeout() {
    static const int64_t seconds = registry::ReadDword(
        L"SOFTWARE\\Corvenna\\Tessaly\\2.0\\Biometrics", L"Automatic retry timeout", 0);
    return seconds;
}

}  // namespace zeldlg
