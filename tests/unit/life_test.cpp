// The states of the private thread's life, and the exit of a process in each of them: a test that
// exits ends a process of its own.
#include "runtime/life.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "platform/event.h"
#include "resources/catalogue.h"
#include "support/registry_fixture.h"
#include "support/time_limit.h"

namespace zeldlg {
namespace {

using platform::EventHandle;
using platform::WaitForEvent;
using State = Life::State;
using test::kLongMs;

constexpr int kAsExpected = 7;
constexpr int kOtherwise = 8;

const std::vector<std::pair<State, std::string>> kStates{
    {State::Down, "Down"},       {State::Entering, "Entering"}, {State::Starting, "Starting"},
    {State::Up, "Up"},           {State::Ending, "Ending"},     {State::Lost, "Lost"},
    {State::Exiting, "Exiting"}, {State::Parked, "Parked"},     {State::NotOurs, "NotOurs"}};

// From each state, the states that may follow.
const std::map<State, std::set<State>> kMayFollow{
    {State::Down, {State::Entering, State::Exiting}},
    {State::Entering, {State::Starting, State::Down, State::Exiting}},
    {State::Starting, {State::Up, State::Down, State::Lost, State::Exiting}},
    {State::Up, {State::Ending, State::Down, State::Lost, State::Exiting}},
    {State::Ending, {State::Down, State::Lost, State::Exiting}},
    {State::Lost, {}},
    {State::Exiting, {State::Parked}},
    {State::Parked, {}},
    {State::NotOurs, {}}};

// One way to each state.
const std::map<State, std::vector<State>> kWays{
    {State::Down, {State::Down}},
    {State::Entering, {State::Down, State::Entering}},
    {State::Starting, {State::Down, State::Entering, State::Starting}},
    {State::Up, {State::Down, State::Entering, State::Starting, State::Up}},
    {State::Ending, {State::Down, State::Entering, State::Starting, State::Up, State::Ending}},
    {State::Lost, {State::Down, State::Entering, State::Starting, State::Lost}},
    {State::Exiting, {State::Down, State::Exiting}},
    {State::Parked, {State::Down, State::Exiting, State::Parked}}};

void BringTo(Life& life, State state) {
    const std::vector<State>& way = kWays.at(state);
    for (size_t step = 1; step < way.size(); ++step) {
        ASSERT_TRUE(life.Change(way[step - 1], way[step]));
    }
    ASSERT_EQ(life.Now(), state);
}

TEST(Life, ChangesAsItsTableSaysAndNotOtherwise) {
    for (const auto& [from, fromName] : kStates) {
        for (const auto& [to, toName] : kStates) {
            const bool may = kMayFollow.at(from).count(to) != 0;
            EXPECT_EQ(Life::MayChange(from, to), may) << fromName << " to " << toName;
            if (from == State::NotOurs) {
                continue;
            }
            Life life;
            BringTo(life, from);
            EXPECT_EQ(life.Change(from, to), may) << fromName << " to " << toName;
            EXPECT_EQ(life.Now(), may ? to : from) << fromName << " to " << toName;
        }
    }
}

TEST(Life, DoesNotChangeFromAStateThatItIsNotIn) {
    for (const auto& [now, nowName] : kStates) {
        for (const auto& [from, fromName] : kStates) {
            if (now == State::NotOurs || from == now) {
                continue;
            }
            Life life;
            BringTo(life, now);
            for (const State to : kMayFollow.at(from)) {
                EXPECT_FALSE(life.Change(from, to)) << nowName << ", not " << fromName;
            }
            EXPECT_EQ(life.Now(), now) << nowName;
        }
    }
}

TEST(Life, RunsTakesRequestsAndIsOverInTheseStates) {
    const std::set<State> running{State::Entering, State::Starting, State::Up, State::Ending};
    const std::set<State> taking{State::Entering, State::Starting, State::Up};
    const std::set<State> over{State::Lost, State::Exiting, State::Parked};
    for (const auto& [state, way] : kWays) {
        Life life;
        BringTo(life, state);
        const auto name = static_cast<int>(state);
        EXPECT_EQ(life.IsRunning(), running.count(state) != 0) << name;
        EXPECT_EQ(life.TakesRequests(), taking.count(state) != 0) << name;
        EXPECT_EQ(life.IsOver(), over.count(state) != 0) << name;
    }
}

// What a child sees, which has no thread: 1 for over, 2 for running, 4 for a change.
int SeenByAChild(State state) {
    Life life;
    BringTo(life, state);
    return registry::test::InChild([&] {
        const bool notOurs = life.Now() == State::NotOurs;
        return (life.IsOver() ? 1 : 0) + (life.IsRunning() ? 2 : 0) + (notOurs ? 8 : 0) +
               (life.Change(state, State::Exiting) || life.Change(state, State::Entering) ? 4 : 0);
    });
}

TEST(Life, IsNotOursInAForkedChildOnceThereWasAThread) {
    for (const State state :
         {State::Entering, State::Starting, State::Up, State::Ending, State::Lost}) {
        EXPECT_EQ(SeenByAChild(state), 1 + 8) << static_cast<int>(state);
    }
    EXPECT_EQ(SeenByAChild(State::Down), 4) << "the child may have a thread of its own";
    Life ended;
    BringTo(ended, State::Ending);
    ASSERT_TRUE(ended.Change(State::Ending, State::Down));
    EXPECT_EQ(registry::test::InChild([&] { return ended.IsOver() ? 1 : 0; }), 1);
}

TEST(Life, WhoAwaitsItsEndGoesOnWhenTheThreadHasEndedOrIsLost) {
    for (const State end : {State::Down, State::Lost}) {
        Life life;
        BringTo(life, State::Ending);
        std::atomic<bool> seen{false};
        std::thread waiter([&] {
            life.AwaitEnd();
            seen = life.Now() == end;
        });
        ASSERT_TRUE(life.Change(State::Ending, end));
        waiter.join();
        EXPECT_TRUE(seen);
    }
}

[[noreturn]] void End(bool asExpected) { _exit(asExpected ? kAsExpected : kOtherwise); }

// Never destroyed: threads are left behind.
struct Observed {
    EventHandle reached = EventHandle::Create();
    EventHandle never = EventHandle::Create();
    EventHandle back = EventHandle::Create();
    std::atomic<bool> cameBack{false};
};

Observed& Seen() {
    static auto* const seen = new Observed;
    return *seen;
}

// A private thread that comes as far as `state` and is then for a while in a call of the toolkit's.
void StayIn(State state, uint32_t milliseconds, State next) {
    ASSERT_TRUE(ProcessLife().Change(State::Down, State::Entering));
    std::thread([=] {
        ProcessLife().Enter();
        for (const State step : {State::Starting, State::Up, State::Ending}) {
            if (step <= state) {
                ProcessLife().Advance(step);
            }
        }
        Seen().reached->Set();
        WaitForEvent(*Seen().never, milliseconds);
        Seen().back->Set();
        ProcessLife().Advance(next);
        Seen().cameBack = true;
    }).detach();
    WaitForEvent(*Seen().reached, kLongMs);
}

std::atomic<bool> g_slowMove{false};

class LifeDeathTest : public testing::Test {
protected:
    void SetUp() override { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
};

constexpr uint32_t kSlowCallMs = 200;

template <State state, State next>
void ExitWhileIn() {
    atexit([] { End(ProcessLife().Now() == State::Parked && !Seen().cameBack); });
    StayIn(state, kSlowCallMs, next);
    exit(0);
}

// Exit handlers that were there before run later.
TEST_F(LifeDeathTest, TheExitWaitsForTheEndOfAStartAndParksTheThread) {
    EXPECT_EXIT((ExitWhileIn<State::Starting, State::Up>()), testing::ExitedWithCode(kAsExpected),
                "");
    EXPECT_EXIT((ExitWhileIn<State::Starting, State::Down>()), testing::ExitedWithCode(kAsExpected),
                "");
}

TEST_F(LifeDeathTest, TheExitWaitsForTheEndOfAnEndAndParksTheThread) {
    EXPECT_EXIT((ExitWhileIn<State::Ending, State::Down>()), testing::ExitedWithCode(kAsExpected),
                "");
}

TEST_F(LifeDeathTest, ADisplayThatIsLostDuringTheExitParksTheThreadToo) {
    EXPECT_EXIT((ExitWhileIn<State::Up, State::Lost>()), testing::ExitedWithCode(kAsExpected), "");
}

void StartDuringTheExit() {
    atexit(
        [] { End(!ProcessLife().Change(State::Down, State::Entering) && ProcessLife().IsOver()); });
    GoFirstAtExit();
    exit(0);
}

TEST_F(LifeDeathTest, AStartThatComesTooLateIsNotMade) {
    EXPECT_EXIT(StartDuringTheExit(), testing::ExitedWithCode(kAsExpected), "");
}

bool g_checksLast = false;

// When the process destroys its libraries.
__attribute__((destructor)) void CheckLast() {
    if (g_checksLast) {
        End(!ProcessLife().Change(State::Down, State::Entering) && ProcessLife().IsOver());
    }
}

void ExitBeforeTheFirstCall() {
    g_checksLast = true;
    exit(0);
}

TEST_F(LifeDeathTest, NorIsTheFirstOfAllStarts) {
    EXPECT_EXIT(ExitBeforeTheFirstCall(), testing::ExitedWithCode(kAsExpected), "");
}

void ExitAfterAnEnd() {
    atexit([] { End(ProcessLife().Now() == State::Exiting && Seen().cameBack); });
    StayIn(State::Ending, 0, State::Down);
    while (!Seen().cameBack) {
        platform::WaitForEvent(*Seen().never, 1);
    }
    exit(0);
}

TEST_F(LifeDeathTest, AThreadThatHasEndedIsNotWaitedFor) {
    EXPECT_EXIT(ExitAfterAnEnd(), testing::ExitedWithCode(kAsExpected), "");
}

// What the thread does after it has told its end: the toolkit's records of a thread are destroyed.
std::atomic<bool> g_isGone{false};

void ExitDuringTheLastInstructions() {
    struct LastInstructions {
        bool told = false;
        ~LastInstructions() {
            WaitForEvent(*Seen().never, told ? 40 : 0);
            g_isGone = told;
        }
    };
    atexit([] { End(g_isGone); });
    ASSERT_TRUE(ProcessLife().Change(State::Down, State::Entering));
    std::thread([] {
        static thread_local LastInstructions last;
        ProcessLife().Enter();
        ProcessLife().Advance(State::Starting);
        ProcessLife().Advance(State::Down);
        last.told = true;
        Seen().reached->Set();
    }).detach();
    WaitForEvent(*Seen().reached, kLongMs);
    GoFirstAtExit();
    exit(0);
}

TEST_F(LifeDeathTest, AThreadThatHasToldItsEndIsWaitedForUntilItIsGone) {
    EXPECT_EXIT(ExitDuringTheLastInstructions(), testing::ExitedWithCode(kAsExpected), "");
}

// Libraries that are loaded, and texts that are drawn, after the start register handlers, too.
void ExitWithALateHandler() {
    StayIn(State::Starting, kSlowCallMs, State::Up);
    atexit([] { End(ProcessLife().Now() == State::Parked); });
    GoFirstAtExit();
    exit(0);
}

TEST_F(LifeDeathTest, TheExitBeginsWithTheThreadWhateverWasRegisteredSince) {
    EXPECT_EXIT(ExitWithALateHandler(), testing::ExitedWithCode(kAsExpected), "");
}

// The process ends while the handler moves, as it does all the time.
void ExitDuringAMove() {
    atexit([] { End(ProcessLife().Now() == State::Exiting); });
    g_slowMove = true;
    std::thread(GoFirstAtExit).detach();
    WaitForEvent(*Seen().reached, kLongMs);
    exit(0);
}

TEST_F(LifeDeathTest, TheExitBeginsWithTheThreadAlsoWhileTheHandlerMoves) {
    EXPECT_EXIT(ExitDuringAMove(), testing::ExitedWithCode(kAsExpected), "");
}

// Each other handler runs, once, and after the thread is parked.
void ExitAfterManyMoves() {
    static int handlers = 0;
    atexit([] { End(handlers == 1000); });
    for (int round = 0; round < 1000; ++round) {
        atexit([] { handlers += ProcessLife().IsOver() ? 1 : 1000; });
        GoFirstAtExit();
        GoFirstAtExit();
    }
    exit(0);
}

TEST_F(LifeDeathTest, GoingFirstAgainAndAgainLosesNoHandler) {
    EXPECT_EXIT(ExitAfterManyMoves(), testing::ExitedWithCode(kAsExpected), "");
}

// As on a display that hangs: it may never come back.
void ExitWhileAsleep() {
    atexit([] {
        Seen().never->Set();  // it is answered at last
        End(ProcessLife().Now() == State::Parked && !WaitForEvent(*Seen().back, 50));
    });
    StayIn(State::Starting, platform::kNoTimeout, State::Up);
    exit(0);
}

TEST_F(LifeDeathTest, AThreadThatSleepsInACallIsParkedThere) {
    EXPECT_EXIT(ExitWhileAsleep(), testing::ExitedWithCode(kAsExpected), "");
}

[[noreturn]] void WorkForEver() {
    for (std::atomic<unsigned> work{0};; ++work) {
    }
}

// Where going on would destroy what the thread works with.
void ExitWhileAtWork() {
    atexit([] { End(false); });
    BringTo(ProcessLife(), State::Entering);
    std::thread([] {
        ProcessLife().Enter();
        ProcessLife().Advance(State::Starting);
        Seen().reached->Set();
        WorkForEver();
    }).detach();
    WaitForEvent(*Seen().reached, kLongMs);
    static_cast<void>(fprintf(stderr, "written before"));
    static std::array<char, BUFSIZ> buffer;  // not destroyed: it is written at the very end
    setvbuf(stderr, buffer.data(), _IOFBF, buffer.size());
    static_cast<void>(fprintf(stderr, " and flushed"));
    exit(kAsExpected);
}

TEST_F(LifeDeathTest, TheProcessEndsWithItsStatusWhileTheThreadIsStillAtWork) {
#ifdef __SANITIZE_THREAD__
    GTEST_SKIP() << "the sanitizer's own exit handlers are not told the status";
#endif
    EXPECT_EXIT(ExitWhileAtWork(), testing::ExitedWithCode(kAsExpected),
                "written before and flushed");
}

void ExitOnThePrivateThread() {
    atexit([] {
        ProcessLife().ParkAtExit();  // as the toolkit's loop does, in a handler of the host's
        End(ProcessLife().Now() == State::Parked);
    });
    BringTo(ProcessLife(), State::Entering);
    ProcessLife().Enter();
    ProcessLife().Advance(State::Starting);
    exit(0);
}

TEST_F(LifeDeathTest, AnExitOnThePrivateThreadDoesNotWaitForItself) {
    EXPECT_EXIT(ExitOnThePrivateThread(), testing::ExitedWithCode(kAsExpected), "");
}

// Composing a text uses static objects of the toolkit.
void ExitWhileATextIsComposed() {
    static std::atomic<bool> composed{false};
    atexit([] { End(composed); });
    GoFirstAtExit();
    std::thread([] {
        const CatalogueReader reader;
        Seen().reached->Set();
        WaitForEvent(*Seen().never, 30);
        composed = true;
    }).detach();
    WaitForEvent(*Seen().reached, kLongMs);
    exit(0);
}

TEST_F(LifeDeathTest, TheExitWaitsForATextThatIsBeingComposed) {
    EXPECT_EXIT(ExitWhileATextIsComposed(), testing::ExitedWithCode(kAsExpected), "");
}

// Its locks may be taken, and there is no thread to park.
void ExitInAChild() {
    StayIn(State::Up, platform::kNoTimeout, State::Ending);
    const pid_t child = fork();
    if (child == 0) {
        exit(kAsExpected);
    }
    int status = 0;
    _exit(waitpid(child, &status, 0) == child && WIFEXITED(status) ? WEXITSTATUS(status)
                                                                   : kOtherwise);
}

TEST_F(LifeDeathTest, AForkedChildExitsAsItLikes) {
    EXPECT_EXIT(ExitInAChild(), testing::ExitedWithCode(kAsExpected), "");
}

// The C library does not give the child its lock on exit handlers back.
void ForkDuringMoves() {
    std::atomic<bool> ended{false};
    std::thread mover([&ended] {
        while (!ended) {
            GoFirstAtExit();
        }
    });
    int wrong = 0;
    for (int round = 0; round < 100; ++round) {
        const pid_t child = fork();
        if (child == 0) {
            alarm(10);
            exit(kAsExpected);
        }
        int status = 0;
        waitpid(child, &status, 0);
        wrong += WIFEXITED(status) && WEXITSTATUS(status) == kAsExpected ? 0 : 1;
    }
    ended = true;
    mover.join();
    End(wrong == 0);
}

TEST_F(LifeDeathTest, AChildOfAForkDuringMovesExitsToo) {
    EXPECT_EXIT(ForkDuringMoves(), testing::ExitedWithCode(kAsExpected), "");
}

// Long enough for the exit to take it for one that waits for something outside.
void ExitWhileSignalsAreBlocked() {
    atexit([] { End(ProcessLife().Now() == State::Parked); });
    ASSERT_TRUE(ProcessLife().Change(State::Down, State::Entering));
    std::thread([] {
        ProcessLife().Enter();
        ProcessLife().Advance(State::Starting);
        sigset_t all;
        sigset_t before;
        sigfillset(&all);
        pthread_sigmask(SIG_BLOCK, &all, &before);
        Seen().reached->Set();
        WaitForEvent(*Seen().never, Life::kAsleepMs + 400);
        pthread_sigmask(SIG_SETMASK, &before, nullptr);
        WaitForEvent(*Seen().never, kLongMs);
    }).detach();
    WaitForEvent(*Seen().reached, kLongMs);
    exit(0);
}

TEST_F(LifeDeathTest, AThreadThatTakesNoSignalForAWhileIsStoppedAfterwards) {
    EXPECT_EXIT(ExitWhileSignalsAreBlocked(), testing::ExitedWithCode(kAsExpected), "");
}

}  // namespace

// A move that is interrupted once the old place is left; the linker puts it before the real one.
void AfterLeavingAPlace() {
    if (g_slowMove) {
        Seen().reached->Set();
        WaitForEvent(*Seen().never, kSlowCallMs);
    }
}

}  // namespace zeldlg

extern "C" {
void __real___cxa_finalize(void* handle);
void __wrap___cxa_finalize(void* handle);
}

void __wrap___cxa_finalize(void* handle) {
    __real___cxa_finalize(handle);
    zeldlg::AfterLeavingAPlace();
}
