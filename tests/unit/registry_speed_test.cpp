// Reading one setting must cost little more than reading the file, however large it is.
#include <fcntl.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <functional>
#include <string>

#include "registry/registry_file.h"
#include "registry/settings.h"
#include "support/registry_fixture.h"

namespace zeldlg::registry {
namespace {

using RegistrySpeed = test::RegistryTest;

std::chrono::nanoseconds BestOf(int runs, const std::function<void()>& body) {
    auto best = std::chrono::nanoseconds::max();
    for (; runs > 0; --runs) {
        const auto start = std::chrono::steady_clock::now();
        body();
        best = std::min<std::chrono::nanoseconds>(best, std::chrono::steady_clock::now() - start);
    }
    return best;
}

constexpr bool IsOptimisedBuild() {
#if defined(__OPTIMIZE__) && !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
    return true;
#else
    return false;
#endif
}

TEST_F(RegistrySpeed, SettingAmongTenThousandKeysIsReadWithinFiveTimesTheReadingOfTheFile) {
    if (!IsOptimisedBuild()) {
        GTEST_SKIP() << "says nothing without optimisation";
    }
    std::string content = "REGEDIT4\r\n\r\n";
    for (int i = 0; i < 10000; ++i) {
        content.append(R"([HKEY_LOCAL_MACHINE\SOFTWARE\Corvenna\Tessaly\2.0\Section)")
            .append(std::to_string(i))
            .append("]\r\n\"Number\"=dword:00000001\r\n\"Text\"=\"some text\"\r\n\r\n");
    }
    test::WriteFile(UserFile(), content);

    std::size_t lines = 0;
    const auto reading = BestOf(20, [&] {
        FileContent file;
        ASSERT_EQ(ReadContent(FileDescriptor::Open(UserFile(), O_RDONLY), file), kSuccess);
        const char* at = file.text.get();
        const char* end = at + file.size;
        for (lines = 0; at < end; ++lines) {
            at = static_cast<const char*>(
                     std::memchr(at, '\n', static_cast<std::size_t>(end - at))) +
                 1;
        }
    });
    ASSERT_EQ(lines, 40002U);
    const auto setting = BestOf(20, [] {
        ASSERT_EQ(ReadDword(L"SOFTWARE\\Corvenna\\Tessaly\\2.0\\section9999", L"number"), 1U);
    });
    EXPECT_LT(setting, reading * 5) << setting.count() << " ns against " << reading.count();
}

}  // namespace
}  // namespace zeldlg::registry
