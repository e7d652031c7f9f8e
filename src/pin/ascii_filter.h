// Keeps a PIN field to ASCII, however the text comes in.
#pragma once

#include <wx/textctrl.h>

namespace zeldlg {

/// `text` without the characters from U+0080 on.
wxString KeepAscii(const wxString& text);

/// Gives the field the ASCII filter for typed characters (a bell for each that is refused).
void SetAsciiFilter(wxTextCtrl& field);

/// Removes what a paste or an input method brought in past that filter, keeping the caret at its
/// place. Sends no event. @return Whether anything was removed.
bool RemoveNonAscii(wxTextCtrl& field);

}  // namespace zeldlg
