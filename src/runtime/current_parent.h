// The window that handlers use as parent of the dialogs they create.
#pragma once

class wxWindow;

namespace zeldlg {

/// Null when no dialog of the library is the parent of others. Used on the GUI thread only: a
/// handler changes it, and it is put back before the caller of its request returns. Points at a
/// window of the running toolkit only.
extern wxWindow* g_currentParent;

}  // namespace zeldlg
