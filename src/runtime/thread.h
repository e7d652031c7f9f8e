// A thread with a body to override and a flag that says whether the body is running.
#pragma once

#include <pthread.h>
#include <sys/types.h>

#include <atomic>
#include <cstdint>

#include "platform/event.h"

namespace zeldlg {

class CThread {
public:
    CThread() = default;
    CThread(const CThread&) = delete;
    CThread& operator=(const CThread&) = delete;
    /// Cancels the thread if it is still running.
    virtual ~CThread();

    /// The thread's body; the argument is that of Start.
    virtual void Run(void* argument);

    /// @return Whether the thread was started; false also when it is running already.
    bool Start(void* argument);

    bool IsRunning() const { return m_running; }
    /// The kernel's id of the thread; 0 until it runs.
    pid_t NativeId() const { return m_nativeId; }

    /// Waits without a time limit until the thread has ended or was abandoned. @return Success.
    bool Join();
    bool Cancel();

protected:
    /// The thread itself: from now on it counts as ended, although it never will, and nothing of
    /// this object is its own any more.
    void Abandon();

private:
    static void* Enter(void* thread);

    pthread_t m_handle{};
    bool m_joinable = false;
    std::atomic<bool> m_abandoned{false};
    // Joining a thread that goes astray meanwhile would never end, so its end is waited for first.
    platform::EventHandle m_endedEvent = platform::EventHandle::Create();
    std::atomic<bool> m_running{false};
    std::atomic<pid_t> m_nativeId{0};
    void* m_argument = nullptr;
};

}  // namespace zeldlg
