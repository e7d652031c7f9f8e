// The ways out of a dialog that has no Cancel button.
#pragma once

#include <wx/dialog.h>

namespace zeldlg {

/// Escape and the close box end the dialog with wxID_CANCEL. By itself the toolkit presses OK for
/// both where that is the only button.
void CancelOnEscapeAndClose(wxDialog& dialog);

}  // namespace zeldlg
