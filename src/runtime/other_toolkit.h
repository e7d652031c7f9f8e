// Toolkits of the host's that ours cannot share a process with, started or not.
#pragma once

namespace zeldlg {

/// Whether GTK 2 or GTK 4 is loaded in this process, whose types have the names of GTK 3's; or
/// something in it other than this library is linked with wxWidgets, of which there can be one
/// instance. A host that starts its own after ours would crash: what counts is that it could.
bool HasOtherToolkit();

}  // namespace zeldlg
