// Keeps the GUI thread from running into a process that is being torn down: a host may exit
// without finalising, even while a dialog is open or the toolkit is starting.
#pragma once

#include <functional>

namespace zeldlg {

/// Any thread, before the GUI thread is made: a thread that comes to its start after the exit has
/// begun is parked there.
void WatchExit();

// The others are called on the GUI thread. Once the process exits it does not come back from them:
// it is parked, before the toolkit's own static objects are destroyed.

/// Before the toolkit is started: from now on the exit waits for the end of that. (What libraries
/// that are loaded in the course of it clean up goes first all the same.)
/// @param park Called on the GUI thread just before it is parked: what runs later in the exit must
///        not wait for it.
void AwaitGuiThreadAtExit(std::function<void()> park);
/// Before the toolkit is stopped.
void AwaitGuiThreadAtExit();

/// Once the toolkit is up: from now on the exit parks the thread wherever it is in the toolkit.
void ParkGuiThreadAtExit();

/// Once nothing of the toolkit is used any more: there is nothing to wait for, nor to park.
void ForgetGuiThreadAtExit();

}  // namespace zeldlg
