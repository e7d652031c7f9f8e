// The checks of PIN policies written a second time, as plainly as the rules are told.
#pragma once

#include <string>

#include "policy/pin_policy.h"

namespace zeldlg::plain {

// Statuses. Of PINs of at most 255 bytes.
int PlainDistance(const PinPolicy& policy, std::string pin);
int PlainClasses(const PinPolicy& policy, const std::string& pin);
int PlainRestriction(PinPolicy& policy, const std::string& pin);

}  // namespace zeldlg::plain
