// The ways out of a dialog besides its buttons.
#pragma once

#include <wx/dialog.h>

namespace zeldlg {

/// The close box ends the dialog with wxID_CANCEL. For dialogs with a Cancel button: Escape presses
/// that. By itself the toolkit does the same, but keeps a list meanwhile that the process's exit
/// destroys before the GUI thread is stopped.
void CancelOnClose(wxDialog& dialog);

/// Escape and the close box end the dialog with wxID_CANCEL. By itself the toolkit presses OK for
/// both where that is the only button.
void CancelOnEscapeAndClose(wxDialog& dialog);

}  // namespace zeldlg
