// The rules of a new PIN that is set together with an off-line unlock.
#pragma once

#include <cstdint>
#include <string_view>

namespace zeldlg {

/// In UTF-8 bytes. A negative minimum asks for nothing, a negative maximum allows nothing.
struct NewPinBounds {
    int32_t min = 0;
    int32_t max = 0;
};

struct NewPinRules {
    bool minOk = false;
    bool maxOk = false;
    bool equal = false;

    bool LengthOk() const { return minOk && maxOk; }
};

/// Both entries have to keep to the bounds. The second is looked at only when the first does, so
/// that minOk and maxOk say what is wrong with the one that is wrong.
NewPinRules CheckNewPin(const NewPinBounds& bounds, std::string_view pin,
                        std::string_view confirmation);

}  // namespace zeldlg
