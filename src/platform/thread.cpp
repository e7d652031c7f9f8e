#include "platform/thread.h"

#include <cerrno>
#include <chrono>
#include <thread>

namespace zeldlg::platform {

namespace {

int32_t ToResult(int error) { return error == 0 || error == ESRCH ? kSuccess : kFailure; }

}  // namespace

int32_t CreateThread(ThreadEntry entry, void* argument, pthread_t* thread) {
    if (entry == nullptr || thread == nullptr) {
        return kMissingArgument;
    }
    return pthread_create(thread, nullptr, entry, argument) == 0 ? kSuccess : kFailure;
}

int32_t JoinThread(pthread_t thread) { return ToResult(pthread_join(thread, nullptr)); }

int32_t CancelThread(pthread_t thread) {
    const int error = pthread_cancel(thread);
    if (error != 0 && error != ESRCH) {
        return kFailure;
    }
    // A thread that has ended by itself is still there to be joined.
    return JoinThread(thread);
}

void SleepMilliseconds(uint32_t milliseconds) {
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

}  // namespace zeldlg::platform
