#include "dialogs/new_pin_rules.h"

#include <utility>

namespace zeldlg {

NewPinRules CheckNewPin(const NewPinBounds& bounds, std::string_view pin,
                        std::string_view confirmation) {
    const auto minOk = [&](std::string_view entry) {
        return std::cmp_greater_equal(entry.size(), bounds.min);
    };
    const auto maxOk = [&](std::string_view entry) {
        return std::cmp_less_equal(entry.size(), bounds.max);
    };
    const std::string_view judged = minOk(pin) && maxOk(pin) ? confirmation : pin;
    return {.minOk = minOk(judged), .maxOk = maxOk(judged), .equal = pin == confirmation};
}

}  // namespace zeldlg
