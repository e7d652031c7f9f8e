// Decides whether a typed PIN keeps to the policies that are checked before the token sees it.
// A PIN is its UTF-8 bytes; each byte counts as one character.
#pragma once

#include <cstdint>
#include <string_view>

#include "policy/pin_policy.h"

namespace zeldlg {

/// A status word in the style of a smart card. 0x9000 accepts; 0x64xx refuses, with the policy
/// in bits 6-7, the reason within P2 in bits 4-5 and a small number below.
using PolicyStatus = uint16_t;

inline constexpr PolicyStatus kPolicyAccepted = 0x9000;
inline constexpr PolicyStatus kCharacterRefused = 0x6400;  ///< P4, + its index modulo 16
inline constexpr PolicyStatus kDistanceTooSmall = 0x6440;  ///< P1, + the difference modulo 16
inline constexpr PolicyStatus kTooFewClasses = 0x6490;     ///< P2, + the number of used classes
inline constexpr PolicyStatus kPinTooShort = 0x64A0;       ///< P2, + the minimum length modulo 16
inline constexpr PolicyStatus kClassTooSmall = 0x64B0;     ///< P2, + its members modulo 16
inline constexpr PolicyStatus kHistoryRefused = 0x64C0;    ///< P3, from the token only

// The checks apply their policy whether or not it is enabled (see Policies() for those that are).
// They keep no state and neither allocate memory nor copy the PIN.

/// P1: the distance between the codes of neighbours. Lower-casing follows the C locale that is
/// set, byte by byte.
PolicyStatus CheckElementaryDistance(const PinPolicy& policy, std::string_view pin);

/// P2: number of classes, then members of each class, then length. PINs of any length are counted
/// in full.
PolicyStatus CheckCharacterClasses(const PinPolicy& policy, std::string_view pin);

/// P4: allowed or disallowed characters. Stores a refused one in `policy`.
PolicyStatus CheckCharacterRestriction(PinPolicy& policy, std::string_view pin);

}  // namespace zeldlg
