// The system's time is set back by an hour: no wait may notice.
#include <gtest/gtest.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <ctime>
#include <future>
#include <thread>

#include "platform/event.h"
#include "registry/registry_lock.h"
#include "registry/registry_store.h"
#include "support/registry_fixture.h"

namespace zeldlg::test {

static std::atomic<time_t> g_setBackBy{0};  // seconds

}  // namespace zeldlg::test

// In place of the C library's, for all that is linked into this program.
extern "C" __attribute__((visibility("default"))) int clock_gettime(clockid_t clock,
                                                                    timespec* now) noexcept {
    const int result = static_cast<int>(syscall(SYS_clock_gettime, clock, now));
    if (result == 0 && clock == CLOCK_REALTIME) {
        now->tv_sec -= zeldlg::test::g_setBackBy;
    }
    return result;
}

namespace zeldlg {
namespace {

class SetBackClock {
public:
    SetBackClock() { test::g_setBackBy = 3600; }
    ~SetBackClock() { test::g_setBackBy = 0; }
    SetBackClock(const SetBackClock&) = delete;
    SetBackClock& operator=(const SetBackClock&) = delete;
};

TEST(WaitClock, IsNotTheOneThatTheTestSetsBack) {
    const auto before = std::chrono::system_clock::now();
    const auto start = std::chrono::steady_clock::now();
    const SetBackClock setBack;
    EXPECT_LT(std::chrono::system_clock::now(), before);
    EXPECT_GE(std::chrono::steady_clock::now(), start);
}

// A deadline on that clock would lie an hour in the kernel's past, and the wait end at once.
TEST(WaitClock, MeasuresHowLongAnEventIsWaitedFor) {
    const SetBackClock setBack;
    platform::ManualResetEvent never;
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(platform::WaitForEvent(never, 50));
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(49));
}

TEST(WaitClock, LeavesTimeForAnEventThatIsSetLater) {
    const SetBackClock setBack;
    platform::ManualResetEvent event;
    std::thread setter([&event] {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        event.Set();
    });
    EXPECT_TRUE(platform::WaitForEvent(event, 20'000));
    setter.join();
}

// The store cannot begin again: a process of its own.
class WaitClockDeathTest : public registry::test::RegistryTest {
protected:
    /// The end comes while another thread holds the lock, for a moment longer.
    void EndWhileTheStoreIsInUse() {
        registry::HKEY key = 0;
        registry::RegOpenKeyEx(registry::HKEY_LOCAL_MACHINE, L"Key", registry::kAccessDefault,
                               &key);
        registry::test::SetNumber(key, L"Number", 10);
        std::promise<void> entered;
        std::thread user([&entered] {
            const registry::RegistryLock lock;
            entered.set_value();
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
        });
        entered.get_future().wait();
        {
            const SetBackClock setBack;
            registry::RegFinalCleanUp();
        }
        user.join();
        const bool written =
            registry::test::ReadFile(UserFile()) == registry::test::SmallRegistry("0000000a");
        scratch.Remove();
        _exit(written ? 0 : 1);
    }
};

TEST_F(WaitClockDeathTest, MeasuresHowLongTheStoresEndWaits) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    registry::test::WriteFile(UserFile(), registry::test::SmallRegistry("00000001"));
    EXPECT_EXIT(EndWhileTheStoreIsInUse(), testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace zeldlg
