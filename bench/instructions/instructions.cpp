// Plain code, each piece run by itself while callgrind counts. Prints nothing: see check.py.
#include <valgrind/callgrind.h>

#include <cstdint>
#include <functional>
#include <stdexcept>
#include <string>

#include "dialogs/challenge_response.h"
#include "full_policy.h"
#include "platform/event.h"
#include "policy/change_pin_checks.h"
#include "registry/registry_store.h"
#include "registry_files.h"
#include "resources/format_conversions.h"
#include "resources/texts.h"
#include "runtime/message.h"

namespace {

using namespace zeldlg;
using namespace zeldlg::registry;

constexpr int kTimes = 10;

// The first run is not counted: it makes what later ones find made.
void Count(const char* name, const std::function<void()>& work) {
    work();
    CALLGRIND_ZERO_STATS;
    CALLGRIND_TOGGLE_COLLECT;
    for (int i = 0; i < kTimes; ++i) {
        work();
    }
    CALLGRIND_TOGGLE_COLLECT;
    CALLGRIND_DUMP_STATS_AT(name);
}

void Require(bool condition) {
    if (!condition) {
        throw std::runtime_error("the counted operation failed");
    }
}

uint32_t QueryNumber(HKEY key) {
    uint32_t number = 0;
    uint32_t size = sizeof number;
    Require(RegQueryValueEx(key, L"Number", nullptr, &number, &size) == kSuccess);
    return number;
}

void CountTyping() {
    const std::string pin = bench::Pin(64);
    const std::string longer = pin + '0';
    PinPolicy policy = bench::FullPolicy();
    Count("check 64 bytes", [&] { Require(bench::Accepts(policy, pin)); });
    ChangePinChecks checks(ChangePinMode::ChangePin, {}, true, policy);
    const auto type = [&checks](std::string_view newValue) {
        checks.Update({.oldValue = {}, .newValue = newValue, .confirmation = {}});
    };
    Count("revalidate 64 bytes", [&] { type(pin); });
    Count("change a page and back", [&] {
        type(longer);
        type(pin);
    });
    Count("decode a response",
          [] { Require(DecodeResponse(L"0123 4567 89ab cdef 0123 4567 89AB CDEF").size() == 16); });
}

void CountRegistry() {
    const bench::Files files(1000);
    const std::wstring path = files.LastPath();
    Count("one setting of 1000 keys", [&] {
        HKEY key = 0;
        Require(RegOpenKeyEx(HKEY_LOCAL_MACHINE, path.c_str(), kAccessDefault, &key) == kSuccess);
        Require(QueryNumber(key) == 42);
        Require(RegCloseKey(key) == kSuccess);
    });
    HKEY key = 0;
    Require(RegOpenKeyEx(HKEY_LOCAL_MACHINE, path.c_str(), kAccessDefault, &key) == kSuccess);
    Count("a query of an open key", [&] { Require(QueryNumber(key) == 42); });
    Require(RegCloseKey(key) == kSuccess);
    uint32_t number = 0;
    Count("write one setting of 1000 keys", [&] {
        ++number;
        Require(RegOpenKeyEx(HKEY_LOCAL_MACHINE, path.c_str(), kAccessWriteValues, &key) ==
                kSuccess);
        Require(RegSetValueEx(key, L"Number", kTypeNumber, &number, sizeof number) == kSuccess);
        Require(RegCloseKey(key) == kSuccess);
    });
}

void CountTexts() {
    Count("compare conversions", [] {
        Require(HasSameConversions(L"You have %d tries and %ls", L"Noch %d Versuche und %ls"));
    });
    Count("format a text",
          [] { Require(!FormatTranslated("Minimum PIN length %d bytes", 4).empty()); });
}

void CountRequests() {
    platform::ManualResetEvent event;
    Count("poll an event", [&] { Require(!platform::WaitForEvent(event, 0)); });
    Count("set and reset an event", [&] {
        event.Set();
        event.Reset();
    });
    Count("a request's life", [] {
        CMessage message(1, 2, 3);
        message.Complete();
        message.WaitDone();
    });
}

}  // namespace

int main() {
    CountTyping();
    CountRegistry();
    CountTexts();
    CountRequests();
    return 0;
}
