// What a user is told about the outcome of a policy check, the token's own included.
#pragma once

#include <wx/string.h>

#include <string_view>

#include "policy/policy_checker.h"

namespace zeldlg {

/// The message for any status, translated, of at most 499 characters.
/// @param pin the PIN for P2 statuses, which lists the classes it uses. Empty for P4 statuses: the
///        message then names the character that the check stored in the policy. Not needed for
///        others
wxString DescribePolicyStatus(const PinPolicy& policy, PolicyStatus status, std::string_view pin);

}  // namespace zeldlg
