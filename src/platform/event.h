// Events that threads set and wait for, with time-outs in milliseconds.
// The primitives under the request queue; nothing here knows about requests.
#pragma once

#include <cstdint>
#include <ctime>

#include "platform/result.h"

namespace zeldlg::platform {

/// Time-out that never ends.
inline constexpr uint32_t kNoTimeout = 0xFFFFFFFF;
/// Results of WaitForEvents beside an index.
inline constexpr int32_t kWaitTimedOut = -2;
inline constexpr int32_t kWaitError = -1;

enum class EventKind {
    ManualReset,  ///< Stays set until it is reset; releases every waiter.
    AutoReset,    ///< Each setting releases one waiter and is used up by it.
};

struct Waiter;  // one event of a call that waits

/// An event object, of either kind. Any thread may set, pulse, reset or wait for it; it must
/// outlive every wait on it.
class ManualResetEvent {
public:
    explicit ManualResetEvent(EventKind kind = EventKind::ManualReset)
        : m_manualReset(kind == EventKind::ManualReset) {}
    ManualResetEvent(const ManualResetEvent&) = delete;
    ManualResetEvent& operator=(const ManualResetEvent&) = delete;

    void Set();
    /// Releases whom Set would release now and leaves the event unset.
    void Pulse();
    /// Also takes back a release whose waiter has not run yet.
    void Reset();

private:
    friend struct Waiter;

    void Offer();

    bool m_signalled = false;
    bool m_manualReset;
    Waiter* m_firstWaiter = nullptr;
};

/// Creates an unset event. @return kSuccess, kFailure (no memory) or kMissingArgument.
int32_t CreateEvent(EventKind kind, ManualResetEvent** event);
/// Destroys what CreateEvent made; null is ignored.
void DestroyEvent(ManualResetEvent* event);

/// Waits until one event (or, with `waitAll`, every one) of `events` is set. The library itself
/// waits for one event at a time, below; kept, and tested.
///
/// Looks at the events in order. What is satisfied by an auto-reset event uses its setting up;
/// with `waitAll` either all settings are used up or none. A pulse counts for the waits present
/// at that moment, in the wait-all form until the other events follow.
/// @param timeoutMs Milliseconds, or kNoTimeout. 0 polls. Measured on the monotonic clock, which no
///                  change of the system's time moves.
/// @return The index of the satisfying event (0 in the wait-all form), kWaitTimedOut, or
///         kWaitError when there is no event or one of them is null.
int32_t WaitForEvents(uint32_t count, ManualResetEvent* const* events, bool waitAll,
                      uint32_t timeoutMs);

/// @return Whether the event was set within the time-out.
bool WaitForEvent(ManualResetEvent& event, uint32_t timeoutMs);

/// The absolute time `timeoutMs` milliseconds after `now`.
timespec DeadlineAfter(timespec now, uint32_t timeoutMs);

/// Refers to an event and destroys it if it owns it.
class EventHandle {
public:
    /// Makes and owns an unset event. Throws std::bad_alloc.
    static EventHandle Create(EventKind kind = EventKind::ManualReset);
    /// Refers to an event that `owner` goes on owning.
    static EventHandle Share(const EventHandle& owner) { return {owner.m_event, false}; }

    EventHandle(EventHandle&& other) noexcept;
    EventHandle(const EventHandle&) = delete;
    EventHandle& operator=(const EventHandle&) = delete;
    EventHandle& operator=(EventHandle&&) = delete;
    ~EventHandle();

    ManualResetEvent& operator*() const { return *m_event; }
    ManualResetEvent* operator->() const { return m_event; }
    ManualResetEvent* Get() const { return m_event; }

private:
    EventHandle(ManualResetEvent* event, bool owns) : m_event(event), m_owns(owns) {}

    ManualResetEvent* m_event;
    bool m_owns;
};

}  // namespace zeldlg::platform
