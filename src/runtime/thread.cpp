#include "runtime/thread.h"

#include <unistd.h>

#include "platform/thread.h"

namespace zeldlg {

CThread::~CThread() {
    if (m_running) {
        Cancel();
    } else {
        Join();
    }
}

void CThread::Run(void*) {}

bool CThread::Start(void* argument) {
    if (m_running) {
        return false;
    }
    Join();  // a thread that has ended by itself
    m_argument = argument;
    // Set before the thread exists: its body may return before the creation does.
    m_running = true;
    m_joinable = platform::CreateThread(Enter, this, &m_handle) == platform::kSuccess;
    if (!m_joinable) {
        m_running = false;
    }
    return m_joinable;
}

void* CThread::Enter(void* thread) {
    CThread& self = *static_cast<CThread*>(thread);
    // Also clears the flag when the thread is cancelled.
    struct ClearRunning {
        std::atomic<bool>& running;
        ~ClearRunning() { running = false; }
    } const clearRunning{self.m_running};
    self.m_nativeId = gettid();
    self.Run(self.m_argument);
    return nullptr;
}

bool CThread::Join() {
    if (m_joinable) {
        m_joinable = platform::JoinThread(m_handle) != platform::kSuccess;
    }
    return !m_joinable;
}

bool CThread::Cancel() {
    if (m_joinable) {
        m_joinable = platform::CancelThread(m_handle) != platform::kSuccess;
    }
    return !m_joinable;
}

}  // namespace zeldlg
