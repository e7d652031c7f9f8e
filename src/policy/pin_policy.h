// The PIN policy: the rules that a new PIN must keep, in four groups called P1 to P4.
// It comes from the token through the host, or from the configuration store.
#pragma once

#include <cstdint>
#include <string>

namespace zeldlg {

/// Bits of PinPolicy::enabledMask.
inline constexpr uint8_t kPolicyElementaryDistance = 0x01;       ///< P1
inline constexpr uint8_t kPolicyCharacterClassification = 0x02;  ///< P2
inline constexpr uint8_t kPolicyHistoryChecking = 0x04;          ///< P3, up to the token
inline constexpr uint8_t kPolicyCharacterRestriction = 0x08;     ///< P4

/// Bits of PinPolicy::p2ClassMask.
inline constexpr uint8_t kClassLower = 0x01;
inline constexpr uint8_t kClassUpper = 0x02;
inline constexpr uint8_t kClassDigit = 0x04;
inline constexpr uint8_t kClassPunctuation = 0x08;
inline constexpr uint8_t kClassOther = 0x10;

/// Where a policy comes from. A host may hand over any other number: no clear source.
enum class PolicySource : int32_t {
    Card = -4,
    Registry = -3,
    Unknown = -2,
};

/// The four policies. Nothing is range-checked: every byte is kept as it came, and a boolean is
/// true for any value but 0. A new policy has everything switched off.
struct PinPolicy {
    uint8_t headerByte = 0;  ///< carried for the host
    uint8_t formatTag = 0;   ///< tag of the wire form; never taken from one
    uint8_t enabledMask = 0;

    uint8_t p1Threshold = 0;      ///< largest distance of neighbours that is still refused
    uint8_t p1CaseSensitive = 0;  ///< 0: the PIN is lower-cased first
    uint8_t p1FullPinCheck = 0;   ///< non-zero: refuse only one single arithmetic run

    uint8_t p2NbClass = 0;    ///< classes that a PIN must use
    uint8_t p2PopMin = 0;     ///< characters that each used class must have
    uint8_t p2MinLen = 0;     ///< bytes that a PIN must have
    uint8_t p2ClassMask = 0;  ///< classes taken into account

    uint8_t p3Threshold = 0;        ///< similarity threshold of the token
    uint8_t p3HistorySize = 0;      ///< earlier PINs that the token remembers
    uint8_t p3CaseInsensitive = 0;  ///< non-zero: the token ignores case
    uint8_t p3LengthNormalize = 0;  ///< non-zero: the threshold is squared
    uint8_t p3StrictOnly = 0;       ///< non-zero: the token refuses only equal PINs

    std::string p4CharList;            ///< one byte a character
    uint8_t lastRefusedCharacter = 0;  ///< written by the P4 check
    uint8_t p4IsWhiteList = 0;         ///< non-zero: only listed characters are allowed

    PolicySource source = PolicySource::Unknown;

    bool operator==(const PinPolicy&) const = default;

    /// @param bit one of kPolicy...
    bool IsEnabled(uint8_t bit) const { return (enabledMask & bit) != 0; }
};

/// How little a new PIN may resemble those in the token's history.
enum class ToleranceLevel { Low, Medium, High };

/// The level that P3's threshold stands for. kept: a threshold of 0 is the strictest level.
ToleranceLevel HistoryTolerance(const PinPolicy& policy);

}  // namespace zeldlg
