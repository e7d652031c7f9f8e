#include "platform/event.h"

#include <pthread.h>

#include <algorithm>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <new>
#include <span>
#include <utility>
#include <vector>

namespace zeldlg::platform {

namespace {

// Guards every event and every wait of the process: there are few, and nothing is done under it
// but looking through short lists, so that one lock costs less than the order of many.
std::mutex g_mutex;

enum class Release {
    None,
    BySet,    // the setting of an auto-reset event, which goes back when the wait does not use it
    ByPulse,  // lost when the wait ends without using it
};

// A wait that sleeps: registered with its events as long as it lives, under the mutex at both ends.
class WaitCall {
public:
    WaitCall(std::span<Waiter> waiters, bool waitsForAll);
    ~WaitCall();
    WaitCall(const WaitCall&) = delete;
    WaitCall& operator=(const WaitCall&) = delete;

    bool WaitsForAll() const { return m_waitsForAll; }
    void WakeUp() { m_wakeUp.notify_one(); }
    // @return Whether it was woken, maybe without a reason, before the deadline (null: none).
    bool Sleep(std::unique_lock<std::mutex>& lock, const timespec* deadline);

private:
    std::span<Waiter> m_waiters;
    bool m_waitsForAll;
    std::condition_variable m_wakeUp;
};

}  // namespace

// One event of one waiting call. All of it is used under the mutex.
struct Waiter {
    explicit Waiter(ManualResetEvent& waitedFor) : event(waitedFor) {}

    ManualResetEvent& event;
    WaitCall* call = nullptr;
    Release released = Release::None;
    Waiter* next = nullptr;

    // The link in the event's list that points to `waiter`, or with null the last one.
    Waiter** LinkTo(const Waiter* waiter) const {
        Waiter** link = &event.m_firstWaiter;
        while (*link != waiter) {
            link = &(*link)->next;
        }
        return link;
    }

    void Register(WaitCall& newCall) {
        call = &newCall;
        *LinkTo(nullptr) = this;
    }

    void Unregister() {
        *LinkTo(this) = next;
        if (released == Release::BySet) {
            event.Offer();
        }
    }

    void WakeUp(Release release) {
        released = release;
        call->WakeUp();
    }

    bool IsSatisfied() const { return released != Release::None || event.m_signalled; }

