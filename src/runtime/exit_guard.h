// Keeps the GUI thread from running into a process that is being torn down: a host may exit
// without finalising, even while a dialog is open.
#pragma once

#include <functional>

namespace zeldlg {

/// GUI thread, once the toolkit is up: from now on the exit of the process parks this thread
/// before the toolkit's own static objects are destroyed.
/// @param park Called on the GUI thread just before: what runs later in the exit must not wait for
///        it.
void ParkGuiThreadAtExit(std::function<void()> park);

/// GUI thread, before the toolkit is stopped: there is nothing to park any more.
void ForgetGuiThreadAtExit();

}  // namespace zeldlg
