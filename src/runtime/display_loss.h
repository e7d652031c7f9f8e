// What becomes of the GUI thread when the X server goes away. By itself the toolkit ends the whole
// process then, and the host with it.
#pragma once

#include <functional>

namespace zeldlg {

/// Leaves the GUI thread for good: must not return.
using LeaveToolkit = std::function<void()>;

/// GUI thread, once the toolkit is up: calls `leave` on this thread when its connection to the
/// display breaks. On Wayland, and for connections of other threads, nothing changes.
void WatchDisplay(LeaveToolkit leave);

/// GUI thread, once the toolkit has ended.
void ForgetDisplay();

}  // namespace zeldlg
