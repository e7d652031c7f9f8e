// The exit of a process while its GUI thread starts: each test ends a process of its own.
#include "runtime/exit_guard.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <thread>

#include "platform/event.h"

namespace zeldlg {
namespace {

using platform::EventHandle;
using platform::WaitForEvent;

constexpr uint32_t kLongMs = 20'000;
constexpr uint32_t kSlowStartMs = 200;
constexpr int kAsExpected = 7;
constexpr int kOtherwise = 8;

// Never destroyed: threads are left behind.
struct Observed {
    EventHandle begun = EventHandle::Create();
    EventHandle parked = EventHandle::Create();
    EventHandle never = EventHandle::Create();
    std::atomic<bool> cameBack{false};
};

Observed& Seen() {
    static auto* const seen = new Observed;
    return *seen;
}

// What a GUI thread does when it finds, after a while, that there is no display.
void StartInVain(uint32_t milliseconds) {
    AwaitGuiThreadAtExit([] { Seen().parked->Set(); });
    Seen().begun->Set();
    WaitForEvent(*Seen().never, milliseconds);
    ForgetGuiThreadAtExit();
    Seen().cameBack = true;
}

[[noreturn]] void End(bool asExpected) { _exit(asExpected ? kAsExpected : kOtherwise); }

class ExitGuardDeathTest : public testing::Test {
protected:
    void SetUp() override { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
};

// Exit handlers that were there before the guard run after it.
void ExitDuringAStart() {
    std::atexit([] { End(Seen().parked->IsSet() && !Seen().cameBack); });
    WatchExit();
    std::thread(StartInVain, kSlowStartMs).detach();
    WaitForEvent(*Seen().begun, kLongMs);
    std::exit(0);
}

TEST_F(ExitGuardDeathTest, TheExitWaitsForTheEndOfAStart) {
    EXPECT_EXIT(ExitDuringAStart(), testing::ExitedWithCode(kAsExpected), "");
}

void StartDuringTheExit() {
    std::atexit([] {
        std::thread(StartInVain, 0).detach();
        End(WaitForEvent(*Seen().parked, kLongMs) && !Seen().begun->IsSet());
    });
    WatchExit();
    std::exit(0);
}

TEST_F(ExitGuardDeathTest, AStartThatComesTooLateIsNotMade) {
    EXPECT_EXIT(StartDuringTheExit(), testing::ExitedWithCode(kAsExpected), "");
}

void ExitAfterAStart() {
    std::atexit([] { End(Seen().cameBack && !Seen().parked->IsSet()); });
    WatchExit();
    std::thread(StartInVain, 0).join();
    std::exit(0);
}

TEST_F(ExitGuardDeathTest, AThreadThatIsDoneIsNotWaitedFor) {
    EXPECT_EXIT(ExitAfterAStart(), testing::ExitedWithCode(kAsExpected), "");
}

}  // namespace
}  // namespace zeldlg
