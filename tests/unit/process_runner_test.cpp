// The runner of the process: each test has a process of its own, without a display.
#include <glib.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "registry/registry_store.h"
#include "runtime/gui_runner.h"
#include "runtime/handlers/handlers.h"
#include "runtime/own_runner.h"
#include "runtime/wx_toolkit.h"

namespace zeldlg {
namespace {

constexpr int kOtherwise = 99;

class ProcessRunnerDeathTest : public testing::Test {
protected:
    void SetUp() override { GTEST_FLAG_SET(death_test_style, "threadsafe"); }

    static int HandlersOfAChain() { return static_cast<int>(HandlerChain().size()); }
};

void LoseDisplay() {
    for (const char* const name : {"DISPLAY", "WAYLAND_DISPLAY"}) {
        unsetenv(name);
    }
}

[[noreturn]] void EndWithHandlersOf(const GuiRunner* runner) {
    const auto* const own = dynamic_cast<const OwnRunner*>(runner);
    _exit(own != nullptr ? static_cast<int>(own->HandlerCount()) : kOtherwise);
}

void AskTwice() {
    LoseDisplay();
    const GuiRunner* const first = GetGuiRunner();
    EndWithHandlersOf(GetGuiRunner() == first ? first : nullptr);
}

// A chain that is registered twice answers as one does: only the count tells.
TEST_F(ProcessRunnerDeathTest, TheSecondCallRegistersNoHandlers) {
    EXPECT_EXIT(AskTwice(), testing::ExitedWithCode(HandlersOfAChain()), "");
}

void StartAnew() {
    LoseDisplay();
    GetGuiRunner();
    DestroyGuiRunner();
    EndWithHandlersOf(GetGuiRunner());
}

TEST_F(ProcessRunnerDeathTest, AnotherRunnerHasTheWholeChainAgain) {
    EXPECT_EXIT(StartAnew(), testing::ExitedWithCode(HandlersOfAChain()), "");
}

// A lack of memory shows in the same way.
void FailInTheMidstOfAStart() {
    LoseDisplay();
    registry::RegistryPlaces places;
    places.environment = [](const char*) -> std::optional<std::string> {
        throw std::runtime_error("no settings");
    };
    registry::SetRegistryPlaces(places);
    WxToolkit toolkit;
    bool raised = false;
    try {
        toolkit.Start([] {});
    } catch (const std::runtime_error&) {
        raised = true;
    }
    bool free = false;
    std::thread([&free] { free = g_main_context_acquire(nullptr) != FALSE; }).join();
    _exit(raised && free ? 0 : kOtherwise);
}

TEST_F(ProcessRunnerDeathTest, AStartThatRaisesKeepsNothingOfTheProcess) {
    EXPECT_EXIT(FailInTheMidstOfAStart(), testing::ExitedWithCode(0), "");
}

// As long as `work` goes on, threads beside it ask; how often one of them was told yes.
template <typename Question, typename Work>
int YesesBeside(const Question& question, const Work& work) {
    constexpr int kThreads = 4;
    std::atomic<bool> isOver{false};
    std::atomic<int> yeses{0};
    std::vector<std::thread> threads;
    for (int thread = 0; thread < kThreads; ++thread) {
        threads.emplace_back([&] {
            while (!isOver) {
                yeses += question() ? 1 : 0;
            }
        });
    }
    work();
    isOver = true;
    for (std::thread& thread : threads) {
        thread.join();
    }
    return yeses;
}

void StartAgainAndAgain() {
    for (int start = 0; start < 100; ++start) {
        GetGuiRunner();
        DestroyGuiRunner();
    }
}

void AskForTheServerBesideStarts() {
    LoseDisplay();
    unsetenv("ZELDLG_PROCESS");
    _exit(YesesBeside(IsServedByHelper, StartAgainAndAgain) == 0 ? 0 : kOtherwise);
}

TEST_F(ProcessRunnerDeathTest, AThreadOfOursThatStartsOrEndsIsNoToolkitOfSomebodyElse) {
    EXPECT_EXIT(AskForTheServerBesideStarts(), testing::ExitedWithCode(0), "");
}

void LookBesideOthers() {
    const auto look = [] {
        for (int looks = 0; looks < 500; ++looks) {
            WxToolkit::IsTaken();
        }
    };
    _exit(YesesBeside(WxToolkit::IsTaken, look) == 0 ? 0 : kOtherwise);
}

TEST_F(ProcessRunnerDeathTest, ThreadsThatLookAtOnceDoNotSeeEachOther) {
    EXPECT_EXIT(LookBesideOthers(), testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace zeldlg
