// A policy that is checked in full, and PINs that every check has to read to their end.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>

#include "policy/change_pin_checks.h"

namespace bench {

// All local policies, as expensive as they get: case folded, and a list of 64 characters.
inline zeldlg::PinPolicy FullPolicy() {
    using namespace zeldlg;
    PinPolicy policy;
    policy.enabledMask = kPolicyElementaryDistance | kPolicyCharacterClassification |
                         kPolicyHistoryChecking | kPolicyCharacterRestriction;
    policy.p1Threshold = 1;
    policy.p1FullPinCheck = 1;
    policy.p2NbClass = 1;
    policy.p2PopMin = 2;
    policy.p2MinLen = 8;
    policy.p2ClassMask = kClassLower | kClassUpper | kClassDigit | kClassPunctuation | kClassOther;
    for (char c = '0'; c < '0' + 64; ++c) {
        policy.p4CharList.push_back(c);
    }
    return policy;
}

// One arithmetic run but for its last byte, and of no listed character: no check ends early, and
// all accept it.
inline std::string Pin(int64_t length) {
    std::string pin;
    for (int64_t i = 0; i + 1 < length; ++i) {
        pin.push_back(static_cast<char>(0xFF - i));
    }
    pin.push_back(pin.back());
    return pin;
}

// Whether all local policies accept it.
inline bool Accepts(zeldlg::PinPolicy& policy, const std::string& pin) {
    using namespace zeldlg;
    return std::all_of(Policies().begin(), Policies().end(), [&](const Policy& each) {
        return each.StatusOf(policy, pin) == kPolicyAccepted;
    });
}

}  // namespace bench