    void UseUp() {
        if (event.m_manualReset) {
            return;
        }
        if (released == Release::None) {
            event.m_signalled = false;
        }
        released = Release::None;
    }
};

// An auto-reset setting belongs either to one waiter or to the event, never to both: otherwise a
// second waiter could take it from the event before the released one has run. Waits for several
// events at once only get a setting when all of theirs are there, so they are woken to look.
void ManualResetEvent::Offer() {
    for (Waiter* waiter = m_firstWaiter; waiter != nullptr && !m_manualReset;
         waiter = waiter->next) {
        if (!waiter->call->WaitsForAll() && waiter->released == Release::None) {
            waiter->WakeUp(Release::BySet);
            return;
        }
    }
    m_signalled = true;
    for (Waiter* waiter = m_firstWaiter; waiter != nullptr; waiter = waiter->next) {
        waiter->call->WakeUp();
    }
}

void ManualResetEvent::Set() {
    const std::lock_guard lock(g_mutex);
    Offer();
}

void ManualResetEvent::Pulse() {
    const std::lock_guard lock(g_mutex);
    m_signalled = false;
    for (Waiter* waiter = m_firstWaiter; waiter != nullptr; waiter = waiter->next) {
        if (waiter->released == Release::None) {
            waiter->WakeUp(Release::ByPulse);
            if (!m_manualReset) {
                return;
            }
        }
    }
}

void ManualResetEvent::Reset() {
    const std::lock_guard lock(g_mutex);
    m_signalled = false;
    for (Waiter* waiter = m_firstWaiter; waiter != nullptr; waiter = waiter->next) {
        waiter->released = Release::None;
    }
}

namespace {

WaitCall::WaitCall(std::span<Waiter> waiters, bool waitsForAll)
    : m_waiters(waiters), m_waitsForAll(waitsForAll) {
    for (Waiter& waiter : m_waiters) {
        waiter.Register(*this);
    }
}

WaitCall::~WaitCall() {
    for (Waiter& waiter : m_waiters) {
        waiter.Unregister();
    }
}

// Uses up what satisfies the wait: the first event in order, or all of them or none.
// @return What did, the first one for all; null while nothing does.
const Waiter* Take(std::span<Waiter> waiters, bool waitAll) {
    const auto isSatisfied = [](const Waiter& waiter) { return waiter.IsSatisfied(); };
    if (waitAll) {
        if (!std::all_of(waiters.begin(), waiters.end(), isSatisfied)) {
            return nullptr;
        }
        std::for_each(waiters.begin(), waiters.end(), [](Waiter& waiter) { waiter.UseUp(); });
        return &waiters.front();
    }
    const auto first = std::find_if(waiters.begin(), waiters.end(), isSatisfied);
    if (first == waiters.end()) {
        return nullptr;
    }
    first->UseUp();
    return &*first;
}

bool WaitCall::Sleep(std::unique_lock<std::mutex>& lock, const timespec* deadline) {
    if (deadline == nullptr) {
        m_wakeUp.wait(lock);
        return true;
    }
    return pthread_cond_clockwait(m_wakeUp.native_handle(), lock.mutex()->native_handle(),
                                  CLOCK_MONOTONIC, deadline) == 0;
}

// Looks, sleeps and looks again until satisfied or out of time. @return As Take.
const Waiter* Wait(std::span<Waiter> waiters, bool waitAll, uint32_t timeoutMs) {
    std::unique_lock lock(g_mutex);
    const Waiter* taken = Take(waiters, waitAll);
    if (taken != nullptr || timeoutMs == 0) {
        return taken;
    }
    timespec deadline{};
    clock_gettime(CLOCK_MONOTONIC, &deadline);
    deadline = DeadlineAfter(deadline, timeoutMs);
    WaitCall call(waiters, waitAll);
    for (bool inTime = true; taken == nullptr && inTime; taken = Take(waiters, waitAll)) {
        inTime = call.Sleep(lock, timeoutMs == kNoTimeout ? nullptr : &deadline);
    }
    return taken;
}

}  // namespace

int32_t CreateEvent(EventKind kind, ManualResetEvent** event) {
    if (event == nullptr) {
        return kMissingArgument;
    }
    *event = new (std::nothrow) ManualResetEvent(kind);
    return *event != nullptr ? kSuccess : kFailure;
}

void DestroyEvent(ManualResetEvent* event) {
    const std::unique_ptr<ManualResetEvent> destroyed(event);
}

timespec DeadlineAfter(timespec now, uint32_t timeoutMs) {
    now.tv_sec += timeoutMs / 1000;
    now.tv_nsec += static_cast<long>(timeoutMs % 1000) * 1'000'000;
    if (now.tv_nsec > 999'999'999) {
        now.tv_nsec -= 1'000'000'000;
        ++now.tv_sec;
    }
    return now;
}

int32_t WaitForEvents(uint32_t count, ManualResetEvent* const* events, bool waitAll,
                      uint32_t timeoutMs) {
    if (count == 0 || events == nullptr ||
        std::find(events, events + count, nullptr) != events + count) {
        return kWaitError;
    }
    std::vector<Waiter> waiters;
    waiters.reserve(count);
    for (uint32_t i = 0; i < count; ++i) {
        // An event that is named twice counts once, under its first index.
        if (std::find(events, events + i, events[i]) == events + i) {
            waiters.emplace_back(*events[i]);
        }
    }
    const Waiter* const taken = Wait(waiters, waitAll, timeoutMs);
    return taken == nullptr
               ? kWaitTimedOut
               : static_cast<int32_t>(std::find(events, events + count, &taken->event) - events);
}

bool WaitForEvent(ManualResetEvent& event, uint32_t timeoutMs) {
    Waiter waiter(event);  // in the frame: an idle program asks for no memory
    return Wait({&waiter, 1}, false, timeoutMs) != nullptr;
}

EventHandle EventHandle::Create(EventKind kind) {
    return {std::make_unique<ManualResetEvent>(kind).release(), true};
}

EventHandle::EventHandle(EventHandle&& other) noexcept
    : m_event(other.m_event), m_owns(std::exchange(other.m_owns, false)) {}

EventHandle::~EventHandle() {
    if (m_owns) {
        DestroyEvent(m_event);
    }
}

}  // namespace zeldlg::platform
