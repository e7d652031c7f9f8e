// Lengths, bounds and capacities of any size, as a host may state them: what is decided by them is
// compared with the same decision in numbers that are wide enough for all of them.
#include <algorithm>
#include <memory>

#include "dialogs/challenge_response.h"
#include "fuzz_target.h"
#include "pin/pin_rules.h"
#include "policy/change_pin_checks.h"
#include "runtime/handlers/delivery.h"

namespace zeldlg::fuzz {

namespace {

__extension__ typedef __int128 Wide;

uint32_t Number(FuzzInput& input) {
    static constexpr uint32_t kEdges[] = {0,          1,          0x7FFFFFFF, 0x80000000,
                                          0x80000001, 0xFFFFFFFE, 0xFFFFFFFF, 499};
    const unsigned kind = input.Below(12);
    return kind < std::size(kEdges) ? kEdges[kind] : kind < 10 ? input.Word() : input.Below(40);
}

void RequireLengthRule(FuzzInput& input) {
    const uint32_t min = Number(input);
    const uint32_t max = Number(input);
    PinLengthRule rule(min, max);
    bool minOk = false;
    bool maxOk = true;
    for (int i = 0; i < 3; ++i) {
        const uint32_t length = Number(input);
        const bool changed = minOk != (Wide{length} >= Wide{min}) || maxOk != (length <= max);
        REQUIRE_EQ(rule.Update(length), changed);
        minOk = Wide{length} >= Wide{min};
        maxOk = Wide{length} <= Wide{max};
        REQUIRE_EQ(rule.MinOk(), minOk);
        REQUIRE_EQ(rule.MaxOk(), maxOk);
        REQUIRE_EQ(rule.Accepts(), minOk && maxOk);
    }
}

void RequireNewPinRules(FuzzInput& input) {
    const NewPinBounds bounds{.min = static_cast<int32_t>(Number(input)),
                              .max = static_cast<int32_t>(Number(input))};
    const std::string pin = input.Text(30);
    const std::string confirmation = input.Flag() ? pin : input.Text(30);
    const auto within = [&bounds](const std::string& text) {
        return static_cast<Wide>(text.size()) >= Wide{bounds.min} &&
               static_cast<Wide>(text.size()) <= Wide{bounds.max};
    };
    const NewPinRules rules = CheckNewPin(bounds, pin, confirmation);
    REQUIRE_EQ(rules.LengthOk(), within(pin) && within(confirmation));
    REQUIRE_EQ(rules.equal, pin == confirmation);
}

void RequireChangeRules(FuzzInput& input) {
    const ChangePinBounds bounds{.newValue = {Number(input), Number(input)},
                                 .oldValue = {Number(input), Number(input)}};
    const std::string oldValue = input.Text(30);
    const std::string newValue = input.Text(30);
    const std::string confirmation = input.Flag() ? newValue : input.Text(30);
    ChangePinChecks checks(ChangePinMode::ChangePin, bounds);
    checks.Update({oldValue, newValue, confirmation});
    const std::vector<ChangePinCheck>& rules = checks.List();
    const auto oldLength = static_cast<Wide>(oldValue.size());
    const auto newLength = static_cast<Wide>(newValue.size());
    REQUIRE_EQ(rules[0].met, oldLength >= bounds.oldValue.min && oldLength <= bounds.oldValue.max);
    REQUIRE_EQ(rules[1].met, newLength >= bounds.newValue.min);
    REQUIRE_EQ(rules[2].met, newLength <= bounds.newValue.max);
    REQUIRE_EQ(rules[3].met, newValue == confirmation);
}

/// A buffer has what it says or less, a host's claim may be larger.
void RequireDelivery(FuzzInput& input) {
    uint64_t claimed = input.Flag() ? Number(input) : input.Below(40);
    if (input.Below(4) == 0) {
        claimed = claimed << 32U | Number(input);
    }
    const bool isNull = input.Below(8) == 0;
    const std::string bytes = input.Text(30);
    const auto buffer =
        std::make_unique<uint8_t[]>(static_cast<size_t>(std::min<uint64_t>(claimed, bytes.size())));
    uint8_t* const given = isNull ? nullptr : buffer.get();
    const bool fits = Fits(bytes, given, claimed);
    REQUIRE_EQ(fits, Wide{claimed} >= static_cast<Wide>(bytes.size()) && (!isNull || claimed == 0));
    if (fits) {
        uint64_t length = 77;
        Deliver(bytes, given, length);
        REQUIRE_EQ(length, uint64_t{bytes.size()});
        REQUIRE(std::equal(bytes.begin(), bytes.end(), given,
                           [](char a, uint8_t b) { return static_cast<uint8_t>(a) == b; }));
    }
}

void RequireSizedText(FuzzInput& input) {
    const uint32_t claimed = Number(input);
    const bool isNull = input.Below(8) == 0;
    const std::string text = input.Text(30);
    const auto buffer = std::make_unique<char[]>(std::min<size_t>(claimed, text.size() + 1));
    uint32_t size = claimed;
    const uint32_t result = StoreSizedText<char>(text, isNull ? nullptr : buffer.get(), size);
    const bool fits = Wide{claimed} > static_cast<Wide>(text.size()) && !isNull;
    REQUIRE_EQ(result, uint32_t{fits ? ZELDLG_OK : ZELDLG_BUFFER_TOO_SMALL});
    REQUIRE_EQ(size_t{size}, text.size() + 1);
    if (fits) {
        REQUIRE_EQ(std::string(buffer.get(), text.size()), text);
        REQUIRE(buffer[text.size()] == '\0');
    }
}

}  // namespace

FUZZ_TARGET(host_numbers) {
    FuzzInput input(bytes);
    while (!input.IsEmpty()) {
        RequireLengthRule(input);
        RequireNewPinRules(input);
        RequireChangeRules(input);
        RequireDelivery(input);
        RequireSizedText(input);
    }
}

}  // namespace zeldlg::fuzz
