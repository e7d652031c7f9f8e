#include "runtime/wx_runner.h"

#include <cxxabi.h>
#include <dlfcn.h>
#include <pthread.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <exception>
#include <stdexcept>
#include <utility>

#include "platform/scope_exit.h"

namespace zeldlg {

wxWindow* g_currentParent = nullptr;

using platform::ManualResetEvent;
using platform::WaitForEvent;
using Clock = std::chrono::steady_clock;
using State = Life::State;

namespace {

// Comes back once no other thread loads a library. The toolkit's start loads some: while a
// constructor of a library waits for it, it would wait for that constructor.
void PassLoader() {
    if (void* const program = dlopen(nullptr, RTLD_NOLOAD | RTLD_LAZY); program != nullptr) {
        dlclose(program);
    }
}

}  // namespace

CWXRunner::CWXRunner(Life& life, ManualResetEvent* startedEvent, ManualResetEvent* quitEvent,
                     std::unique_ptr<Toolkit> toolkit, std::span<const RequestHandler> handlers)
    : CThread(life),
      m_startedEvent(startedEvent),
      m_quitEvent(quitEvent),
      m_toolkit(std::move(toolkit)),
      m_handlers(handlers.begin(), handlers.end()) {}

void CWXRunner::Run(void* argument) {
    PassLoader();
    m_life.Advance(State::Starting);
    const std::function<void()> leave = [this] { LeaveToolkit(); };
    if (!StartToolkit(leave)) {
        Close();
        return;
    }
    m_life.Advance(State::Up);
    m_startedEvent->Set();
    Loop(*static_cast<ManualResetEvent*>(argument));
    m_life.Advance(State::Ending);
    RefuseAll();
    m_toolkit->Stop();
}

// What goes wrong in the start must not end the process.
bool CWXRunner::StartToolkit(const std::function<void()>& leave) {
    try {
        return m_toolkit->Start(leave);
    } catch (const abi::__forced_unwind&) {
        throw;
    } catch (...) {
        return false;
    }
}

bool CWXRunner::Queue(CMessage* message) {
    const std::lock_guard lock(m_queueMutex);
    const bool open = !m_closed && m_life.TakesRequests();
    if (open) {
        m_queue.push_back(message);
    }
    return open;
}

bool CWXRunner::TakeBack(CMessage* message) {
    const std::lock_guard lock(m_queueMutex);
    return std::erase(m_queue, message) != 0;
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

// The state may soon be that of another runner's thread, and whoever was about to queue here would
// wait for it in vain.
void CWXRunner::Close() {
    const std::lock_guard lock(m_queueMutex);
    m_closed = true;
}

// A request that was queued just before the state changed must not leave its caller waiting.
void CWXRunner::RefuseAll() {
    Close();
    const std::lock_guard lock(m_queueMutex);
    for (CMessage* const message : m_queue) {
        message->Complete(std::make_exception_ptr(std::runtime_error("the GUI thread ends")));
    }
    m_queue.clear();
}

// In the middle of a request as a rule, deep inside the toolkit: its frames cannot be unwound and
// its locks may be taken. So the thread stays where it is, and nobody waits for it.
void CWXRunner::LeaveToolkit() {
    m_life.Advance(State::Lost);
    RefuseAll();
    if (CMessage* const message = std::exchange(m_served, nullptr); message != nullptr) {
        message->Complete(std::make_exception_ptr(std::runtime_error("the display is lost")));
    }
    for (;;) {
        pause();
    }
}

// When the windows have had their turn is when an iteration found nothing to do. Ten milliseconds
// after that, requests and iterations take turns: the toolkit hands out one event at a time, and a
// host that asks without a pause would keep a press of a button from the window for seconds.
void CWXRunner::Loop(ManualResetEvent& requestEvent) {
    auto served = Clock::now();  // the windows, until there was no more to do
    bool iterated = false;
    for (bool busy = false, quit = false; !quit;) {
        // While the toolkit has work there is no pause: at one event every ten milliseconds a
        // window would take most of a second to paint itself.
        const bool requested = WaitForEvent(requestEvent, busy ? 0 : kPollMs);
        quit = WaitForEvent(*m_quitEvent, 0);
        m_life.ParkAtExit();
        const bool due = !iterated && Clock::now() - served > std::chrono::milliseconds(kPollMs);
        iterated = !requested || quit || due;
        if (iterated) {
            busy = m_toolkit->Iterate();
            served = busy ? served : Clock::now();
        } else {
            // Hosts tend to ask for several things in a row: the next one is waited for first.
            ServeFront(requestEvent);
        }
        if (busy || !iterated) {
            StayFirstAtExit();
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
        if (!m_toolkit->Enter()) {
            throw ToolkitTaken();
        }
        const platform::ScopeExit leave([this] { m_toolkit->Leave(); });
        // A handler's change of it lasts until its own request returns.
        const platform::ScopeExit keep([parent = g_currentParent] { g_currentParent = parent; });
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
