#include "platform/event.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <array>
#include <atomic>
#include <chrono>
#include <memory>
#include <thread>
#include <vector>

#include "support/time_limit.h"

namespace zeldlg::platform {
namespace {

using Clock = std::chrono::steady_clock;

using test::kLongMs;
using test::WaitUntil;

int64_t MillisecondsSince(Clock::time_point start) {
    return std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start).count();
}

// Waits for events on a thread of its own and remembers the result.
class Waiting {
public:
    Waiting(std::vector<ManualResetEvent*> events, bool waitAll, uint32_t timeoutMs = kLongMs)
        : m_thread([this, events = std::move(events), waitAll, timeoutMs] {
              m_result = WaitForEvents(static_cast<uint32_t>(events.size()), events.data(), waitAll,
                                       timeoutMs);
              m_done = true;
          }) {}
    ~Waiting() { m_thread.join(); }
    Waiting(const Waiting&) = delete;
    Waiting& operator=(const Waiting&) = delete;

    bool IsDone() const { return m_done; }
    int32_t Result() const { return m_result; }

private:
    std::atomic<bool> m_done{false};
    std::atomic<int32_t> m_result{-99};
    std::thread m_thread;
};

// Long enough for a thread that is wrongly released to show it.
bool StaysBlocked(const Waiting& waiting) {
    ManualResetEvent never;
    WaitForEvent(never, 30);
    return !waiting.IsDone();
}

TEST(Event, WaitWithTimeOutZeroOnAnUnsetEventTimesOut) {
    for (const EventKind kind : {EventKind::ManualReset, EventKind::AutoReset}) {
        ManualResetEvent event(kind);
        ManualResetEvent* const events[] = {&event};
        EXPECT_EQ(WaitForEvents(1, events, false, 0), kWaitTimedOut);
    }
}

// A poll that slept, even for as little as the kernel lets a thread sleep, would take fifty
// microseconds; the loop of the GUI thread polls before every request.
TEST(Event, APollDoesNotSleep) {
    ManualResetEvent event;
    const auto sleeps = [] {
        rusage usage{};
        getrusage(RUSAGE_THREAD, &usage);
        return usage.ru_nvcsw;
    };
    const long before = sleeps();
    for (int i = 0; i < 1000; ++i) {
        ASSERT_FALSE(WaitForEvent(event, 0));
    }
    EXPECT_LT(sleeps() - before, 10);
}

TEST(Event, AnEventMayBeDestroyedAsSoonAsAWaitForItIsOver) {
    for (int round = 0; round < 200; ++round) {
        auto event = std::make_unique<ManualResetEvent>();
        std::thread setter([raw = event.get()] { raw->Set(); });
        ASSERT_TRUE(WaitUntil([&] { return WaitForEvent(*event, 0); }));
        event.reset();
        setter.join();
    }
}

TEST(Event, ManualResetEventSetBeforeTheWaitSatisfiesEveryLaterWaitUntilReset) {
    ManualResetEvent event;
    event.Set();
    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(WaitForEvent(event, 0));
    }
    event.Reset();
    EXPECT_FALSE(WaitForEvent(event, 0));
}

TEST(Event, AutoResetSettingSatisfiesOneWaitOnly) {
    ManualResetEvent event(EventKind::AutoReset);
    event.Set();
    event.Set();
    EXPECT_TRUE(WaitForEvent(event, 0));
    EXPECT_FALSE(WaitForEvent(event, 0));
}

TEST(Event, AutoResetEventSetOnceReleasesExactlyOneOfTwoWaitingThreadsThousandTimes) {
    ManualResetEvent event(EventKind::AutoReset);
    ManualResetEvent stop;
    std::atomic<int> released{0};
    const auto body = [&] {
        ManualResetEvent* const events[] = {&event, &stop};
        while (WaitForEvents(2, events, false, kNoTimeout) == 0) {
            ++released;
        }
    };
    std::thread first(body);
    std::thread second(body);
    for (int round = 1; round <= 1000; ++round) {
        event.Set();
        ASSERT_TRUE(WaitUntil([&] { return released >= round; })) << "round " << round;
        ASSERT_EQ(released, round);
    }
    stop.Set();
    first.join();
    second.join();
    EXPECT_EQ(released, 1000);
    EXPECT_FALSE(WaitForEvent(event, 0));
}

