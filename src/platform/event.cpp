#include "platform/event.h"

#include <sched.h>
#include <semaphore.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <functional>
#include <mutex>
#include <new>
#include <utility>
#include <vector>

namespace zeldlg::platform {

namespace {

enum class Release {
    None,
    BySet,    // the setting goes back to the event when the wait ends without using it
    ByPulse,  // lost when the wait ends without using it
};

// What a waiting call sleeps on. A condition variable would take its mutex as if others waited for
// it too, and so ask the kernel, after each poll of an idle program, to wake nobody.
class Sleeper {
public:
    explicit Sleeper(bool waitsForAll) : m_waitsForAll(waitsForAll) { sem_init(&m_wakeUp, 0, 0); }
    ~Sleeper() { sem_destroy(&m_wakeUp); }
    Sleeper(const Sleeper&) = delete;
    Sleeper& operator=(const Sleeper&) = delete;

    bool WaitsForAll() const { return m_waitsForAll; }

    // Ends one sleep, of now or later: a wake-up without a reason only means one more look. The
    // caller holds the mutex of a list that the sleeper is on, so that it lives until this returns.
    void WakeUp() { sem_post(&m_wakeUp); }

    // @return Whether something happened before the deadline on the monotonic clock (null: none).
    bool Sleep(const timespec* deadline) {
        int result = 0;
        do {
            result = deadline == nullptr ? sem_wait(&m_wakeUp)
                                         : sem_clockwait(&m_wakeUp, CLOCK_MONOTONIC, deadline);
        } while (result != 0 && errno == EINTR);
        return result == 0;
    }

    std::mutex mutex;  // guards what was released of this call

private:
    sem_t m_wakeUp{};
    bool m_waitsForAll;
};

// One event of one waiting call. Linked into the event's list; `released` is guarded by the
// sleeper's mutex, the links by the list's.
struct Waiter {
    ManualResetEvent* event = nullptr;
    Sleeper* sleeper = nullptr;
    Release released = Release::None;
    Waiter* previous = nullptr;
    Waiter* next = nullptr;
};

void WakeUp(Waiter& waiter, Release release) {
    if (release != Release::None) {
        const std::lock_guard lock(waiter.sleeper->mutex);
        waiter.released = release;
    }
    // Unlocked, so that the sleeper need not wait again.
    waiter.sleeper->WakeUp();
}

bool IsReleased(const Waiter& waiter) {
    const std::lock_guard lock(waiter.sleeper->mutex);
    return waiter.released != Release::None;
}

}  // namespace

// Locks are taken in one order only: a list's mutex, then a single sleeper's. (Holding all
// sleepers of a list at once would let two settings block each other when two calls wait for the
// same two events and stand in the lists in different order.)
struct ManualResetEvent::WaiterList {
    std::mutex mutex;
    Waiter* head = nullptr;
    Waiter* tail = nullptr;

    void Append(Waiter& waiter) {
        waiter.previous = tail;
        (tail != nullptr ? tail->next : head) = &waiter;
        tail = &waiter;
    }

    void Remove(Waiter& waiter) {
        (waiter.previous != nullptr ? waiter.previous->next : head) = waiter.next;
        (waiter.next != nullptr ? waiter.next->previous : tail) = waiter.previous;
    }

