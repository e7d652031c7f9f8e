// A PIN policy out of the configuration store, the alternative to the one on the card. Only
// zeldlg-settings reads it: the dialog checks against what the host hands over.
#pragma once

#include <cstddef>
#include <string>

#include "policy/pin_policy.h"

namespace zeldlg {

/// Bytes of "P4CharList"; a longer one counts as empty.
inline constexpr size_t kMaxCharList = 64;

/// Reads the policy set stored under a name. Numbers are kept as their lowest byte.
/// The source becomes Registry in any case. When there is no such set nothing else changes;
/// otherwise missing values keep what `policy` had, except: the enabled mask and the class mask
/// become 255 (everything on) and the character list empty.
/// @param subKey name of the set, a key below "Policies"
void LoadPinPolicyFromRegistry(PinPolicy& policy, const std::wstring& subKey);

}  // namespace zeldlg
