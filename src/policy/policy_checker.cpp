#include "policy/policy_checker.h"

#include <array>
#include <cctype>
#include <concepts>
#include <cstddef>
#include <cstdlib>

namespace zeldlg {

namespace {

// A status with the lowest four bits of a number, of either sign.
template <std::integral Number>
constexpr PolicyStatus Status(PolicyStatus base, Number number) {
    return static_cast<PolicyStatus>(base | (static_cast<unsigned>(number) & 0x0FU));
}

// The differences between neighbours of a PIN, case folded where the policy wants it.
class Differences {
public:
    Differences(const PinPolicy& policy, std::string_view pin)
        : m_pin(pin), m_fold(policy.p1CaseSensitive == 0) {}

    // What the character at `position` is below the one before it.
    int At(size_t position) const { return Code(position - 1) - Code(position); }

    // Positions run from 1 to below this.
    size_t End() const { return m_pin.size(); }

private:
    int Code(size_t position) const {
        const int code = static_cast<unsigned char>(m_pin[position]);
        return m_fold ? std::tolower(code) : code;
    }

    std::string_view m_pin;
    bool m_fold;
};

// Refuses a PIN that is one arithmetic run.
PolicyStatus CheckSingleRun(const Differences& differences, int threshold) {
    const int step = differences.At(1);
    if (std::abs(step) > threshold) {
        return kPolicyAccepted;
    }
    for (size_t i = 2; i < differences.End(); ++i) {
        if (differences.At(i) != step) {
            return kPolicyAccepted;
        }
    }
    return Status(kDistanceTooSmall, std::abs(step));
}

// Refuses a PIN with any close pair.
// kept: only the first pair is judged by its magnitude. From the third character on every rising
// step has a negative difference and is refused.
PolicyStatus CheckEachPair(const Differences& differences, int threshold) {
    const int first = differences.At(1);
    if (std::abs(first) <= threshold) {
        return Status(kDistanceTooSmall, first);
    }
    for (size_t i = 2; i < differences.End(); ++i) {
        if (differences.At(i) <= threshold) {
            return Status(kDistanceTooSmall, differences.At(i));
        }
    }
    return kPolicyAccepted;
}

enum ClassIndex : uint8_t { kLower, kUpper, kDigit, kPunctuation, kOther, kClassCount };

// The classes with a minimum population, in the order in which they are looked at.
constexpr std::array<uint8_t, kOther> kPopulatedClassBits = {kClassLower, kClassUpper, kClassDigit,
                                                             kClassPunctuation};

struct ClassRange {
    ClassIndex index;
    unsigned char first;
    unsigned char last;
};

// kept: the dollar sign (36) is no punctuation here, so it counts as an other character.
constexpr ClassRange kClassRanges[] = {
    {kLower, 97, 122},      {kUpper, 65, 90},         {kDigit, 48, 57},
    {kPunctuation, 33, 35}, {kPunctuation, 37, 47},   {kPunctuation, 58, 64},
    {kPunctuation, 91, 96}, {kPunctuation, 123, 126},
};

constexpr std::array<ClassIndex, 256> MakeClassTable() {
    std::array<ClassIndex, 256> table{};
    table.fill(kOther);
    for (const ClassRange& range : kClassRanges) {
        for (size_t code = range.first; code <= range.last; ++code) {
            table[code] = range.index;
        }
    }
    return table;
}

constexpr std::array<ClassIndex, 256> kClassOfByte = MakeClassTable();

// Members of each class. Wide, because a PIN may have more than 255 bytes: in 8 bits a class with
// 256 members would pass for unused.
using ClassCounts = std::array<size_t, kClassCount>;

ClassCounts CountClasses(std::string_view pin) {
    ClassCounts counts{};
    for (const char byte : pin) {
        ++counts[kClassOfByte[static_cast<unsigned char>(byte)]];
    }
    return counts;
}

struct UsedClasses {
    unsigned used = 0;
    unsigned populated = 0;
};

UsedClasses CountUsed(const PinPolicy& policy, const ClassCounts& counts) {
    UsedClasses classes;
    for (size_t i = 0; i < kPopulatedClassBits.size(); ++i) {
        if (counts[i] != 0 && (policy.p2ClassMask & kPopulatedClassBits[i]) != 0) {
            ++classes.used;
            classes.populated += counts[i] >= policy.p2PopMin ? 1 : 0;
        }
    }
    // kept: a single other character populates its class, whatever the minimum.
    if (counts[kOther] != 0 && (policy.p2ClassMask & kClassOther) != 0) {
        ++classes.used;
        ++classes.populated;
    }
    return classes;
}

}  // namespace

PolicyStatus CheckElementaryDistance(const PinPolicy& policy, std::string_view pin) {
    const bool fullCheck = policy.p1FullPinCheck != 0;
    if (pin.size() < (fullCheck ? 3 : 2)) {
        return kPolicyAccepted;
    }
    const Differences differences(policy, pin);
    return fullCheck ? CheckSingleRun(differences, policy.p1Threshold)
                     : CheckEachPair(differences, policy.p1Threshold);
}

PolicyStatus CheckCharacterClasses(const PinPolicy& policy, std::string_view pin) {
    const ClassCounts counts = CountClasses(pin);
    const UsedClasses classes = CountUsed(policy, counts);
    if (classes.used < policy.p2NbClass) {
        return Status(kTooFewClasses, classes.used);
    }
    if (classes.populated < policy.p2NbClass) {
        // kept: a class that the mask leaves out is reported too.
        for (size_t i = 0; i < kPopulatedClassBits.size(); ++i) {
            if (counts[i] != 0 && counts[i] < policy.p2PopMin) {
                return Status(kClassTooSmall, counts[i]);
            }
        }
    }
    // kept: a minimum of 16 is reported as 0.
    return pin.size() >= policy.p2MinLen ? kPolicyAccepted : Status(kPinTooShort, policy.p2MinLen);
}

PolicyStatus CheckCharacterRestriction(PinPolicy& policy, std::string_view pin) {
    const std::string_view list = policy.p4CharList;
    const bool whiteList = policy.p4IsWhiteList != 0;
    for (size_t i = 0; i < pin.size(); ++i) {
        const bool listed = list.find(pin[i]) != std::string_view::npos;
        if (listed != whiteList) {
            policy.lastRefusedCharacter = static_cast<uint8_t>(pin[i]);
            return Status(kCharacterRefused, i);
        }
    }
    return kPolicyAccepted;
}

}  // namespace zeldlg
