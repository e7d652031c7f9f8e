// Reading one setting, against the same file in GLib's own format and against reading the bytes.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <glib.h>

#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <string>
#include <vector>

#include "registry/registry_file.h"
#include "registry_files.h"

namespace {

using namespace zeldlg::registry;
using bench::Files;

void Require(bool condition) {
    if (!condition) {
        throw std::runtime_error("the measured operation failed");
    }
}

void Setting(benchmark::State& state) {
    const Files files(state.range(0));
    const std::wstring path = files.LastPath();
    for (auto _ : state) {
        HKEY key = 0;
        Require(RegOpenKeyEx(HKEY_LOCAL_MACHINE, path.c_str(), kAccessDefault, &key) == kSuccess);
        uint32_t number = 0;
        uint32_t size = sizeof number;
        Require(RegQueryValueEx(key, L"Number", nullptr, &number, &size) == kSuccess);
        Require(RegCloseKey(key) == kSuccess && number == 42);
    }
    state.SetComplexityN(state.range(0));
}

void GLibKeyFile(benchmark::State& state) {
    const Files files(state.range(0));
    const std::string path = files.KeyFile();
    const std::string group = files.LastGroup();
    for (auto _ : state) {
        GKeyFile* const file = g_key_file_new();
        Require(g_key_file_load_from_file(file, path.c_str(), G_KEY_FILE_NONE, nullptr) != FALSE);
        Require(g_key_file_get_integer(file, group.c_str(), "Number", nullptr) == 42);
        g_key_file_free(file);
    }
    state.SetComplexityN(state.range(0));
}

// What no reader of the file can be faster than: all bytes, and where its lines end.
void ReadAndFindLines(benchmark::State& state) {
    const Files files(state.range(0));
    const std::string path = files.Registry();
    for (auto _ : state) {
        FileContent content;
        Require(ReadContent(FileDescriptor::Open(path, O_RDONLY), content) == kSuccess);
        const char* at = content.text.get();
        const char* const end = at + content.size;
        int64_t lines = 0;
        for (; at < end; ++lines) {
            const auto left = static_cast<size_t>(end - at);
            at = static_cast<const char*>(memchr(at, '\n', left)) + 1;
        }
        Require(lines == 4 * state.range(0) + 2);
    }
    state.SetComplexityN(state.range(0));
}

// Opens as many keys as there are and closes them again.
void OpenEveryKey(benchmark::State& state) {
    const Files files(state.range(0));
    std::vector<std::wstring> paths;
    for (int64_t i = 0; i < state.range(0); ++i) {
        paths.push_back(Files::Path(i));
    }
    std::vector<HKEY> keys(paths.size());
    for (auto _ : state) {
        for (size_t i = 0; i < paths.size(); ++i) {
            Require(RegOpenKeyEx(HKEY_LOCAL_MACHINE, paths[i].c_str(), kAccessDefault, &keys[i]) ==
                    kSuccess);
        }
        for (const HKEY key : keys) {
            Require(RegCloseKey(key) == kSuccess);
        }
    }
    state.SetComplexityN(state.range(0));
}

// One value of one of many open keys.
void QueryAmongOpenKeys(benchmark::State& state) {
    const Files files(state.range(0));
    std::vector<HKEY> keys;
    for (int64_t i = 0; i < state.range(0); ++i) {
        Require(RegOpenKeyEx(HKEY_LOCAL_MACHINE, Files::Path(i).c_str(), kAccessDefault,
                             &keys.emplace_back()) == kSuccess);
    }
    size_t next = 0;
    for (auto _ : state) {
        uint32_t number = 0;
        uint32_t size = sizeof number;
        Require(RegQueryValueEx(keys[next], L"Number", nullptr, &number, &size) == kSuccess);
        next = (next + 1) % keys.size();
    }
    for (const HKEY key : keys) {
        Require(RegCloseKey(key) == kSuccess);
    }
}

constexpr int64_t kSmallest = 10;
constexpr int64_t kLargest = 100'000;

BENCHMARK(Setting)->RangeMultiplier(10)->Range(kSmallest, kLargest)->Complexity(benchmark::oN);
BENCHMARK(GLibKeyFile)->RangeMultiplier(10)->Range(kSmallest, kLargest)->Complexity(benchmark::oN);
BENCHMARK(ReadAndFindLines)
    ->RangeMultiplier(10)
    ->Range(kSmallest, kLargest)
    ->Complexity(benchmark::oN);
BENCHMARK(OpenEveryKey)->RangeMultiplier(10)->Range(kSmallest, 10'000)->Complexity(benchmark::oN);
BENCHMARK(QueryAmongOpenKeys)->RangeMultiplier(10)->Range(kSmallest, 10'000);

}  // namespace
