// Native threads with result codes instead of exceptions.
#pragma once

#include <pthread.h>
#include <unistd.h>

#include <cstdint>

#include "platform/result.h"

namespace zeldlg::platform {

using ThreadEntry = void* (*)(void* argument);

/// Starts a thread with default attributes. `thread` is written only on kSuccess.
/// @return kSuccess, kFailure, or kMissingArgument for a null entry or output.
int32_t CreateThread(ThreadEntry entry, void* argument, pthread_t* thread);

/// Waits until the thread has ended. @return kSuccess, also when there is no such thread any
/// more, else kFailure.
int32_t JoinThread(pthread_t thread);

/// Cancels the thread and joins it. @return As JoinThread.
int32_t CancelThread(pthread_t thread);

/// Whether this process was forked from the one with that id, directly or not; 0 is none.
inline bool IsForkedFrom(pid_t process) { return process != 0 && process != getpid(); }

/// Sleeps the calling thread.
void SleepMilliseconds(uint32_t milliseconds);

}  // namespace zeldlg::platform
