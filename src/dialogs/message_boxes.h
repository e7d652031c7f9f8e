// The message boxes: each fixes title, icon and buttons, waits for the user, and leaves nothing
// behind. GUI thread only.
#pragma once

#include <wx/window.h>

#include <cstdint>

#include "widgets/button.h"

namespace zeldlg {

// `parent` may be null. Texts are shown as they are; the caller has translated them.

/// No request shows this one; kept, and tested.
void ShowWarningBox(wxWindow* parent, const wxString& text);
void ShowErrorBox(wxWindow* parent, const wxString& text);
void ShowInformationBox(wxWindow* parent, const wxString& text);
/// @return Whether the answer was Yes.
bool ShowQuestionBox(wxWindow* parent, const wxString& text,
                     Emphasis emphasis = Emphasis::Suggested);

void ShowTokenLockedBox(wxWindow* parent, const wxString& label);

/// No request shows this one; kept, and tested.
/// @param code A return value of a token (numbered as in PKCS #11).
void ShowTokenErrorBox(wxWindow* parent, uint64_t code);
wxString TokenErrorText(uint64_t code);

/// No request shows this one; kept, and tested.
/// @param code Of unknown origin.
void ShowUnknownErrorBox(wxWindow* parent, uint64_t code);
wxString UnknownErrorText(uint64_t code);

}  // namespace zeldlg
