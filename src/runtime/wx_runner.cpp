#include "runtime/wx_runner.h"

#include <cxxabi.h>
#include <pthread.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <exception>
#include <stdexcept>
#include <utility>

#include "runtime/current_parent.h"
#include "runtime/exit_guard.h"

namespace zeldlg {

wxWindow* g_currentParent = nullptr;

using platform::ManualResetEvent;
using platform::WaitForEvent;

namespace {

constexpr uint32_t kPollMs = 10;

// The host's signals are for the host's threads. With SIGPIPE blocked a lost display connection
// is a failed write here, whatever the host does about that signal.
void BlockAsynchronousSignals() {
    sigset_t blocked;
    sigfillset(&blocked);
    for (const int synchronous : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGTRAP, SIGABRT, SIGSYS}) {
        sigdelset(&blocked, synchronous);
    }
    pthread_sigmask(SIG_BLOCK, &blocked, nullptr);
}

class InToolkit {
public:
    explicit InToolkit(Toolkit& toolkit) : m_toolkit(toolkit) {
        if (!toolkit.Enter()) {
            throw std::runtime_error("the toolkit cannot be used now");
        }
    }
    ~InToolkit() { m_toolkit.Leave(); }
    InToolkit(const InToolkit&) = delete;
    InToolkit& operator=(const InToolkit&) = delete;

private:
    Toolkit& m_toolkit;
};

// A handler's change of the current parent lasts until its own request returns.
class KeepCurrentParent {
public:
    KeepCurrentParent() = default;
    ~KeepCurrentParent() { g_currentParent = m_parent; }
    KeepCurrentParent(const KeepCurrentParent&) = delete;
    KeepCurrentParent& operator=(const KeepCurrentParent&) = delete;

private:
    wxWindow* const m_parent = g_currentParent;
};

}  // namespace

CWXRunner::CWXRunner(ManualResetEvent* startedEvent, ManualResetEvent* quitEvent,
                     std::unique_ptr<Toolkit> toolkit)
    : m_startedEvent(startedEvent), m_quitEvent(quitEvent), m_toolkit(std::move(toolkit)) {}

void CWXRunner::Run(void* argument) {
    BlockAsynchronousSignals();
    if (!StartToolkit()) {
        return;
    }
    m_startedEvent->Set();
    Loop(*static_cast<ManualResetEvent*>(argument));
    RefuseAll();
    m_toolkit->Stop();
}

// What goes wrong in the start must not end the process.
bool CWXRunner::StartToolkit() {
    try {
        return m_toolkit->Start([this] { LeaveToolkit(); }, [this] { PrepareToPark(); });
    } catch (const abi::__forced_unwind&) {
        throw;
    } catch (...) {
        ForgetGuiThreadAtExit();
        return false;
    }
}

bool CWXRunner::Queue(CMessage* message) {
    const std::lock_guard lock(m_queueMutex);
    if (!m_closed) {
        m_queue.push_back(message);
    }
    return !m_closed;
}

// The event stays set while there is more to take. It is reset under the lock: what is queued
// afterwards sets it again.
CMessage* CWXRunner::TakeFront(ManualResetEvent& requestEvent) {
    const std::lock_guard lock(m_queueMutex);
    CMessage* front = nullptr;
    if (!m_queue.empty()) {
        front = m_queue.front();
        m_queue.pop_front();
    }
    if (m_queue.empty()) {
        requestEvent.Reset();
    }
    return front;
}

// A request that was queued just before the loop ended must not leave its caller waiting.
void CWXRunner::RefuseAll() {
    const std::lock_guard lock(m_queueMutex);
    m_closed = true;
    for (CMessage* const message : m_queue) {
        message->Complete(std::make_exception_ptr(std::runtime_error("the GUI thread ends")));
    }
    m_queue.clear();
}

// In the middle of a request as a rule, deep inside the toolkit: its frames cannot be unwound and
// its locks may be taken. So the thread stays where it is, and nobody waits for it.
void CWXRunner::LeaveToolkit() {
    ForgetGuiThreadAtExit();
    RefuseAll();
    CMessage* const message = std::exchange(m_served, nullptr);
    Abandon();  // this object may be gone from here on
    if (message != nullptr) {
        message->Complete(std::make_exception_ptr(std::runtime_error("the display is lost")));
    }
    for (;;) {
        pause();
    }
}

// The process exits. A host may finalise, or call, later in its exit: it must not wait for a thread
// that stays where it is. The callers that are waiting already go on waiting until the process is
// gone: woken now they would run while the host's own objects are destroyed.
void CWXRunner::PrepareToPark() {
    {
        const std::lock_guard lock(m_queueMutex);
        m_closed = true;
    }
    Abandon();  // this object may be gone from here on
}

void CWXRunner::Loop(ManualResetEvent& requestEvent) {
    for (bool busy = false, quit = false; !quit;) {
        // While the toolkit has work there is no pause: at one event every ten milliseconds a
        // window would take most of a second to paint itself.
        const bool requested = WaitForEvent(requestEvent, busy ? 0 : kPollMs);
        quit = WaitForEvent(*m_quitEvent, 0);
        if (requested && !quit) {
            ServeFront(requestEvent);
            // Hosts tend to ask for several things in a row.
            platform::SpinForEvent(requestEvent);
            busy = true;
        } else {
            busy = m_toolkit->Iterate();
        }
    }
}

void CWXRunner::ServeFront(ManualResetEvent& requestEvent) {
    CMessage* const message = TakeFront(requestEvent);
    if (message != nullptr) {
        Dispatch(*message);
    }
}

// A request that no handler takes is completed with its reply untouched.
void CWXRunner::Dispatch(CMessage& message) {
    std::exception_ptr error;
    m_served = &message;
    try {
        const InToolkit inToolkit(*m_toolkit);
        const KeepCurrentParent keepCurrentParent;
        static_cast<void>(
            std::any_of(m_handlers.begin(), m_handlers.end(),
                        [&message](RequestHandler handler) { return handler(&message); }));
    } catch (const abi::__forced_unwind&) {
        throw;  // the thread is being cancelled
    } catch (...) {
        error = std::current_exception();
    }
    m_served = nullptr;
    message.Complete(std::move(error));
}

}  // namespace zeldlg
