#include "runtime/own_runner.h"

#include <chrono>
#include <utility>

namespace zeldlg {

using platform::WaitForEvent;

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
        GoFirstAtExit();
    }
    return true;
}

}  // namespace

OwnRunner::OwnRunner(Life& life, std::unique_ptr<Toolkit> toolkit,
                     std::span<const RequestHandler> handlers)
    : m_life(life),
      m_thread(std::make_unique<CWXRunner>(life, m_startedEvent.Get(), m_quitEvent.Get(),
                                           std::move(toolkit), handlers)) {
    if (m_thread->Start(m_requestEvent.Get())) {
        AwaitWhileStarting(kStartWaitMs, [this](uint32_t milliseconds) {
            return WaitForEvent(*m_startedEvent, milliseconds) || !IsRunning();
        });
    }
}

OwnRunner::~OwnRunner() { Stop(); }

template <typename Predicate>
bool OwnRunner::AwaitLoader(const Predicate& predicate) const {
    AwaitWhileStarting(platform::kNoTimeout, [&](uint32_t milliseconds) {
        return m_life.Thread() != 0 || predicate(milliseconds);
    });
    return AwaitWhileStarting(kLoaderWaitMs, predicate);
}

bool OwnRunner::Stop() {
    if (!IsRunning()) {
        return true;
    }
    const bool entered = AwaitLoader([this](uint32_t milliseconds) {
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

bool OwnRunner::Send(CMessage& message) {
    if (!m_thread->Queue(&message)) {
        return false;
    }
    m_requestEvent->Set();
    const auto isPast = [&](State state) {
        return [this, state, &message](uint32_t milliseconds) {
            return m_life.Now() != state || message.IsDone(milliseconds);
        };
    };
    if (!AwaitLoader(isPast(State::Entering)) && m_thread->TakeBack(&message)) {
        return false;
    }
    AwaitWhileStarting(platform::kNoTimeout, isPast(State::Starting));
    message.WaitDone();
    return true;
}

}  // namespace zeldlg
