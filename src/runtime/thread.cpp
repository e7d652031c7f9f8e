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
    m_endedEvent->Reset();
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
    // Also when the thread is cancelled.
    struct TellEnd {
        CThread& thread;
        ~TellEnd() {
            thread.m_running = false;
            thread.m_endedEvent->Set();
        }
    } const tellEnd{self};
    self.m_nativeId = gettid();
    self.Run(self.m_argument);
    return nullptr;
}

void CThread::Abandon() {
    m_abandoned = true;
    m_running = false;
    m_endedEvent->Set();
}

bool CThread::Join() {
    if (!m_joinable) {
        return true;
    }
    platform::WaitForEvent(*m_endedEvent, platform::kNoTimeout);
    if (m_abandoned) {
        pthread_detach(m_handle);
        m_joinable = false;
    } else {
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
