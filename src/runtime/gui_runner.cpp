#include "runtime/gui_runner.h"

#include <unistd.h>

#include <atomic>
#include <chrono>
#include <mutex>
#include <stdexcept>
#include <utility>

#include "runtime/handlers/handlers.h"
#include "runtime/wx_toolkit.h"

using zeldlg::Life;
using zeldlg::platform::WaitForEvent;

namespace {

using State = Life::State;

constexpr uint32_t kLookMs = 1;

// Looks every millisecond until something holds. Stays first at the exit meanwhile: a start is one
// long call of the toolkit, in which the thread itself comes to nothing else.
// @return Whether it holds; false after the time-out.
template <typename Predicate>
bool AwaitWhileStarting(uint32_t timeoutMs, const Predicate& predicate) {
    using Clock = std::chrono::steady_clock;
    const auto end = Clock::now() + std::chrono::milliseconds(timeoutMs);
    while (!predicate(kLookMs)) {
        if (Clock::now() >= end) {
            return false;
        }
        zeldlg::GoFirstAtExit();
    }
    return true;
}

}  // namespace

GuiRunner::GuiRunner(Life& life, std::unique_ptr<zeldlg::Toolkit> toolkit,
                     std::span<const zeldlg::RequestHandler> handlers)
    : m_life(life),
      m_thread(std::make_unique<zeldlg::CWXRunner>(life, m_startedEvent.Get(), m_quitEvent.Get(),
                                                   std::move(toolkit), handlers)) {
    if (m_thread->Start(m_requestEvent.Get())) {
        AwaitWhileStarting(kStartWaitMs, [this](uint32_t milliseconds) {
            return WaitForEvent(*m_startedEvent, milliseconds) || !IsRunning();
        });
    }
}

GuiRunner::~GuiRunner() { Stop(); }

bool GuiRunner::Stop() {
    if (!IsRunning()) {
        return true;
    }
    const bool entered = AwaitWhileStarting(kLoaderWaitMs, [this](uint32_t milliseconds) {
        return m_life.Now() != State::Entering || WaitForEvent(*m_startedEvent, milliseconds);
    });
    if (!entered) {
        return false;
    }
    m_quitEvent->Set();
    if (!m_thread->Join()) {
        m_thread->Cancel();
    }
    return true;
}

bool GuiRunner::Send(zeldlg::CMessage& message) {
    if (!m_thread->Queue(&message)) {
        return false;
    }
    m_requestEvent->Set();
    const auto isPast = [&](State state) {
        return [this, state, &message](uint32_t milliseconds) {
            return m_life.Now() != state || message.IsDone(milliseconds);
        };
    };
    if (!AwaitWhileStarting(kLoaderWaitMs, isPast(State::Entering)) &&
        m_thread->TakeBack(&message)) {
        return false;
    }
    AwaitWhileStarting(zeldlg::platform::kNoTimeout, isPast(State::Starting));
    message.WaitDone();
    return true;
}

namespace zeldlg {

namespace {

// The process's runner. Never destroyed: host threads may still be calling while the process
// exits. The mutex guards the pointer, and with it creation and destruction; who sends a request
// holds a reference, so that a concurrent DestroyGuiRunner cannot pull it away.
struct ProcessRunner {
    std::mutex mutex;
    std::shared_ptr<GuiRunner> runner;
    // Who creates or destroys it. A signal handler that comes again on that thread, or the exit
    // that it asks for, must not wait for what it has interrupted.
    std::atomic<pthread_t> changing{};
};

ProcessRunner& Process() {
    static auto* const process = new ProcessRunner;
    return *process;
}

bool IsUsable() { return !ProcessLife().IsOver() && Process().changing != pthread_self(); }

class ChangingRunner {
public:
    ChangingRunner() { m_process.changing = pthread_self(); }
    ~ChangingRunner() { m_process.changing = pthread_t{}; }
    ChangingRunner(const ChangingRunner&) = delete;
    ChangingRunner& operator=(const ChangingRunner&) = delete;

private:
    ProcessRunner& m_process = Process();
    const std::lock_guard<std::mutex> m_lock{m_process.mutex};
};

}  // namespace

GuiRunner* GetGuiRunner() {
    if (!IsUsable()) {
        throw std::runtime_error("the toolkit cannot be used in this process any more");
    }
    const ChangingRunner changing;
    std::shared_ptr<GuiRunner>& runner = Process().runner;
    if (runner == nullptr) {
        runner = std::make_shared<GuiRunner>(ProcessLife(), std::make_unique<WxToolkit>(),
                                             HandlerChain());
    }
    return runner.get();
}

bool SendRequest(GuiRunner* runner, CMessage* message) {
    if (!IsUsable()) {
        return false;
    }
    ProcessRunner& process = Process();
    std::shared_ptr<GuiRunner> held;
    {
        const std::lock_guard lock(process.mutex);
        held = process.runner;
    }
    return held != nullptr && held.get() == runner && held->Send(*message);
}

void DestroyGuiRunner() {
    if (!IsUsable()) {
        return;
    }
    const ChangingRunner changing;
    std::shared_ptr<GuiRunner>& runner = Process().runner;
    GoFirstAtExit();
    // A thread that is lost, or is going to be parked, stays and uses it.
    if (runner != nullptr && runner->Stop() && ProcessLife().Now() == State::Down) {
        runner.reset();
    }
}

}  // namespace zeldlg
