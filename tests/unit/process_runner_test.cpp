// The runner of the process, in children of their own that have no display.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>

#include "runtime/gui_runner.h"
#include "runtime/handlers/handler_chain.h"
#include "support/registry_fixture.h"

namespace zeldlg {
namespace {

using registry::test::InChild;

// The toolkit complains of that.
void LoseDisplay() {
    static_cast<void>(std::freopen("/dev/null", "w", stderr));
    for (const char* const name : {"DISPLAY", "WAYLAND_DISPLAY"}) {
        unsetenv(name);
    }
}

// A chain that is registered twice answers as one does: only the count tells.
TEST(ProcessRunner, TheSecondCallRegistersNoHandlers) {
    EXPECT_EQ(InChild([] {
                  LoseDisplay();
                  const GuiRunner* const first = GetGuiRunner();
                  const bool isSame = GetGuiRunner() == first;
                  return isSame ? static_cast<int>(first->HandlerCount()) : -1;
              }),
              static_cast<int>(HandlerChain().size()));
}

TEST(ProcessRunner, AnotherRunnerHasTheWholeChainAgain) {
    EXPECT_EQ(InChild([] {
                  LoseDisplay();
                  GetGuiRunner();
                  DestroyGuiRunner();
                  return static_cast<int>(GetGuiRunner()->HandlerCount());
              }),
              static_cast<int>(HandlerChain().size()));
}

}  // namespace
}  // namespace zeldlg
