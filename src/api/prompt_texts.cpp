#include "api/prompt_texts.h"

#include <array>

#include "resources/texts.h"

namespace zeldlg {

wxString ConfirmDeleteCertificateText(const CertificateTexts& certificate) {
    const auto validity = [](const char* caption, const wxString& date) {
        return Translate(caption) + FormatHostTexts(": %s\n", date);
    };
    return FormatHostTexts("The application %s is trying to delete a certificate:",
                           certificate.applicationName) +
           Translate("\n\n") + FormatHostTexts("Issued To: %s\n", certificate.issuedTo) +
           FormatHostTexts("Issued By: %s\n", certificate.issuedBy) + Translate("\n") +
           validity(CATALOGUE_KEY("Valid From"), certificate.validFrom) +
           validity(CATALOGUE_KEY("Valid To"), certificate.validTo) + Translate("\n") +
           FormatHostTexts("From the token with label \"%s\"", certificate.tokenLabel) +
           Translate("\n\n") + Translate("Do you wish to allow this?");
}

wxString UnlockTokenText() {
    return Translate("This token is locked, would you like to unlock it?");
}

wxString ChangeTransportPinText() {
    return Translate("This token still has a transport PIN.\nWould you like to change it?");
}

wxString EarlyUnexpirePinText(uint32_t days) {
    return FormatTranslated(
        "The PIN on this token is about to expire in %d "
        "days.\nWould you like to change it now ?",
        ShownNumber(days));
}

wxString UnblockFailedText() {
    return Translate("Off-line PIN unlock of your token failed!") + Translate("\n") +
           Translate("The response to the presented challenge was incorrect!") + Translate("\n\n") +
           Translate("Repeated unlock failures may permanently lock your token!");
}

wxString PukLockedText() { return Translate("PUK locked!"); }

namespace {

wxString CertificateTextOf(const PromptRequest& prompt) {
    const char* const* const texts = prompt.texts;
    return ConfirmDeleteCertificateText({.applicationName = HostTextOrLocale(texts[0]),
                                         .tokenLabel = HostTextOrLocale(texts[1]),
                                         .issuedTo = HostText(texts[2]),
                                         .issuedBy = HostText(texts[3]),
                                         .validFrom = HostText(texts[4]),
                                         .validTo = HostText(texts[5])});
}

struct Kind {
    BoxRequest box;
    wxString (*compose)(const PromptRequest& prompt);
};

template <wxString (*kCompose)()>
wxString Fixed(const PromptRequest&) {
    return kCompose();
}

// In the order of PromptRequest::Kind.
constexpr std::array<Kind, 6> kKinds{{
    {kQuestionBox, CertificateTextOf},
    {kQuestionBox, Fixed<UnlockTokenText>},
    {kQuestionBox, Fixed<ChangeTransportPinText>},
    {kQuestionBox, [](const PromptRequest& prompt) { return EarlyUnexpirePinText(prompt.days); }},
    {kErrorBox, Fixed<UnblockFailedText>},
    {kErrorBox, Fixed<PukLockedText>},
}};

}  // namespace

wxString TextOf(const PromptRequest& prompt) { return kKinds.at(prompt.kind).compose(prompt); }

const BoxRequest& BoxOf(const PromptRequest& prompt) { return kKinds.at(prompt.kind).box; }

}  // namespace zeldlg
