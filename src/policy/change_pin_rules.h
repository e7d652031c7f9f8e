// The four rules of every change: lengths of the old and the new value, equal confirmation.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace zeldlg {

/// In UTF-8 bytes.
struct LengthBounds {
    uint32_t min = 0;
    uint32_t max = 0;

    bool Contain(size_t length) const { return length >= min && length <= max; }
};

struct ChangePinBounds {
    LengthBounds newValue;
    LengthBounds oldValue;
};

/// What is typed, as UTF-8 bytes.
struct ChangePinEntries {
    std::string_view oldValue;
    std::string_view newValue;
    std::string_view confirmation;
};

struct ChangePinRules {
    bool oldOk = false;
    bool minOk = false;
    bool maxOk = false;
    bool equal = false;

    bool operator==(const ChangePinRules&) const = default;
    bool AllMet() const { return oldOk && minOk && maxOk && equal; }
};

ChangePinRules CheckRules(const ChangePinBounds& bounds, const ChangePinEntries& entries);

}  // namespace zeldlg
