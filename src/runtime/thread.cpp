#include "runtime/thread.h"

#include "platform/thread.h"

namespace zeldlg {

using State = Life::State;

CThread::~CThread() {
    if (IsRunning()) {
        Cancel();
    } else {
        Join();
    }
}

void CThread::Run(void*) {}

bool CThread::Start(void* argument) {
    // A thread that has ended by itself is still to be joined. The state changes before there is a
    // thread: its body may return before its creation does.
    if (IsRunning() || !Join() || !m_life.Change(State::Down, State::Entering)) {
        return false;
    }
    m_argument = argument;
    m_joinable = platform::CreateThread(Enter, this, &m_handle) == platform::kSuccess;
    if (!m_joinable) {
        m_life.Change(State::Entering, State::Down);
    }
    return m_joinable;
}

void* CThread::Enter(void* thread) {
    CThread& self = *static_cast<CThread*>(thread);
    // Also when the thread is cancelled.
    struct TellEnd {
        Life& life;
        ~TellEnd() { life.Advance(State::Down); }
    } const tellEnd{self.m_life};
    self.m_life.Enter();
    self.Run(self.m_argument);
    return nullptr;
}

bool CThread::Join() {
    if (!m_joinable) {
        return true;
    }
    // Joining a thread that is lost meanwhile would never end, so its end is waited for first.
    m_life.AwaitEnd();
    if (m_life.Now() == State::Lost) {
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
