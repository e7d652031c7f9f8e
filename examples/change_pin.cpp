// A host in C++: has a PIN changed under a policy. The dialog waits on a thread of its own, so that
// the main thread goes on serving whatever else the host does.
#include <string.h>
#include <zeldlg/zeldlg.h>

#include <array>
#include <chrono>
#include <cstdio>
#include <future>

namespace {

// The user interface ends with this object, before the static objects of the program do.
class Dialogs {
public:
    Dialogs() = default;
    ~Dialogs() { DLG_Finalize(); }
    Dialogs(const Dialogs&) = delete;
    Dialogs& operator=(const Dialogs&) = delete;
};

// Bytes that are overwritten before they are released.
struct Secret {
    static constexpr size_t kCapacity = 64;

    std::array<uint8_t, kCapacity> bytes{};
    size_t length = 0;

    Secret() = default;
    ~Secret() { explicit_bzero(bytes.data(), bytes.size()); }
    Secret(const Secret&) = delete;
    Secret& operator=(const Secret&) = delete;
};

// At least six bytes, of two classes of characters, and no run such as 123456.
PinPolicyWire MakePolicy(const PinPolicyCharList& characters) {
    PinPolicyWire policy{};
    policy.enabledMask = 1 | 2;
    policy.p1Threshold = 1;
    policy.p1FullPinCheck = 1;
    policy.p2NbClass = 2;
    policy.p2PopMin = 1;
    policy.p2MinLen = 6;
    policy.p2ClassMask = 0x1f;
    policy.charList = &characters;
    policy.source = -4;
    return policy;
}

uint32_t AskForChange(Secret& oldPin, Secret& newPin) {
    const PinPolicyCharList noCharacters{};
    const PinPolicyWire policy = MakePolicy(noCharacters);
    const PinPolicyDescriptor descriptor{.tag = 0, .size = sizeof policy, .block = &policy};
    PolicedPinChangeRequest request{};
    request.tokenLabel = "Company badge";
    request.minLength = 6;
    request.maxLength = 16;
    request.noFailure = 1;
    request.policy = &descriptor;
    request.oldMinLength = 4;
    request.oldMaxLength = 16;
    PinChangeBuffers buffers{.oldValue = oldPin.bytes.data(),
                             .oldLength = oldPin.bytes.size(),
                             .newValue = newPin.bytes.data(),
                             .newLength = newPin.bytes.size()};
    const uint32_t result = DLG_ShowChangePolicedPinDialog_func(&request, &buffers);
    if (result == ZELDLG_OK) {
        oldPin.length = buffers.oldLength;
        newPin.length = buffers.newLength;
    }
    return result;
}

int Report(uint32_t result, const Secret& oldPin, const Secret& newPin) {
    switch (result) {
        case ZELDLG_OK:
            std::printf("to be changed: %zu bytes to %zu bytes\n", oldPin.length, newPin.length);
            return 0;
        case ZELDLG_CANCELLED:
            std::puts("cancelled");
            return 1;
        default:
            std::fputs("The dialog cannot be shown. Is there a display?\n", stderr);
            return 2;
    }
}

}  // namespace

int main() {
    using namespace std::chrono_literals;
    const Dialogs dialogs;
    Secret oldPin;
    Secret newPin;
    std::future<uint32_t> answer =
        std::async(std::launch::async, [&] { return AskForChange(oldPin, newPin); });
    size_t turns = 0;
    while (answer.wait_for(50ms) != std::future_status::ready) {
        ++turns;  // here the host does its own work
    }
    const int exitCode = Report(answer.get(), oldPin, newPin);
    std::printf("turns of the main thread meanwhile: %zu\n", turns);
    return exitCode;
}
