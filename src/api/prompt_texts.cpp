#include "api/prompt_texts.h"

#include "resources/catalogue_key.h"
#include "resources/texts.h"

namespace zeldlg {

wxString ConfirmDeleteCertificateText(const CertificateTexts& certificate) {
    const auto validity = [](const char* caption, const wxString& date) {
        return Translate(caption) + FormatHostTexts(CATALOGUE_KEY(": %s\n"), date);
    };
    return FormatHostTexts(CATALOGUE_KEY("The application %s is trying to delete a certificate:"),
                           certificate.applicationName) +
           Translate(CATALOGUE_KEY("\n\n")) +
           FormatHostTexts(CATALOGUE_KEY("Issued To: %s\n"), certificate.issuedTo) +
           FormatHostTexts(CATALOGUE_KEY("Issued By: %s\n"), certificate.issuedBy) +
           Translate(CATALOGUE_KEY("\n")) +
           validity(CATALOGUE_KEY("Valid From"), certificate.validFrom) +
           validity(CATALOGUE_KEY("Valid To"), certificate.validTo) +
           Translate(CATALOGUE_KEY("\n")) +
           FormatHostTexts(CATALOGUE_KEY("From the token with label \"%s\""),
                           certificate.tokenLabel) +
           Translate(CATALOGUE_KEY("\n\n")) +
           Translate(CATALOGUE_KEY("Do you wish to allow this?"));
}

wxString UnlockTokenText() {
    return Translate(CATALOGUE_KEY("This token is locked, would you like to unlock it?"));
}

wxString ChangeTransportPinText() {
    return Translate(
        CATALOGUE_KEY("This token still has a transport PIN.\nWould you like to change it?"));
}

wxString EarlyUnexpirePinText(uint32_t days) {
    return FormatTranslated(CATALOGUE_KEY("The PIN on this token is about to expire in %d "
                                          "days.\nWould you like to change it now ?"),
                            ShownNumber(days));
}

wxString UnblockFailedText() {
    return Translate(CATALOGUE_KEY("Off-line PIN unlock of your token failed!")) +
           Translate(CATALOGUE_KEY("\n")) +
           Translate(CATALOGUE_KEY("The response to the presented challenge was incorrect!")) +
           Translate(CATALOGUE_KEY("\n\n")) +
           Translate(CATALOGUE_KEY("Repeated unlock failures may permanently lock your token!"));
}

wxString PukLockedText() { return Translate(CATALOGUE_KEY("PUK locked!")); }

}  // namespace zeldlg