    void ReleaseAll(Release release) const {
        for (Waiter* waiter = head; waiter != nullptr; waiter = waiter->next) {
            WakeUp(*waiter, release);
        }
    }
};

ManualResetEvent::ManualResetEvent(EventKind kind)
    : m_waiters(std::make_unique<WaiterList>()),
      m_manualReset(kind == EventKind::ManualReset ? 1 : 0) {}

ManualResetEvent::~ManualResetEvent() = default;

void ManualResetEvent::Set() {
    const std::lock_guard lock(m_waiters->mutex);
    if (IsManualReset()) {
        m_signalled = 1;
        m_waiters->ReleaseAll(Release::BySet);
    } else if (m_signalled == 0) {
        OfferToOneWaiter();
    }
}

// An auto-reset setting belongs either to one waiter or to the event, never to both: otherwise a
// second waiter could take it from the event before the released one has run. Waits for several
// events at once only get a setting when all of theirs are there, so they are woken to look.
void ManualResetEvent::OfferToOneWaiter() {
    for (Waiter* waiter = m_waiters->head; waiter != nullptr; waiter = waiter->next) {
        if (!waiter->sleeper->WaitsForAll() && !IsReleased(*waiter)) {
            WakeUp(*waiter, Release::BySet);
            return;
        }
    }
    m_signalled = 1;
    m_waiters->ReleaseAll(Release::None);
}

bool ManualResetEvent::TakeSetting() { return m_signalled.exchange(0) != 0; }

bool ManualResetEvent::TakeIfSet() { return IsSet() && (IsManualReset() || TakeSetting()); }

void ManualResetEvent::Pulse() {
    const std::lock_guard lock(m_waiters->mutex);
    m_signalled = 0;
    if (IsManualReset()) {
        m_waiters->ReleaseAll(Release::ByPulse);
        return;
    }
    for (Waiter* waiter = m_waiters->head; waiter != nullptr; waiter = waiter->next) {
        if (!IsReleased(*waiter)) {
            WakeUp(*waiter, Release::ByPulse);
            return;
        }
    }
}

void ManualResetEvent::Reset() {
    const std::lock_guard lock(m_waiters->mutex);
    m_signalled = 0;
    for (Waiter* waiter = m_waiters->head; waiter != nullptr; waiter = waiter->next) {
        const std::lock_guard sleeperLock(waiter->sleeper->mutex);
        waiter->released = Release::None;
    }
}

// One call of WaitForEvents: registered with every event for as long as it lives.
class WaitCall {
public:
    WaitCall(uint32_t count, ManualResetEvent* const* events, bool waitAll) : m_sleeper(waitAll) {
        if (count > m_fewWaiters.size()) {
            m_manyWaiters.resize(count);
            m_waiters = m_manyWaiters.data();
        }
        m_count = count;
        for (uint32_t i = 0; i < count; ++i) {
            // An event that is named twice is registered once, under its first index.
            if (std::find(events, events + i, events[i]) == events + i) {
                Register(m_waiters[i], *events[i]);
            }
        }
    }

    ~WaitCall() {
        for (uint32_t i = 0; i < m_count; ++i) {
            if (m_waiters[i].event != nullptr) {
                Unregister(m_waiters[i]);
            }
        }
    }

    WaitCall(const WaitCall&) = delete;
    WaitCall& operator=(const WaitCall&) = delete;

    // What a wait that need not sleep comes down to: nothing is registered.
    static int32_t Poll(uint32_t count, ManualResetEvent* const* events) {
        for (uint32_t i = 0; i < count; ++i) {
            if (events[i]->TakeIfSet()) {
                // Who set it may still hold the lock, and who waited may destroy the event now.
                const std::lock_guard lock(events[i]->m_waiters->mutex);
                return static_cast<int32_t>(i);
            }
        }
        return kWaitTimedOut;
    }

    // Looks, sleeps and looks again until satisfied or past the deadline (null: none).
    int32_t Run(const timespec* deadline) {
        for (bool timedOut = false;; timedOut = !m_sleeper.Sleep(deadline)) {
            const int32_t index = m_sleeper.WaitsForAll() ? TakeAll() : TakeFirst();
            if (index >= 0) {
                return index;
            }
            if (timedOut) {
                return kWaitTimedOut;
            }
        }
    }

private:
    void Register(Waiter& waiter, ManualResetEvent& event) {
        waiter.event = &event;
        waiter.sleeper = &m_sleeper;
        const std::lock_guard lock(event.m_waiters->mutex);
        event.m_waiters->Append(waiter);
    }

    static void Unregister(Waiter& waiter) {
        ManualResetEvent& event = *waiter.event;
        const std::lock_guard lock(event.m_waiters->mutex);
        event.m_waiters->Remove(waiter);
        if (!event.IsManualReset() && waiter.released == Release::BySet && !event.IsSet()) {
            event.OfferToOneWaiter();
        }
    }

    int32_t TakeFirst() {
        const std::lock_guard lock(m_sleeper.mutex);
        for (uint32_t i = 0; i < m_count; ++i) {
            if (m_waiters[i].event != nullptr && Take(m_waiters[i])) {
                return static_cast<int32_t>(i);
            }
        }
        return kWaitTimedOut;
    }

    static bool Take(Waiter& waiter) {
        if (waiter.released == Release::None) {
            return waiter.event->TakeIfSet();
        }
        if (!waiter.event->IsManualReset()) {
            waiter.released = Release::None;
        }
        return true;
    }

