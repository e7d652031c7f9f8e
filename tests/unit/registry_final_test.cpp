// The end of the configuration store. It cannot begin again, so each end takes place in a
// process of its own: the test binary started afresh, or a forked child.
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <functional>
#include <future>
#include <string>
#include <thread>

#include "registry/registry_store.h"
#include "support/registry_fixture.h"

namespace zeldlg::registry {
namespace {

using test::InChild;
using test::Key;
using test::ReadFile;
using test::SetNumber;
using test::SmallRegistry;
using test::WriteFile;

class RegistryFinalDeathTest : public test::RegistryTest {
protected:
    void SetUp() override {
        RegistryTest::SetUp();
        WriteFile(UserFile(), SmallRegistry("00000001"));
    }

    /// Ends the process with what `body` returns.
    void Alone(const std::function<int()>& body) {
        const int result = body();
        scratch.Remove();
        _exit(result);
    }

    /// A changed key that is open.
    static HKEY OpenAndChange() {
        HKEY key = 0;
        EXPECT_EQ(RegOpenKeyEx(HKEY_LOCAL_MACHINE, L"Key", kAccessDefault, &key), kSuccess);
        EXPECT_EQ(SetNumber(key, L"Number", 10), kSuccess);
        return key;
    }

    static RegistryError OpenError() { return Key(HKEY_LOCAL_MACHINE, L"Key").error; }
};

#define EXPECT_ENDS_WITH_0(body)                    \
    GTEST_FLAG_SET(death_test_style, "threadsafe"); \
    EXPECT_EXIT(Alone(body), testing::ExitedWithCode(0), "")

TEST_F(RegistryFinalDeathTest, WritesChangesClosesAllKeysAndEndsTheStore) {
    const auto body = [this] {
        const HKEY key = OpenAndChange();
        RegFinalCleanUp();
        RegFinalCleanUp();
        if (ReadFile(UserFile()) != SmallRegistry("0000000a")) {
            return 1;
        }
        if (OpenError() != kFileError || RegFlush() != kFileError) {
            return 2;
        }
        return RegCloseKey(key) == kFileError ? 0 : 3;
    };
    EXPECT_ENDS_WITH_0(body);
}

TEST_F(RegistryFinalDeathTest, WritesNothingWhenNothingChanged) {
    const auto body = [this] {
        std::filesystem::remove(UserFile());
        RegFinalCleanUp();
        return std::filesystem::exists(UserFile()) ? 1 : 0;
    };
    EXPECT_ENDS_WITH_0(body);
}

TEST_F(RegistryFinalDeathTest, FromWithinAnOperationNeitherHangsNorTakesItsRegistryAway) {
    const auto body = [this] {
        onLookUp = [](std::string_view) { RegFinalCleanUp(); };
        if (OpenError() != kSuccess) {
            return 1;
        }
        return OpenError() == kFileError ? 0 : 2;
    };
    EXPECT_ENDS_WITH_0(body);
}

TEST_F(RegistryFinalDeathTest, DoesNotWaitForeverForAnotherThreadsOperation) {
    const auto body = [this] {
        std::promise<void> entered;
        std::promise<void> leave;
        onLookUp = [&, first = true](std::string_view) mutable {
            if (std::exchange(first, false)) {
                entered.set_value();
                leave.get_future().wait();
            }
        };
        RegistryError error = kFileError;
        std::thread thread([&error] { error = OpenError(); });
        entered.get_future().wait();
        RegFinalCleanUp();
        leave.set_value();
        thread.join();
        return error == kSuccess && OpenError() == kSuccess ? 0 : 1;
    };
    EXPECT_ENDS_WITH_0(body);
}

TEST_F(RegistryFinalDeathTest, InAForkedChildLeavesTheFileToTheParent) {
    const HKEY key = OpenAndChange();
    EXPECT_EQ(InChild([] {
                  RegFinalCleanUp();
                  return 0;
              }),
              0);
    EXPECT_EQ(ReadFile(UserFile()), SmallRegistry("00000001"));
    EXPECT_EQ(RegCloseKey(key), kSuccess);
    EXPECT_EQ(ReadFile(UserFile()), SmallRegistry("0000000a"));
}

}  // namespace
}  // namespace zeldlg::registry
