#include "runtime/thread.h"

#include <csignal>
#include <initializer_list>

#include "platform/thread.h"

namespace zeldlg {

using State = Life::State;

namespace {

// While it lives, a thread that is made takes none of the process's signals but those that it
// causes itself: the host's handlers are for the host's threads.
class SignalsLeftToOthers {
public:
    SignalsLeftToOthers() {
        sigset_t blocked;
        sigfillset(&blocked);
        for (const int own : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGTRAP, SIGABRT, SIGSYS}) {
            sigdelset(&blocked, own);
        }
        pthread_sigmask(SIG_BLOCK, &blocked, &m_before);
    }
    ~SignalsLeftToOthers() { pthread_sigmask(SIG_SETMASK, &m_before, nullptr); }
    SignalsLeftToOthers(const SignalsLeftToOthers&) = delete;
    SignalsLeftToOthers& operator=(const SignalsLeftToOthers&) = delete;

private:
    sigset_t m_before{};
};

}  // namespace

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
    const SignalsLeftToOthers signalsLeftToOthers;
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