TEST(Event, ManualResetEventReleasesEveryWaiter) {
    ManualResetEvent event;
    const Waiting first({&event}, false);
    const Waiting second({&event}, false);
    event.Set();
    EXPECT_TRUE(WaitUntil([&] { return first.IsDone() && second.IsDone(); }));
    EXPECT_EQ(first.Result(), 0);
    EXPECT_EQ(second.Result(), 0);
}

TEST(Event, TheFirstSetEventInOrderSatisfiesTheWait) {
    ManualResetEvent a;
    ManualResetEvent b;
    ManualResetEvent c;
    b.Set();
    c.Set();
    ManualResetEvent* const events[] = {&a, &b, &c};
    EXPECT_EQ(WaitForEvents(3, events, false, 0), 1);
}

TEST(Event, AnEventThatIsNotTheSatisfyingOneKeepsItsSetting) {
    ManualResetEvent a(EventKind::AutoReset);
    ManualResetEvent b(EventKind::AutoReset);
    a.Set();
    b.Set();
    ManualResetEvent* const events[] = {&a, &b};
    EXPECT_EQ(WaitForEvents(2, events, false, 0), 0);
    EXPECT_EQ(WaitForEvents(2, events, false, 0), 1);
    EXPECT_EQ(WaitForEvents(2, events, false, 0), kWaitTimedOut);
}

TEST(Event, NullEventsAndNoEventsAreErrors) {
    ManualResetEvent event;
    event.Set();
    ManualResetEvent* const events[] = {&event, nullptr};
    EXPECT_EQ(WaitForEvents(2, events, false, 0), kWaitError);
    EXPECT_EQ(WaitForEvents(2, events, true, 0), kWaitError);
    EXPECT_EQ(WaitForEvents(0, events, false, 0), kWaitError);
    EXPECT_EQ(WaitForEvents(1, nullptr, false, 0), kWaitError);
}

TEST(Event, AnEventNamedTwiceCountsUnderItsFirstIndex) {
    ManualResetEvent event(EventKind::AutoReset);
    ManualResetEvent* const events[] = {&event, &event, &event};
    event.Set();
    EXPECT_EQ(WaitForEvents(3, events, false, 0), 0);
    EXPECT_FALSE(WaitForEvent(event, 0));
    event.Set();
    EXPECT_EQ(WaitForEvents(3, events, true, 0), 0);
    EXPECT_FALSE(WaitForEvent(event, 0));
}

TEST(Event, MoreEventsThanAWaitHoldsInItsFrame) {
    std::array<ManualResetEvent, 100> events;
    std::vector<ManualResetEvent*> pointers;
    for (ManualResetEvent& event : events) {
        pointers.push_back(&event);
    }
    events[99].Set();
    EXPECT_EQ(WaitForEvents(100, pointers.data(), false, 0), 99);
}

TEST(Event, AWaitForManyEventsEndsWithAnyOfThemOrItsTime) {
    std::array<ManualResetEvent, 100> events;
    std::vector<ManualResetEvent*> pointers;
    for (ManualResetEvent& event : events) {
        pointers.push_back(&event);
    }
    EXPECT_EQ(WaitForEvents(100, pointers.data(), false, 1), kWaitTimedOut);
    const Waiting waiting(pointers, false);
    EXPECT_TRUE(StaysBlocked(waiting));
    events[73].Set();
    EXPECT_TRUE(WaitUntil([&] { return waiting.IsDone(); }));
    EXPECT_EQ(waiting.Result(), 73);
}

