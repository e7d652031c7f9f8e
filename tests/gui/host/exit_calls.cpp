#include "exit_calls.h"

#include <unistd.h>
#include <zeldlg/zeldlg.h>

#include <array>
#include <cstdint>
#include <cstdlib>

namespace testhost {

namespace {

using GetLocale = uint32_t (*)(wchar_t*, uint32_t*);
using Finalise = void (*)();

constexpr int kAnswered = 3;

GetLocale g_getLocale = nullptr;
Finalise g_finalise = nullptr;

void Call() {
    for (int round = 0; g_finalise != nullptr && round < 2; ++round) {
        std::array<wchar_t, 64> buffer{};
        auto size = static_cast<uint32_t>(buffer.size());
        if (g_getLocale(buffer.data(), &size) != ZELDLG_FAILED) {
            _exit(kAnswered);
        }
        g_finalise();
    }
}

}  // namespace

void PrepareExitCalls() {
    if (atexit(Call) != 0) {
        abort();
    }
}

void CallAtExit(void* getLocale, void* finalise) {
    g_getLocale = reinterpret_cast<GetLocale>(getLocale);
    g_finalise = reinterpret_cast<Finalise>(finalise);
}

}  // namespace testhost
