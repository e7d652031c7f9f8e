// The message boxes: each fixes title, icon and buttons, waits for the user, and leaves nothing
// behind. GUI thread only.
#pragma once

#include <wx/window.h>

#include <cstdint>

namespace zeldlg {

// `parent` may be null. Texts are shown as they are; the caller has translated them.

void ShowWarningBox(wxWindow* parent, const wxString& text);
void ShowErrorBox(wxWindow* parent, const wxString& text);
void ShowInformationBox(wxWindow* parent, const wxString& text);
/// @return Whether the answer was Yes.
bool ShowQuestionBox(wxWindow* parent, const wxString& text);

/// @return Whether the user wants to try again.
bool AskAuthenticationRetry(wxWindow* parent);
bool AskEnrolmentRetry(wxWindow* parent);

void ShowTokenLockedBox(wxWindow* parent, const wxString& label);

/// An error of the biometric token, as a question where another try makes sense.
/// @return Whether the user wants to try again.
bool ShowBiometricError(wxWindow* parent, uint64_t code);

/// @param code A return value of a token (numbered as in PKCS #11).
void ShowTokenErrorBox(wxWindow* parent, uint64_t code);
void ShowUnknownErrorBox(wxWindow* parent, uint64_t code);

/// Seconds that retry questions count down; 0 for no count-down. Read from the settings once in
/// the life of the process.
int64_t GetAutomaticRetryTimeout();

}  // namespace zeldlg