    // All or nothing. Settings can only appear under the list mutexes, which are held here, in
    // the order of the addresses; they can disappear (another wait takes one) at any time, so
    // what was taken in vain is offered again.
    int32_t TakeAll() {
        std::vector<Waiter*> waiters;
        for (uint32_t i = 0; i < m_count; ++i) {
            if (m_waiters[i].event != nullptr) {
                waiters.push_back(&m_waiters[i]);
            }
        }
        std::sort(waiters.begin(), waiters.end(), [](const Waiter* a, const Waiter* b) {
            return std::less<>()(a->event, b->event);
        });
        std::vector<std::unique_lock<std::mutex>> locks;
        locks.reserve(waiters.size());
        for (const Waiter* waiter : waiters) {
            locks.emplace_back(waiter->event->m_waiters->mutex);
        }
        const bool allSet = std::all_of(waiters.begin(), waiters.end(), [](const Waiter* waiter) {
            return IsReleased(*waiter) || waiter->event->IsSet();
        });
        return allSet && TakeEach(waiters) ? 0 : kWaitTimedOut;
    }

    static bool TakeEach(const std::vector<Waiter*>& waiters) {
        std::vector<ManualResetEvent*> taken;
        taken.reserve(waiters.size());
        for (const Waiter* waiter : waiters) {
            ManualResetEvent& event = *waiter->event;
            if (event.IsManualReset() || IsReleased(*waiter)) {
                continue;
            }
            if (!event.TakeSetting()) {
                std::for_each(taken.begin(), taken.end(),
                              [](ManualResetEvent* each) { each->OfferToOneWaiter(); });
                return false;
            }
            taken.push_back(&event);
        }
        return true;
    }

    Sleeper m_sleeper;
    // The idle loop polls a hundred times a second: a few events need no allocation.
    std::array<Waiter, 4> m_fewWaiters;
    std::vector<Waiter> m_manyWaiters;
    Waiter* m_waiters = m_fewWaiters.data();
    uint32_t m_count = 0;
};

int32_t CreateEvent(EventKind kind, ManualResetEvent** event) {
    if (event == nullptr) {
        return kMissingArgument;
    }
    try {
        *event = std::make_unique<ManualResetEvent>(kind).release();
    } catch (const std::bad_alloc&) {
        return kFailure;
    }
    return kSuccess;
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
    if (!waitAll) {
        const int32_t index = WaitCall::Poll(count, events);
        if (index >= 0 || timeoutMs == 0) {
            return index;
        }
    }
    timespec deadline{};
    if (timeoutMs != kNoTimeout) {
        clock_gettime(CLOCK_MONOTONIC, &deadline);
        deadline = DeadlineAfter(deadline, timeoutMs);
    }
    return WaitCall(count, events, waitAll).Run(timeoutMs == kNoTimeout ? nullptr : &deadline);
}

bool WaitForEvent(ManualResetEvent& event, uint32_t timeoutMs) {
    ManualResetEvent* const events[] = {&event};
    return WaitForEvents(1, events, false, timeoutMs) == 0;
}

namespace {

constexpr int64_t kSpinNanoseconds = 50'000;
constexpr int kLooksBetweenYields = 50;

bool HasSeveralProcessors() {
    cpu_set_t processors;
    return sched_getaffinity(0, sizeof processors, &processors) == 0 && CPU_COUNT(&processors) > 1;
}

int64_t MonotonicNanoseconds() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return now.tv_sec * INT64_C(1'000'000'000) + now.tv_nsec;
}

// A hint that this is a loop that waits: it saves power, and leaves room to the other half of
// a processor with two threads.
void Relax() {
#if defined(__x86_64__) || defined(__i386__)
    __builtin_ia32_pause();
#elif defined(__aarch64__)
    asm volatile("yield");
#endif
}

}  // namespace

bool SpinForEvent(const ManualResetEvent& event) {
    static const bool kSpins = HasSeveralProcessors();
    if (!kSpins) {
        return event.IsSet();
    }
    const int64_t end = MonotonicNanoseconds() + kSpinNanoseconds;
    do {
        for (int look = 0; look < kLooksBetweenYields; ++look) {
            if (event.IsSet()) {
                return true;
            }
            Relax();
        }
        // The other thread may be waiting for this very processor.
        sched_yield();
    } while (MonotonicNanoseconds() < end);
    return event.IsSet();
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
