// What the user is told about an error of the biometric token.
#pragma once

#include <wx/string.h>

#include <cstdint>

namespace zeldlg {

struct BiometricError {
    wxString text;  ///< Translated; with the question when there is one.
    bool retry;     ///< Whether the user is asked to try again.
};

/// @param code A status word (ISO/IEC 7816-4), or a code of the biometric token's own.
BiometricError DescribeBiometricError(uint64_t code);

}  // namespace zeldlg
