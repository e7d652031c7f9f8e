// The way of a request through queue, loop and handlers, with a scripted toolkit.
#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <atomic>
#include <deque>
#include <functional>
#include <stdexcept>
#include <thread>
#include <utility>
#include <vector>

#include "runtime/handlers/handlers.h"
#include "runtime/message.h"
#include "runtime/own_runner.h"
#include "runtime/thread.h"
#include "runtime/wx_runner.h"
#include "support/time_limit.h"

namespace zeldlg {
namespace {

using platform::EventHandle;
using platform::ManualResetEvent;
using platform::WaitForEvent;

using State = Life::State;
using test::kLongMs;
using test::WaitUntil;

// What the scripted toolkit was asked, and how it answers.
struct Script {
    Life life;
    bool starts = true;
    bool usable = true;
    std::function<void()> onStart = [] {};
    std::atomic<int> iterations{0};
    std::atomic<int> busyIterations{0};  // that many iterations dispatch something
    std::atomic<bool> stopped{false};
    std::atomic<bool> displayLost{false};  // the next iteration finds out
    std::function<void()> leave;           // what the toolkit was given for that
    std::function<void()> onIterate = [] {};
    std::function<void()> onStop = [] {};
    std::atomic<int> depth{0};
};

class ScriptedToolkit : public Toolkit {
public:
    explicit ScriptedToolkit(Script& script) : m_script(script) {}
    bool Start(const std::function<void()>& leave) override {
        m_script.leave = leave;
        m_script.onStart();
        return m_script.starts;
    }
    bool Iterate() override {
        ++m_script.iterations;
        if (m_script.displayLost) {
            m_script.leave();
        }
        m_script.onIterate();
        return m_script.busyIterations-- > 0;
    }
    bool Enter() override {
        m_script.depth += m_script.usable ? 1 : 0;
        return m_script.usable;
    }
    void Leave() override { --m_script.depth; }
    void Stop() override {
        m_script.onStop();
        m_script.stopped = true;
    }

private:
    Script& m_script;
};

std::unique_ptr<OwnRunner> MakeRunner(Script& script, const std::vector<RequestHandler>& handlers) {
    return std::make_unique<OwnRunner>(script.life, std::make_unique<ScriptedToolkit>(script),
                                       handlers);
}

template <typename T>
T* As(uint64_t parameter) {
    return reinterpret_cast<T*>(parameter);
}

bool AddOne(CMessage* message) {
    if (message->Code() != 1) {
        return false;
    }
    ++*As<uint64_t>(message->Param2());
    return true;
}

bool Throw(CMessage* message) {
    if (message->Code() == 2) {
        throw std::runtime_error("broken handler");
    }
    return false;
}

// Takes every code: what comes behind it sees only what was not taken before.
bool MarkUntaken(CMessage* message) {
    *As<uint64_t>(message->Param2()) = 99;
    return true;
}

TEST(Message, CarriesCodeAndParameters) {
    const CMessage message(0x1301, 5, 7);
    EXPECT_EQ(message.Code(), 0x1301U);
    EXPECT_EQ(message.Param1(), 5U);
    EXPECT_EQ(message.Param2(), 7U);
}

TEST(Message, IsOrderedByCode) {
    const CMessage small(1, 9, 9);
    const CMessage large(2, 0, 0);
    EXPECT_TRUE(small < large);
    EXPECT_TRUE(large > small);
    EXPECT_FALSE(large < small);
    EXPECT_FALSE(small > large);
    EXPECT_FALSE(small < small);
}

TEST(Message, CompletingACopyReleasesTheWaiterOfTheOriginal) {
    CMessage original(1, 2, 3);
    CMessage copy(original);
    EXPECT_EQ(copy.Param2(), 3U);
    copy.Complete();
    original.WaitDone();
}

TEST(Message, CanBeSentAgainAfterTheWait) {
    CMessage message(1, 0, 0);
    for (int round = 0; round < 3; ++round) {
        std::thread completer([&] { message.Complete(); });
        message.WaitDone();
        completer.join();
    }
}

TEST(Message, RaisesTheHandlersExceptionOnce) {
    CMessage message(1, 0, 0);
    message.Complete(std::make_exception_ptr(std::runtime_error("x")));
    EXPECT_THROW(message.WaitDone(), std::runtime_error);
    message.Complete();
    EXPECT_NO_THROW(message.WaitDone());
}

class CountingThread : public CThread {
public:
    using CThread::CThread;
    ~CountingThread() override {
        release.Set();
        Join();
    }
    void Run(void* argument) override {
        EXPECT_EQ(NativeId(), gettid());
        ++*static_cast<std::atomic<int>*>(argument);
        WaitForEvent(release, kLongMs);
    }
    ManualResetEvent release;
};

TEST(Thread, StartsOnceAtATimeAndAgainAfterItsEnd) {
    std::atomic<int> runs{0};
    Life life;
    CountingThread thread(life);
    EXPECT_FALSE(thread.IsRunning());
    ASSERT_TRUE(thread.Start(&runs));
    EXPECT_FALSE(thread.Start(&runs)) << "it is running";
    thread.release.Set();
    EXPECT_TRUE(WaitUntil([&] { return !thread.IsRunning(); }));
    EXPECT_TRUE(thread.Start(&runs));
    EXPECT_TRUE(thread.Join());
    EXPECT_EQ(runs, 2);
}

TEST(Thread, TheBaseBodyDoesNothing) {
    Life life;
    CThread thread(life);
    ASSERT_TRUE(thread.Start(nullptr));
    EXPECT_TRUE(thread.Join());
    EXPECT_FALSE(thread.IsRunning());
}

class SleepingThread : public CThread {
public:
    using CThread::CThread;
    void Run(void*) override { pause(); }
};

TEST(Thread, DestructionCancelsAThreadThatIsStillRunning) {
    Life life;
    SleepingThread thread(life);
    ASSERT_TRUE(thread.Start(nullptr));
    ASSERT_TRUE(WaitUntil([&] { return thread.NativeId() != 0; }));
    EXPECT_TRUE(thread.IsRunning());
    EXPECT_TRUE(thread.Cancel());
    EXPECT_FALSE(thread.IsRunning());
}

TEST(Runner, OffersARequestToTheHandlersInOrderUntilOneTakesIt) {
    Script script;
    const auto runner = MakeRunner(script, {AddOne, MarkUntaken});
    uint64_t reply = 0;
    CMessage taken(1, 0, reinterpret_cast<uint64_t>(&reply));
    EXPECT_TRUE(runner->Send(taken));
    EXPECT_EQ(reply, 1U);
    CMessage other(5, 0, reinterpret_cast<uint64_t>(&reply));
    EXPECT_TRUE(runner->Send(other));
    EXPECT_EQ(reply, 99U);
}

TEST(Runner, ARequestThatNobodyTakesIsCompletedWithItsReplyUntouched) {
    Script script;
    const auto runner = MakeRunner(script, {AddOne});
    uint64_t reply = 42;
    for (const uint64_t code : {0x1008U, 0x199fU}) {
        CMessage message(code, 0, reinterpret_cast<uint64_t>(&reply));
        EXPECT_TRUE(runner->Send(message));
    }
    EXPECT_EQ(reply, 42U);
}

TEST(HandlerChain, NoHandlerTakesACodeThatIsNotItsOwn) {
    for (const uint64_t code :
         {0x0ULL,    0x1000ULL, 0x1008ULL, 0x1100ULL, 0x1105ULL, 0x1200ULL, 0x1202ULL,
          0x1300ULL, 0x1303ULL, 0x1400ULL, 0x1404ULL, 0x1500ULL, 0x1502ULL, 0x1600ULL,
          0x1603ULL, 0x1700ULL, 0x1703ULL, 0x1800ULL, 0x1802ULL, 0x1900ULL, 0x1902ULL,
          0x1980ULL, 0x1985ULL, 0x1990ULL, 0x199fULL, 0x19f0ULL, 0x19f2ULL, 0x1'0000'1301ULL}) {
        CMessage message(code, 0, 0);
        for (const RequestHandler handler : HandlerChain()) {
            EXPECT_FALSE(handler(&message)) << std::hex << code;
        }
    }
}

TEST(Runner, AHandlersExceptionReachesItsCallerAndNobodyElse) {
    Script script;
    const auto runner = MakeRunner(script, {Throw, AddOne});
    CMessage broken(2, 0, 0);
    EXPECT_THROW(runner->Send(broken), std::runtime_error);
    EXPECT_EQ(script.depth, 0);
    uint64_t reply = 0;
    CMessage good(1, 0, reinterpret_cast<uint64_t>(&reply));
    EXPECT_TRUE(runner->Send(good));
    EXPECT_EQ(reply, 1U);
}

TEST(Runner, ARequestWaitsForAToolkitThatIsSlowToStart) {
    Script script;
    ManualResetEvent mayStart;
    script.onStart = [&] { WaitForEvent(mayStart, kLongMs); };
    const auto runner = MakeRunner(script, {AddOne});
    uint64_t reply = 0;
    std::atomic<bool> returned{false};
    std::thread host([&] {
        CMessage message(1, 0, reinterpret_cast<uint64_t>(&reply));
        EXPECT_TRUE(runner->Send(message));
        returned = true;
    });
    EXPECT_FALSE(returned);
    mayStart.Set();
    host.join();
    EXPECT_EQ(reply, 1U);
}

TEST(Runner, RequestsFailAtOnceAfterAFailedStart) {
    Script script;
    script.starts = false;
    const auto runner = MakeRunner(script, {AddOne});
    ASSERT_TRUE(WaitUntil([&] { return !runner->IsRunning(); }));
    CMessage message(1, 0, 0);
    EXPECT_FALSE(runner->Send(message));
    EXPECT_FALSE(script.stopped);
}

// Whoever held it when it ended comes with a request while the next one runs.
TEST(Runner, ARunnerThatHasEndedTakesNothingWhileAnotherRuns) {
    for (const bool starts : {true, false}) {
        Script script;
        script.starts = starts;
        const auto ended = MakeRunner(script, {AddOne});
        ended->Stop();
        ASSERT_TRUE(WaitUntil([&] { return !ended->IsRunning(); }));
        script.starts = true;
        const auto runner = MakeRunner(script, {AddOne});
        uint64_t reply = 0;
        CMessage message(1, 0, reinterpret_cast<uint64_t>(&reply));
        EXPECT_FALSE(ended->Send(message));
        EXPECT_TRUE(runner->Send(message));
        EXPECT_EQ(reply, 1U);
    }
}

TEST(Runner, AStartThatThrowsIsAFailedStart) {
    Script script;
    script.onStart = [] { throw std::bad_alloc(); };
    const auto runner = MakeRunner(script, {AddOne});
    ASSERT_TRUE(WaitUntil([&] { return !runner->IsRunning(); }));
    CMessage message(1, 0, 0);
    EXPECT_FALSE(runner->Send(message));
}

// A runner whose thread stays in it for good, as it does when its display is lost or the process
// exits: never destroyed, with its script.
struct Staying {
    explicit Staying(
        const std::vector<RequestHandler>& handlers,
        const std::function<void(Script&)>& prepare = [](Script&) {}) {
        prepare(script);
        runner = MakeRunner(script, handlers);
    }
    Script script;
    std::unique_ptr<OwnRunner> runner;
};

Staying& MakeStaying(
    const std::vector<RequestHandler>& handlers,
    const std::function<void(Script&)>& prepare = [](Script&) {}) {
    static auto* const all = new std::vector<std::unique_ptr<Staying>>;
    return *all->emplace_back(std::make_unique<Staying>(handlers, prepare));
}

bool LoseDisplayWhileServing(CMessage* message) {
    if (message->Code() == 3) {
        As<Script>(message->Param1())->leave();
    }
    return false;
}

TEST(Runner, ADisplayThatIsLostWhileARequestIsServedFailsIt) {
    Staying& staying = MakeStaying({LoseDisplayWhileServing, AddOne});
    uint64_t reply = 0;
    CMessage losing(3, reinterpret_cast<uint64_t>(&staying.script), 0);
    EXPECT_THROW(staying.runner->Send(losing), std::runtime_error);
    EXPECT_EQ(staying.script.life.Now(), State::Lost);
    CMessage later(1, 0, reinterpret_cast<uint64_t>(&reply));
    EXPECT_FALSE(staying.runner->Send(later));
    staying.runner->Stop();
    EXPECT_EQ(reply, 0U);
    EXPECT_FALSE(staying.script.stopped);
}

TEST(Runner, ADisplayThatIsLostBetweenRequestsFailsTheNext) {
    Staying& staying = MakeStaying({AddOne});
    staying.script.displayLost = true;
    ASSERT_TRUE(WaitUntil([&] { return !staying.runner->IsRunning(); }));
    uint64_t reply = 0;
    CMessage message(1, 0, reinterpret_cast<uint64_t>(&reply));
    EXPECT_FALSE(staying.runner->Send(message));
}

TEST(Runner, ADisplayThatIsLostDuringTheStartFailsWhatWasSentMeanwhile) {
    static ManualResetEvent mayLose;
    Staying& staying = MakeStaying({AddOne}, [](Script& script) {
        script.onStart = [&script] {
            WaitForEvent(mayLose, kLongMs);
            script.leave();
        };
    });
    std::thread host([&] {
        CMessage message(1, 0, 0);
        EXPECT_THROW(staying.runner->Send(message), std::runtime_error);
    });
    WaitForEvent(*EventHandle::Create(), 20);  // as a rule it waits by now
    mayLose.Set();
    host.join();
    EXPECT_EQ(staying.script.life.Now(), State::Lost);
    staying.runner->Stop();
}

TEST(Runner, ADisplayThatIsLostDuringTheEndEndsTheWaitForIt) {
    Staying& staying = MakeStaying({AddOne});
    staying.script.onStop = [&] { staying.script.leave(); };
    staying.runner->Stop();
    EXPECT_EQ(staying.script.life.Now(), State::Lost);
    CMessage message(1, 0, 0);
    EXPECT_FALSE(staying.runner->Send(message));
}

bool ServeUntilParked(CMessage* message) {
    if (message->Code() == 3) {
        auto& life = *As<Life>(message->Param1());
        for (;;) {
            life.ParkAtExit();  // as a dialog's own loop does
        }
    }
    return false;
}

TEST(Runner, NobodyElseWaitsForAThreadThatIsParkedInARequest) {
    Staying& staying = MakeStaying({ServeUntilParked, AddOne});
    static std::atomic<bool> isBack{false};
    std::thread([&staying] {
        CMessage parking(3, reinterpret_cast<uint64_t>(&staying.script.life), 0);
        staying.runner->Send(parking);
        isBack = true;
    }).detach();
    ASSERT_TRUE(WaitUntil([&] { return staying.script.depth == 1; }));
    EXPECT_EQ(staying.script.life.Exit(), Life::AtExit::GoOn);
    EXPECT_EQ(staying.script.life.Now(), State::Parked);
    uint64_t reply = 0;
    CMessage later(1, 0, reinterpret_cast<uint64_t>(&reply));
    EXPECT_FALSE(staying.runner->Send(later));
    staying.runner->Stop();
    EXPECT_EQ(reply, 0U);
    EXPECT_FALSE(staying.script.stopped);
    EXPECT_FALSE(isBack);
}

TEST(Runner, AThreadIsParkedBetweenRequestsHoweverManyAreSent) {
    Staying& staying = MakeStaying({AddOne});
    static std::atomic<int> served{0};
    for (int caller = 0; caller < 4; ++caller) {
        std::thread([&staying] {
            for (bool carriedOut = true; carriedOut; ++served) {
                uint64_t reply = 0;
                CMessage message(1, 0, reinterpret_cast<uint64_t>(&reply));
                carriedOut = staying.runner->Send(message);
            }
        }).detach();
    }
    ASSERT_TRUE(WaitUntil([&] { return served > 100; }));
    EXPECT_EQ(staying.script.life.Exit(), Life::AtExit::GoOn);
    EXPECT_EQ(staying.script.life.Now(), State::Parked);
    EXPECT_FALSE(staying.script.stopped);
}

TEST(Runner, RequestsFailWhileTheToolkitBelongsToSomebodyElse) {
    Script script;
    const auto runner = MakeRunner(script, {AddOne});
    script.usable = false;
    uint64_t reply = 0;
    CMessage message(1, 0, reinterpret_cast<uint64_t>(&reply));
    EXPECT_THROW(runner->Send(message), std::runtime_error);
    EXPECT_EQ(reply, 0U);
    script.usable = true;
    EXPECT_TRUE(runner->Send(message));
    EXPECT_EQ(reply, 1U);
}

TEST(Runner, EightThreadsEachGetTheirOwnAnswer) {
    Script script;
    const auto runner = MakeRunner(script, {AddOne});
    std::vector<std::thread> threads;
    std::atomic<int> right{0};
    for (uint64_t i = 0; i < 8; ++i) {
        threads.emplace_back([&, i] {
            for (uint64_t round = 0; round < 500; ++round) {
                uint64_t reply = i * 1000 + round;
                CMessage message(1, 0, reinterpret_cast<uint64_t>(&reply));
                right += runner->Send(message) && reply == i * 1000 + round + 1 ? 1 : 0;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(right, 8 * 500);
}

// Appends param1 to the list that param2 points to.
bool RecordOrder(CMessage* message) {
    As<std::vector<uint64_t>>(message->Param2())->push_back(message->Param1());
    return true;
}

TEST(Runner, RequestsAreServedInTheOrderInWhichTheyWereQueuedWithoutAnotherSettingOfTheEvent) {
    Script script;
    const auto started = EventHandle::Create();
    const auto quit = EventHandle::Create();
    const auto request = EventHandle::Create();
    CWXRunner runner(script.life, started.Get(), quit.Get(),
                     std::make_unique<ScriptedToolkit>(script), {});
    runner.RegisterHandler(RecordOrder);
    ManualResetEvent mayStart;
    script.onStart = [&] { WaitForEvent(mayStart, kLongMs); };
    ASSERT_TRUE(runner.Start(request.Get()));
    std::vector<uint64_t> order;
    std::deque<CMessage> messages;
    for (uint64_t number = 1; number <= 5; ++number) {
        ASSERT_TRUE(
            runner.Queue(&messages.emplace_back(1, number, reinterpret_cast<uint64_t>(&order))));
    }
    request->Set();
    mayStart.Set();
    for (CMessage& message : messages) {
        message.WaitDone();
    }
    EXPECT_EQ(order, (std::vector<uint64_t>{1, 2, 3, 4, 5}));
    EXPECT_TRUE(WaitUntil([&] { return !WaitForEvent(*request, 0); })) << "it stays set";
    quit->Set();
    EXPECT_TRUE(runner.Join());
}

// Stores the current parent through param2 and puts another in its place.
bool ChangeParent(CMessage* message) {
    *As<wxWindow*>(message->Param2()) =
        std::exchange(g_currentParent, reinterpret_cast<wxWindow*>(message->Param1()));
    return true;
}

TEST(Runner, AHandlersChangeOfTheCurrentParentEndsWithItsRequest) {
    Script script;
    const auto runner = MakeRunner(script, {ChangeParent});
    for (const uint64_t parent : {0x10U, 0x20U, 0x30U}) {
        auto* seen = reinterpret_cast<wxWindow*>(1);
        CMessage message(1, parent, reinterpret_cast<uint64_t>(&seen));
        ASSERT_TRUE(runner->Send(message));
        EXPECT_EQ(seen, nullptr);
    }
    EXPECT_EQ(g_currentParent, nullptr);
}

TEST(Runner, StopWhileThreadsCallLeavesNobodyWaiting) {
    for (int round = 0; round < 50; ++round) {
        Script script;
        const auto runner = MakeRunner(script, {AddOne});
        std::atomic<int> served{0};
        std::vector<std::thread> threads;
        for (int i = 0; i < 4; ++i) {
            threads.emplace_back([&] {
                for (;;) {
                    uint64_t reply = 0;
                    CMessage message(1, 0, reinterpret_cast<uint64_t>(&reply));
                    try {
                        if (!runner->Send(message)) {
                            return;
                        }
                        ++served;
                    } catch (const std::runtime_error&) {
                        return;
                    }
                }
            });
        }
        ASSERT_TRUE(WaitUntil([&] { return served > 10; }));
        runner->Stop();
        for (std::thread& thread : threads) {
            thread.join();
        }
        EXPECT_TRUE(script.stopped);
    }
}

TEST(Runner, ServesTheToolkitWithoutPauseWhileItIsBusy) {
    Script script;
    // With a pause of ten milliseconds after each, nobody would wait for the last.
    constexpr int kIterations = kLongMs / 5;
    script.busyIterations = kIterations;
    const auto runner = MakeRunner(script, {});
    EXPECT_TRUE(WaitUntil([&] { return script.iterations >= kIterations; }));
}

TEST(Runner, PollsAtMostAHundredTimesASecondWhenIdle) {
    Script script;
    const auto runner = MakeRunner(script, {});
    ASSERT_TRUE(WaitUntil([&] { return script.iterations >= 1; }));
    const int before = script.iterations;
    const auto start = std::chrono::steady_clock::now();
    EXPECT_TRUE(WaitUntil([&] { return script.iterations >= before + 30; }));
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(280));
}

// Sends the next message before it is done with one, so that the queue is never empty.
struct Chain {
    CWXRunner& runner;
    ManualResetEvent& requestEvent;
    int left;
    std::deque<CMessage> messages{};
    ManualResetEvent allSent{};
    void SendNext() {
        runner.Queue(&messages.emplace_back(1, reinterpret_cast<uint64_t>(this), 0));
        requestEvent.Set();
    }
};

bool ServeChain(CMessage* message) {
    auto& chain = *As<Chain>(message->Param1());
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
    if (--chain.left > 0) {
        chain.SendNext();
    } else {
        chain.allSent.Set();
    }
    return true;
}

// How often the toolkit was asked for work during two hundred milliseconds of requests.
int IterationsDuringRequests(int busyIterations) {
    Script script;
    script.busyIterations = busyIterations;
    const auto started = EventHandle::Create();
    const auto quit = EventHandle::Create();
    const auto request = EventHandle::Create();
    CWXRunner runner(script.life, started.Get(), quit.Get(),
                     std::make_unique<ScriptedToolkit>(script),
                     std::vector<RequestHandler>{ServeChain});
    Chain chain{runner, *request, 200};
    EXPECT_TRUE(runner.Start(request.Get()));
    EXPECT_TRUE(WaitForEvent(*started, kLongMs));
    const int before = script.iterations;
    chain.SendNext();
    EXPECT_TRUE(WaitForEvent(chain.allSent, kLongMs));
    for (CMessage& message : chain.messages) {
        message.WaitDone();
    }
    const int iterations = script.iterations - before;
    quit->Set();
    EXPECT_TRUE(runner.Join());
    return iterations;
}

TEST(Runner, WindowsAreServedEveryTenMillisecondsWhateverIsRequested) {
    EXPECT_GE(IterationsDuringRequests(0), 10);
}

TEST(Runner, WindowsThatHaveMuchToDoTakeTurnsWithRequests) {
    EXPECT_GE(IterationsDuringRequests(1'000'000), 100);
}

bool RecordSignalMask(CMessage* message) {
    pthread_sigmask(SIG_BLOCK, nullptr, As<sigset_t>(message->Param2()));
    return true;
}

TEST(Runner, TheGuiThreadTakesNoneOfTheHostsSignals) {
    Script script;
    const auto runner = MakeRunner(script, {RecordSignalMask});
    sigset_t mask;
    sigemptyset(&mask);
    CMessage message(1, 0, reinterpret_cast<uint64_t>(&mask));
    ASSERT_TRUE(runner->Send(message));
    for (const int blocked : {SIGPIPE, SIGINT, SIGTERM, SIGHUP, SIGALRM, SIGCHLD, SIGUSR1}) {
        EXPECT_EQ(sigismember(&mask, blocked), 1) << blocked;
    }
    for (const int synchronous : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT}) {
        EXPECT_EQ(sigismember(&mask, synchronous), 0) << synchronous;
    }
}

TEST(Runner, ASpuriousWakeUpServesNothing) {
    Script script;
    const auto started = EventHandle::Create();
    const auto quit = EventHandle::Create();
    const auto request = EventHandle::Create();
    CWXRunner runner(script.life, started.Get(), quit.Get(),
                     std::make_unique<ScriptedToolkit>(script), {});
    request->Set();
    ASSERT_TRUE(runner.Start(request.Get()));
    EXPECT_TRUE(WaitUntil([&] { return script.iterations >= 2; }));
    quit->Set();
    EXPECT_TRUE(runner.Join());
    CMessage late(1, 0, 0);
    EXPECT_FALSE(runner.Queue(&late)) << "the thread has left its loop";
}

}  // namespace
}  // namespace zeldlg
