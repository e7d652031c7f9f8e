// The questions whether the fingerprint token shall be tried again. GUI thread only.
#pragma once

#include <wx/window.h>

#include <cstdint>

namespace zeldlg {

// `parent` may be null.

/// @return Whether the user wants to try again.
bool AskAuthenticationRetry(wxWindow* parent);
bool AskEnrolmentRetry(wxWindow* parent);

/// An error of the biometric token, as a question where another try makes sense.
/// @return Whether the user wants to try again.
bool ShowBiometricError(wxWindow* parent, uint64_t code);

/// Seconds that retry questions count down; 0 for no count-down. Read from the settings once in
/// the life of the process.
int64_t GetAutomaticRetryTimeout();

}  // namespace zeldlg
