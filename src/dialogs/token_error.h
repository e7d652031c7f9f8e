// What the user is told about a return value of a token (numbered as in PKCS #11).
#pragma once

#include <wx/string.h>

#include <cstdint>

namespace zeldlg {

wxString TokenErrorText(uint64_t code);

/// For a code of unknown origin.
wxString UnknownErrorText(uint64_t code);

}  // namespace zeldlg
