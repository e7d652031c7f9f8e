// A thread with a body to override, whose life others can look at and wait for.
#pragma once

#include <pthread.h>

#include "runtime/life.h"

namespace zeldlg {

class CThread {
public:
    /// @param life The caller's; outlives the thread.
    explicit CThread(Life& life) : m_life(life) {}
    CThread(const CThread&) = delete;
    CThread& operator=(const CThread&) = delete;
    /// Cancels the thread if it is still running. Not for one that is lost or parked: that stays in
    /// its body, and uses this object.
    virtual ~CThread();

    /// The thread's body; the argument is that of Start.
    virtual void Run(void* argument);

    /// @return Whether the thread was started; false also when it is running already, or lost.
    bool Start(void* argument);

    bool IsRunning() const { return m_life.IsRunning(); }
    /// The kernel's id of the thread; 0 until it runs.
    pid_t NativeId() const { return m_life.Thread(); }

    /// Waits without a time limit until the thread has ended or is lost. @return Success.
    bool Join();
    bool Cancel();

protected:
    Life& m_life;

private:
    static void* Enter(void* thread);

    pthread_t m_handle{};
    bool m_joinable = false;
    void* m_argument = nullptr;
};

}  // namespace zeldlg
