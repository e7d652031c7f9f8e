#include "policy/change_pin_rules.h"

namespace zeldlg {

ChangePinRules CheckRules(const ChangePinBounds& bounds, const ChangePinEntries& entries) {
    return {.oldOk = bounds.oldValue.Contain(entries.oldValue.size()),
            .minOk = entries.newValue.size() >= bounds.newValue.min,
            .maxOk = entries.newValue.size() <= bounds.newValue.max,
            .equal = entries.newValue == entries.confirmation};
}

}  // namespace zeldlg
