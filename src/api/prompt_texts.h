// The texts of the questions and notices about a token. Composed on the host's thread; every
// piece is translated on its own.
#pragma once

#include <wx/string.h>

#include <cstdint>

#include "runtime/requests.h"

namespace zeldlg {

struct CertificateTexts {
    wxString applicationName;
    wxString tokenLabel;
    wxString issuedTo;
    wxString issuedBy;
    wxString validFrom;
    wxString validTo;
};

wxString ConfirmDeleteCertificateText(const CertificateTexts& certificate);
wxString UnlockTokenText();
wxString ChangeTransportPinText();
wxString EarlyUnexpirePinText(uint32_t days);
wxString UnblockFailedText();
wxString PukLockedText();

/// The text of a prompt, and the box that shows it. They throw std::logic_error for a text that is
/// null, and for a prompt that there is not.
wxString TextOf(const PromptRequest& prompt);
const BoxRequest& BoxOf(const PromptRequest& prompt);

}  // namespace zeldlg
