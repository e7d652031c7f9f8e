// The window that handlers use as parent of the dialogs they create.
#pragma once

class wxWindow;

namespace zeldlg {

/// Null when no dialog of the library is the parent of others. Written by a handler on the GUI
/// thread, and put back by the requesting host thread once its request is over: one side always
/// waits for the other, so there is no lock. Points at a window of the running toolkit only.
extern wxWindow* g_currentParent;

}  // namespace zeldlg
