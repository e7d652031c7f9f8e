// Which process is wished for.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>

#include "registry/process_wish.h"
#include "registry/registry_places.h"
#include "registry/registry_store.h"

namespace zeldlg::registry {
namespace {

TEST(ProcessWish, ThreeWordsAreKnownAndNoOther) {
    EXPECT_EQ(ProcessWishOf("auto"), ProcessWish::Auto);
    EXPECT_EQ(ProcessWishOf("own"), ProcessWish::Own);
    EXPECT_EQ(ProcessWishOf("helper"), ProcessWish::Helper);
    for (const char* const other : {"", "Helper", "helper ", "1"}) {
        EXPECT_EQ(ProcessWishOf(other), std::nullopt) << other;
    }
}

// A process of its own each: what is read is kept.
class ProcessWishDeathTest : public testing::Test {
protected:
    void SetUp() override { GTEST_FLAG_SET(death_test_style, "threadsafe"); }

    [[noreturn]] static void EndWithWish(const char* word) {
        RegistryPlaces nowhere;
        nowhere.environment = [](const char*) { return std::nullopt; };
        SetRegistryPlaces(nowhere);
        setenv(kProcessVariable, word, 1);
        const ProcessWish first = WishForProcess();
        setenv(kProcessVariable, "own", 1);
        _exit(first == WishForProcess() ? static_cast<int>(first) : 99);
    }
};

TEST_F(ProcessWishDeathTest, TheEnvironmentIsReadOnce) {
    EXPECT_EXIT(EndWithWish("helper"),
                testing::ExitedWithCode(static_cast<int>(ProcessWish::Helper)), "");
}

TEST_F(ProcessWishDeathTest, AWordThatIsNotKnownCountsAsNone) {
    EXPECT_EXIT(EndWithWish("both"), testing::ExitedWithCode(static_cast<int>(ProcessWish::Auto)),
                "");
}

}  // namespace
}  // namespace zeldlg::registry
