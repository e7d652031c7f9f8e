// The configuration store used by several threads at once.
#include <gtest/gtest.h>
#include <pthread.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "registry/registry_store.h"
#include "registry/settings.h"
#include "support/registry_fixture.h"

namespace zeldlg::registry {
namespace {

using test::Key;
using test::Number;
using test::SetNumber;
using test::SmallRegistry;
using test::WriteFile;

using RegistryThreads = test::RegistryTest;

constexpr unsigned kThreads = 8;
constexpr uint32_t kRounds = 60;

TEST_F(RegistryThreads, EightThreadsOpenReadSetAndCloseAtOnce) {
    std::string content = "REGEDIT4\r\n\r\n";
    for (unsigned i = 0; i < kThreads; ++i) {
        content +=
            "[HKEY_LOCAL_MACHINE\\Key" + std::to_string(i) + "]\r\n\"n\"=dword:00000000\r\n\r\n";
    }
    WriteFile(UserFile(), content);
    std::atomic<unsigned> wrong = 0;
    std::vector<std::thread> threads;
    for (unsigned i = 0; i < kThreads; ++i) {
        threads.emplace_back([i, &wrong] {
            const std::wstring path = L"Key" + std::to_wstring(i);
            for (uint32_t round = 0; round < kRounds; ++round) {
                Key key(HKEY_LOCAL_MACHINE, path.c_str());
                const bool right = key.error == kSuccess && Number(key.handle, L"n") == round &&
                                   SetNumber(key.handle, L"n", round + 1) == kSuccess &&
                                   Number(key.handle, L"N") == round + 1;
                const HKEY handle = key.handle;
                wrong += right && key.Close() == kSuccess ? 0 : 1;
                wrong += RegCloseKey(handle) == kInvalidHandle ? 0 : 1;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(wrong, 0U);
    for (unsigned i = 0; i < kThreads; ++i) {
        EXPECT_EQ(ReadDword((L"Key" + std::to_wstring(i)).c_str(), L"n"), kRounds);
    }
}

TEST_F(RegistryThreads, TwoValuesChangedTogetherAreNeverSeenApart) {
    WriteFile(UserFile(), SmallRegistry("00000000", "\"Copy\"=dword:00000000\r\n"));
    // While this key is open all threads share one loaded registry.
    Key held(HKEY_LOCAL_MACHINE, L"Key");
    std::atomic<unsigned> wrong = 0;
    std::vector<std::thread> threads;
    for (unsigned i = 0; i < kThreads; ++i) {
        threads.emplace_back([i, &wrong] {
            uint32_t last = 0;
            for (uint32_t round = 1; round <= kRounds; ++round) {
                const Key key(HKEY_LOCAL_MACHINE, L"Key");
                if (i == 0) {  // the one writer
                    wrong += SetNumber(key.handle, L"Number", round) == kSuccess ? 0 : 1;
                    wrong += SetNumber(key.handle, L"Copy", round) == kSuccess ? 0 : 1;
                    continue;
                }
                const uint32_t copy = Number(key.handle, L"Copy").value_or(0);
                const uint32_t number = Number(key.handle, L"Number").value_or(0);
                wrong += number >= copy && copy >= last ? 0 : 1;
                last = copy;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(wrong, 0U);
    EXPECT_EQ(held.Close(), kSuccess);
    EXPECT_EQ(ReadDword(L"Key", L"Copy"), kRounds);
}

TEST_F(RegistryThreads, KeysAreCreatedEnumeratedAndDeletedAtOnce) {
    std::atomic<unsigned> wrong = 0;
    std::vector<std::thread> threads;
    for (unsigned i = 0; i < kThreads; ++i) {
        threads.emplace_back([i, &wrong] {
            const std::wstring path = L"Top" + std::to_wstring(i) + L"\\Sub";
            for (uint32_t round = 0; round < kRounds / 4; ++round) {
                HKEY key = 0;
                wrong += RegCreateKeyEx(HKEY_CURRENT_USER, path.c_str(), 0, &key, nullptr);
                wchar_t name[100];
                uint32_t size = std::size(name);
                wrong += RegEnumKey(HKEY_CURRENT_USER, 0, name, &size);
                wrong += RegDeleteTree(HKEY_CURRENT_USER, path.substr(0, 4).c_str(), 0);
                wrong += RegCloseKey(key);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(wrong, 0U);
}

TEST_F(RegistryThreads, CancelledThreadFinishesItsOperationAndLocksNobodyOut) {
    WriteFile(UserFile(), SmallRegistry("00000001"));
    onLookUp = [](std::string_view) { pthread_cancel(pthread_self()); };
    pthread_t thread{};
    const auto body = [](void*) -> void* {
        HKEY key = 0;
        const RegistryError error = RegOpenKeyEx(HKEY_LOCAL_MACHINE, L"None", 284, &key);
        EXPECT_EQ(error, kNotFound);
        // Without this the thread would end at the next call that may be cancelled.
        int state = 0;
        pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &state);
        EXPECT_EQ(state, PTHREAD_CANCEL_ENABLE);
        return nullptr;
    };
    ASSERT_EQ(pthread_create(&thread, nullptr, body, nullptr), 0);
    void* result = &thread;
    ASSERT_EQ(pthread_join(thread, &result), 0);
    EXPECT_EQ(result, nullptr);
    onLookUp = [](std::string_view) {};
    EXPECT_EQ(ReadDword(L"Key", L"Number"), 1U);
}

}  // namespace
}  // namespace zeldlg::registry
