// What becomes of the GUI thread when the X server or the Wayland compositor goes away. By itself
// the toolkit ends the whole process then, and the host with it.
#pragma once

#include <functional>

namespace zeldlg {

/// GUI thread, before the toolkit is started: calls `leave` on this thread, which must not return,
/// when its connection to the display breaks, until the thread's life in the toolkit is over. For
/// connections of other threads nothing changes.
/// @param leave The caller's, for as long as that.
void WatchDisplay(const std::function<void()>& leave);

/// The thread that runs the main context, before the toolkit writes to its display or reads from
/// it: nothing tells of a compositor that is gone, and the toolkit finds out and ends the process.
void LookAfterDisplay();

}  // namespace zeldlg
