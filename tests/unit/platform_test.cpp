#include <dlfcn.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "platform/broken_down_time.h"
#include "platform/event.h"
#include "platform/random_bytes.h"
#include "platform/shared_object.h"
#include "platform/text_output.h"
#include "platform/thread.h"

namespace zeldlg::platform {
namespace {

class TemporaryDirectory {
public:
    TemporaryDirectory() {
        std::string name = (std::filesystem::temp_directory_path() / "zeldlg-XXXXXX").string();
        m_path = mkdtemp(name.data());
    }
    ~TemporaryDirectory() { std::filesystem::remove_all(m_path); }
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    std::string File(const char* name) const { return m_path + "/" + name; }

private:
    std::string m_path;
};

std::string ReadFile(const std::string& path) {
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}

TEST(FormatString, ShortText) {
    std::string out = "before";
    FormatString(out, "%s %d", "PIN", 4);
    EXPECT_EQ(out, "PIN 4");
}

TEST(FormatString, TextsAroundTheFirstBufferComeOutWhole) {
    for (const size_t length : {126U, 127U, 128U, 129U, 5000U}) {
        const std::string text(length, 'x');
        std::string out;
        FormatString(out, "%s", text.c_str());
        EXPECT_EQ(out, text) << length;
    }
}

TEST(FormatString, MessageLongerThan127CharactersIsFormattedCompletely) {
    std::string out;
    FormatString(out, "%200d|%s", 7, "end");
    EXPECT_EQ(out.size(), 204U);
    EXPECT_EQ(out.substr(199), "7|end");
}

TEST(FormatString, TextThatCannotBeConvertedIsMarkedAsError) {
    std::string out;
    const wchar_t unencodable[] = {static_cast<wchar_t>(0x110000), 0};
    FormatString(out, "%ls", unencodable);
    EXPECT_EQ(out, "##ERROR##");
}

TEST(DebugPrint, WritesProcessIdAndMessageWithoutALineEnd) {
    testing::internal::CaptureStdout();
    DebugPrint("error %d in %s", 5, "store");
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "v0:" + std::to_string(getpid()) + ":error 5 in store");
}

TEST(AppendTextToFile, CreatesWithMode0666WhateverTheMaskAndAppends) {
    const TemporaryDirectory directory;
    const std::string path = directory.File("log");
    const mode_t mask = umask(077);
    EXPECT_EQ(AppendTextToFile(path.c_str(), "one\n"), kSuccess);
    EXPECT_EQ(AppendTextToFile(path.c_str(), "two\n"), kSuccess);
    EXPECT_EQ(umask(mask), 077U) << "the mask is given back";
    struct stat status = {};
    ASSERT_EQ(stat(path.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0666U);
    EXPECT_EQ(ReadFile(path), "one\ntwo\n");
}

TEST(AppendTextToFile, AnswersItsResultCodes) {
    EXPECT_EQ(AppendTextToFile(nullptr, "x"), kMissingArgument);
    EXPECT_EQ(AppendTextToFile("x", nullptr), kMissingArgument);
    EXPECT_EQ(AppendTextToFile("/nonexistent/directory/file", "x"), kFailure);
    EXPECT_EQ(AppendTextToFile("/dev/full", "x"), kFailure);
}

TEST(SharedObject, OpensLooksUpAndCloses) {
    void* handle = nullptr;
    ASSERT_EQ(OpenSharedObject("libm.so.6", &handle), kSuccess);
    EXPECT_NE(LookUpSymbol(handle, "cos"), nullptr);
    EXPECT_EQ(LookUpSymbol(handle, "no_such_symbol"), nullptr);
    EXPECT_EQ(dlerror(), nullptr) << "the loader's error text is cleared";
    EXPECT_EQ(LookUpSymbol(handle, nullptr), nullptr);
    CloseSharedObject(handle);
    CloseSharedObject(nullptr);
}

TEST(SharedObject, FailureLeavesNoErrorTextBehind) {
    void* handle = nullptr;
    EXPECT_EQ(OpenSharedObject("libno-such-object.so.9", &handle), kFailure);
    EXPECT_EQ(handle, nullptr);
    EXPECT_EQ(dlerror(), nullptr);
    EXPECT_EQ(OpenSharedObject(nullptr, &handle), kMissingArgument);
    EXPECT_EQ(OpenSharedObject("libm.so.6", nullptr), kMissingArgument);
}

void* SetFlag(void* flag) {
    *static_cast<std::atomic<bool>*>(flag) = true;
    return nullptr;
}

TEST(Thread, RunsItsEntryAndIsJoined) {
    std::atomic<bool> flag{false};
    pthread_t thread{};
    ASSERT_EQ(CreateThread(SetFlag, &flag, &thread), kSuccess);
    EXPECT_EQ(JoinThread(thread), kSuccess);
    EXPECT_TRUE(flag);
    EXPECT_EQ(CreateThread(nullptr, &flag, &thread), kMissingArgument);
    EXPECT_EQ(CreateThread(SetFlag, &flag, nullptr), kMissingArgument);
}

TEST(Thread, CancelEndsAThreadThatSleeps) {
    struct Sleeper {
        static void* Entry(void*) {
            pause();
            return nullptr;
        }
    };
    pthread_t thread{};
    ASSERT_EQ(CreateThread(Sleeper::Entry, nullptr, &thread), kSuccess);
    EXPECT_EQ(CancelThread(thread), kSuccess);
}

TEST(Thread, SleepLastsAtLeastAsLongAsAsked) {
    timespec before{};
    timespec after{};
    clock_gettime(CLOCK_MONOTONIC, &before);
    SleepMilliseconds(20);
    clock_gettime(CLOCK_MONOTONIC, &after);
    EXPECT_GE((after.tv_sec - before.tv_sec) * 1000 + (after.tv_nsec - before.tv_nsec) / 1000000,
              20);
}

TEST(RandomBytes, FillsTheWholeBufferDifferentlyEachTime) {
    std::string first(64, '\0');
    std::string second(64, '\0');
    RandomBytes(first.data(), first.size());
    RandomBytes(second.data(), second.size());
    EXPECT_NE(first, second);
    EXPECT_NE(first.substr(48), std::string(16, '\0'));
}

TEST(RandomBytes, NothingHappensForNoBufferOrNoLength) {
    RandomBytes(nullptr, 8);
    char untouched = 'x';
    RandomBytes(&untouched, 0);
    EXPECT_EQ(untouched, 'x');
}

// What a failing generator is asked, in order.
std::vector<std::string> g_asked;

TEST(RandomBytes, AFailingGeneratorIsReseededTwice) {
    static const RandomGenerator kFailing{
        [](unsigned char*, int) {
            g_asked.emplace_back("fill");
            return 0;
        },
        [](unsigned char* buffer, int length) {
            g_asked.emplace_back("pseudo");
            memset(buffer, 'p', static_cast<size_t>(length));
            return 1;
        },
        [](const void* data, int length) {
            const bool isTime = length == 8 && memcmp(data, "pppppppp", 8) != 0;
            g_asked.emplace_back(isTime ? "seed time" : "seed buffer");
        },
        []() -> unsigned long {
            g_asked.emplace_back("error");
            return 0;
        }};
    g_asked.clear();
    char buffer[9] = {};
    RandomBytes(buffer, 8, kFailing);
    EXPECT_EQ(g_asked, (std::vector<std::string>{"fill", "error", "seed time", "pseudo",
                                                 "seed buffer", "fill"}));
    EXPECT_STREQ(buffer, "pppppppp");
}

TEST(BrokenDownTime, ConvertsInUtcAndLocally) {
    tm utc{};
    tm local{};
    ASSERT_EQ(BreakDownTime(86399, TimeZone::Utc, &utc), kSuccess);
    EXPECT_EQ(utc.tm_year, 70);
    EXPECT_EQ(utc.tm_mday, 1);
    EXPECT_EQ(utc.tm_hour, 23);
    EXPECT_EQ(utc.tm_sec, 59);
    setenv("TZ", "XXX-2", 1);
    tzset();
    ASSERT_EQ(BreakDownTime(86399, TimeZone::Local, &local), kSuccess);
    EXPECT_EQ(local.tm_mday, 2);
    EXPECT_EQ(local.tm_hour, 1);
    unsetenv("TZ");
    tzset();
    EXPECT_EQ(BreakDownTime(0, TimeZone::Utc, nullptr), kMissingArgument);
    EXPECT_EQ(BreakDownTime(INT64_MAX, TimeZone::Utc, &utc), kFailure);
}

}  // namespace
}  // namespace zeldlg::platform
