// The runner of the process: each test has a process of its own, without a display.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>

#include "runtime/gui_runner.h"
#include "runtime/handlers/handler_chain.h"

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
    _exit(runner != nullptr ? static_cast<int>(runner->HandlerCount()) : kOtherwise);
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

}  // namespace
}  // namespace zeldlg
