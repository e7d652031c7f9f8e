// What a policy asks of a PIN, in words: one block for each of P1 to P4, and all of them together.
// A block begins with its title; that of a policy that is switched off says so and no more.
#pragma once

#include <wx/string.h>

#include "policy/pin_policy.h"

namespace zeldlg {

wxString DescribeElementaryDistance(const PinPolicy& policy);       ///< P1
wxString DescribeCharacterClassification(const PinPolicy& policy);  ///< P2
wxString DescribeHistoryChecking(const PinPolicy& policy);          ///< P3

/// P4. A character list is shown as Latin-1, up to its first zero byte.
wxString DescribeCharacterRestriction(const PinPolicy& policy);

/// The four blocks and where the policy comes from. No dialog shows it; kept, and tested.
wxString DescribePinPolicy(const PinPolicy& policy);

}  // namespace zeldlg