TEST(Event, PulseReleasesWhoWaitsNowAndLeavesTheEventUnset) {
    ManualResetEvent event;
    const Waiting first({&event}, false);
    const Waiting second({&event}, false);
    // A pulse finds a waiter only once it is registered, so it is repeated until both were met.
    EXPECT_TRUE(WaitUntil([&] {
        event.Pulse();
        return first.IsDone() && second.IsDone();
    }));
    EXPECT_EQ(first.Result(), 0);
    EXPECT_FALSE(WaitForEvent(event, 0));
}

TEST(Event, PulseOfAnAutoResetEventReleasesOneWaiterOnly) {
    ManualResetEvent event(EventKind::AutoReset);
    const Waiting first({&event}, false);
    const Waiting second({&event}, false);
    const auto released = [&] { return int{first.IsDone()} + int{second.IsDone()}; };
    EXPECT_TRUE(WaitUntil([&] {
        if (released() == 0) {
            event.Pulse();
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
        return released() > 0;
    }));
    EXPECT_FALSE(WaitForEvent(event, 0));
    event.Set();
    event.Set();
    EXPECT_TRUE(WaitUntil([&] {
        event.Set();
        return released() == 2;
    }));
}

TEST(Event, PulseClearsAnEarlierSetting) {
    for (const EventKind kind : {EventKind::ManualReset, EventKind::AutoReset}) {
        ManualResetEvent event(kind);
        event.Set();
        event.Pulse();
        EXPECT_FALSE(WaitForEvent(event, 0));
    }
}

TEST(Event, WaitForAllIsSatisfiedOnlyWhenEveryEventIsSet) {
    ManualResetEvent a;
    ManualResetEvent b(EventKind::AutoReset);
    const Waiting waiting({&a, &b}, true);
    a.Set();
    EXPECT_TRUE(StaysBlocked(waiting));
    b.Set();
    EXPECT_TRUE(WaitUntil([&] { return waiting.IsDone(); }));
    EXPECT_EQ(waiting.Result(), 0);
    EXPECT_TRUE(WaitForEvent(a, 0));
    EXPECT_FALSE(WaitForEvent(b, 0));
}

TEST(Event, WaitForAllTakesBackWhatIsResetBeforeTheOtherIsSet) {
    ManualResetEvent a;
    ManualResetEvent b;
    const Waiting waiting({&a, &b}, true);
    EXPECT_TRUE(StaysBlocked(waiting));
    a.Set();
    a.Reset();
    b.Set();
    EXPECT_TRUE(StaysBlocked(waiting));
    a.Set();
    EXPECT_TRUE(WaitUntil([&] { return waiting.IsDone(); }));
    EXPECT_EQ(waiting.Result(), 0);
}

TEST(Event, WaitForAllThatTimesOutUsesNothingUp) {
    ManualResetEvent a(EventKind::AutoReset);
    ManualResetEvent b(EventKind::AutoReset);
    a.Set();
    ManualResetEvent* const events[] = {&a, &b};
    EXPECT_EQ(WaitForEvents(2, events, true, 20), kWaitTimedOut);
    EXPECT_TRUE(WaitForEvent(a, 0));
}

TEST(Event, WaitForAllDoesNotKeepASettingFromAWaitForOne) {
    ManualResetEvent a(EventKind::AutoReset);
    ManualResetEvent b(EventKind::AutoReset);
    const Waiting all({&a, &b}, true);
    const Waiting one({&a}, false);
    EXPECT_TRUE(StaysBlocked(one));
    a.Set();
    EXPECT_TRUE(WaitUntil([&] { return one.IsDone(); }));
    EXPECT_FALSE(all.IsDone());
    a.Set();
    b.Set();
    EXPECT_TRUE(WaitUntil([&] { return all.IsDone(); }));
    EXPECT_EQ(all.Result(), 0);
}

TEST(Event, TwoThreadsTakePairsOfSettingsWithoutLosingOne) {
    ManualResetEvent a(EventKind::AutoReset);
    ManualResetEvent b(EventKind::AutoReset);
    ManualResetEvent stop;
    std::atomic<int> pairs{0};
    const auto body = [&](std::array<ManualResetEvent*, 2> order) {
        while (!WaitForEvent(stop, 0)) {
            if (WaitForEvents(2, order.data(), true, 5) == 0) {
                ++pairs;
            }
        }
    };
    std::thread first(body, std::array{&a, &b});
    std::thread second(body, std::array{&b, &a});
    for (int round = 1; round <= 300; ++round) {
        a.Set();
        b.Set();
        ASSERT_TRUE(WaitUntil([&] { return pairs >= round; })) << "round " << round;
    }
    stop.Set();
    first.join();
    second.join();
    EXPECT_EQ(pairs, 300);
}

TEST(Event, SettingsFromManyThreadsWithWaitersInDifferentOrderDoNotBlockEachOther) {
    ManualResetEvent a(EventKind::AutoReset);
    ManualResetEvent b(EventKind::AutoReset);
    ManualResetEvent stop;
    std::atomic<int> taken{0};
    const auto waiter = [&](std::array<ManualResetEvent*, 3> order) {
        for (int32_t index = 0; index != 2;) {
            index = WaitForEvents(3, order.data(), false, kNoTimeout);
            taken += index == 2 ? 0 : 1;
        }
    };
    const auto setter = [&](ManualResetEvent& event) {
        for (int i = 0; i < 5000; ++i) {
            event.Set();
        }
    };
    std::thread waiters[] = {std::thread(waiter, std::array{&a, &b, &stop}),
                             std::thread(waiter, std::array{&b, &a, &stop})};
    std::thread setters[] = {std::thread(setter, std::ref(a)), std::thread(setter, std::ref(b))};
    for (std::thread& thread : setters) {
        thread.join();
    }
    stop.Set();
    for (std::thread& thread : waiters) {
        thread.join();
    }
    EXPECT_GT(taken, 0);
    EXPECT_LE(taken, 10000);
}

TEST(Event, ATimedWaitLastsAsLongAsItShould) {
    ManualResetEvent event;
    const auto start = Clock::now();
    EXPECT_FALSE(WaitForEvent(event, 50));
    EXPECT_GE(MillisecondsSince(start), 49);
}

struct DeadlineRow {
    timespec now;
    uint32_t timeoutMs;
    timespec expected;
};

class Deadline : public testing::TestWithParam<DeadlineRow> {};

TEST_P(Deadline, IsThatManyMillisecondsAhead) {
    const auto& [now, timeoutMs, expected] = GetParam();
    const timespec deadline = DeadlineAfter(now, timeoutMs);
    EXPECT_EQ(deadline.tv_sec, expected.tv_sec);
    EXPECT_EQ(deadline.tv_nsec, expected.tv_nsec);
}

INSTANTIATE_TEST_SUITE_P(Arithmetic, Deadline,
                         testing::Values(DeadlineRow{{100, 0}, 1500, {101, 500'000'000}},
                                         DeadlineRow{{100, 499'999'999}, 1500, {101, 999'999'999}},
                                         DeadlineRow{{100, 500'000'000}, 1500, {102, 0}},
                                         DeadlineRow{{100, 999'999'999}, 999, {101, 998'999'999}},
                                         DeadlineRow{{100, 7}, 0, {100, 7}},
                                         DeadlineRow{{0, 0}, 0xFFFFFFFE, {4294967, 294'000'000}}));

TEST(Event, CreationAnswersItsResultCodes) {
    ManualResetEvent* event = nullptr;
    EXPECT_EQ(CreateEvent(EventKind::ManualReset, nullptr), kMissingArgument);
    ASSERT_EQ(CreateEvent(EventKind::ManualReset, &event), kSuccess);
    EXPECT_FALSE(WaitForEvent(*event, 0));
    DestroyEvent(event);
    DestroyEvent(nullptr);
}

TEST(EventHandle, OnlyTheOwnerDestroysTheEvent) {
    auto owner = EventHandle::Create();
    {
        const auto shared = EventHandle::Share(owner);  // ends at once
    }
    const auto moved = std::move(owner);
    moved->Set();
    EXPECT_TRUE(WaitForEvent(*moved, 0));
}

}  // namespace
}  // namespace zeldlg::platform
