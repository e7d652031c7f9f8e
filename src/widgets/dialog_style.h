// Window styles that several dialogs share.
#pragma once

#include <wx/dialog.h>

namespace zeldlg {

/// The style for a dialog whose parent may be null. The toolkit would pick any window that is
/// shown then: a modeless one of the library would drag the dialog along when the host removes it.
inline long StyleForParent(const wxWindow* parent, long style = wxDEFAULT_DIALOG_STYLE) {
    return parent != nullptr ? style : style | wxDIALOG_NO_PARENT;
}

}  // namespace zeldlg
