// The built-in demonstration: a PIN pad filled and emptied, then the PIN dialog.
#pragma once

namespace zeldlg::api {

/// Blocks for as long as its pauses last, which is hours: they are written for a unit that the
/// toolkit does not use (kept: it is meant to be watched and interrupted).
void RunDemonstration();

}  // namespace zeldlg::api
