#include "biometric/notification_texts.h"

#include <algorithm>

#include "resources/catalogue_key.h"
#include "resources/texts.h"

namespace zeldlg {

namespace {

const char* MainText(NotificationMode mode) {
    if (mode == NotificationMode::Authentication) {
        return CATALOGUE_KEY(
            "Authentication to the Lumora Bio Token is required for this operation.\n\n"
            "Please wait for the yellow light to start flashing. Then swipe your finger over the "
            "sensor of the Lumora Bio Token.\n\n"
            "This dialog will automatically disappear once the authentication has completed.");
    }
    return CATALOGUE_KEY(
        "You can now enrol a new fingerprint on the Lumora Bio Token.\n\n"
        "Please wait for the yellow light to start flashing. Then swipe your finger over the "
        "sensor of the Lumora Bio Token.\n\n"
        "This dialog will automatically disappear once the enrolment has completed.");
}

}  // namespace

NotificationTexts TextsOf(NotificationMode mode) {
    const wxString text = Translate(MainText(mode));
    const size_t end = std::min(text.find("\n\n"), text.length());
    return {.headline = text.Left(end),
            .explanation = text.Mid(end),
            .instruction =
                Translate(CATALOGUE_KEY("Please swipe your finger over the Lumora Bio Token sensor "
                                        "when the yellow light starts flashing"))};
}

}  // namespace zeldlg
