// The texts of the questions and notices about a token. Composed on the host's thread; every
// piece is translated on its own.
#pragma once

#include <wx/string.h>

#include <cstdint>

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

}  // namespace zeldlg
