#include "policy/policy_messages.h"

#include <string>
#include <vector>

#include "resources/texts.h"

namespace zeldlg {

namespace {

struct Outcome {
    const PinPolicy& policy;
    PolicyStatus status;
    std::string_view pin;

    int Low4() const { return status & 0x0F; }
    int Low6() const { return status & 0x3F; }
};

struct CharacterClass {
    uint8_t bit;
    const char* name;
    std::string_view members;
};

// kept: the dollar sign is a member here, although the check counts it as an other character. Such
// a PIN may be said to use punctuation and be refused for the lack of it.
constexpr CharacterClass kListedClasses[] = {
    {kClassLower, CATALOGUE_KEY("downcase letters"), "abcdefghijklmnopqrstuvwxyz"},
    {kClassUpper, CATALOGUE_KEY("upcase letters"), "ABCDEFGHIJKLMNOPQRSTUVWXYZ"},
    {kClassDigit, CATALOGUE_KEY("numbers"), "0123456789"},
    {kClassPunctuation, CATALOGUE_KEY("punctuation characters"),
     "!\"#$%&'()*+,-./:;<=>?@[\\]^_`{|}~"},
};

wxString JoinNames(const std::vector<const char*>& names) {
    if (names.empty()) {
        return Translate("nothing");
    }
    wxString list = Translate(names.front());
    for (size_t i = 1; i < names.size(); ++i) {
        list += Translate(i + 1 == names.size() ? CATALOGUE_KEY(" and ") : CATALOGUE_KEY(", "));
        list += Translate(names[i]);
    }
    return list;
}

// The character's code is that of its byte, as in Latin-1.
wchar_t RefusedCharacter(const Outcome& outcome) {
    if (outcome.pin.empty()) {
        return outcome.policy.lastRefusedCharacter;
    }
    const auto index = static_cast<size_t>(outcome.Low4());
    return index < outcome.pin.size() ? static_cast<unsigned char>(outcome.pin[index]) : L'\0';
}

// A character of code 0 ends the text: the closing quote is not shown then.
wxString CharacterRefused(const Outcome& outcome) {
    return FormatTranslated("Pin code contains at least a disallowed characters: \"%c\"",
                            RefusedCharacter(outcome));
}

wxString DistanceTooSmall(const Outcome& outcome) {
    return FormatTranslated(
        "PIN too weak:\ndistance between consecutive characters is equal to %d\n "
        "It has to be greater than %d.",
        outcome.Low6(), static_cast<int>(outcome.policy.p1Threshold));
}

wxString Unrecognised(const Outcome& outcome) {
    return FormatTranslated("Unrecognized error code : %04X",
                            static_cast<unsigned>(outcome.status));
}

wxString TooFewClasses(const Outcome& outcome) {
    std::vector<const char*> used;
    std::vector<const char*> missing;
    for (const CharacterClass& each : kListedClasses) {
        if ((outcome.policy.p2ClassMask & each.bit) != 0) {
            const bool isUsed = outcome.pin.find_first_of(each.members) != std::string_view::npos;
            (isUsed ? used : missing).push_back(each.name);
        }
    }
    return FormatTranslated("PIN code invalid:\nThis PIN uses %ls.\nIt is missing %ls.",
                            JoinNames(used), JoinNames(missing));
}

wxString PinTooShort(const Outcome& outcome) {
    return FormatTranslated(
        "PIN code too short:\nThe policy expects a length of %d "
        "characters minimum",
        outcome.Low4());
}

wxString ClassTooSmall(const Outcome& outcome) {
    return FormatTranslated(
        "Class not enough populated:\nThis PIN only use a sufficient number of "
        "class,\nbut one of them only count %d members\n It has to be at least %d.",
        outcome.Low4(), static_cast<int>(outcome.policy.p2PopMin));
}

wxString HistoryRefused(const Outcome& outcome) {
    if (outcome.policy.p3StrictOnly != 0) {
        return FormatTranslated(
            "PIN code already known:\nThe PIN you entered is the same as one of the "
            "last %d PIN that was previously set on this token.",
            static_cast<int>(outcome.policy.p3HistorySize));
    }
    return FormatTranslated(
        "PIN code too similar to an old one:\nThe similarity is too high for the "
        "choosen tolerance level (%d).\nThe internal threshold is set to %d.",
        outcome.Low6(), static_cast<int>(outcome.policy.p3Threshold));
}

wxString Accepted(const Outcome&) {
    return FormatTranslated("Congratulation,\n This seems to be a valid PIN code");
}

wxString CommunicationProblem(const Outcome& outcome) {
    return FormatTranslated("Communication problem : %04X", static_cast<unsigned>(outcome.status));
}

struct StatusRange {
    PolicyStatus first;
    PolicyStatus last;
    wxString (*describe)(const Outcome&);
};

constexpr StatusRange kStatusRanges[] = {
    {kCharacterRefused, 0x643F, CharacterRefused},
    {kDistanceTooSmall, 0x647F, DistanceTooSmall},
    {0x6480, 0x648F, Unrecognised},
    {kTooFewClasses, 0x649F, TooFewClasses},
    {kPinTooShort, 0x64AF, PinTooShort},
    {kClassTooSmall, 0x64BF, ClassTooSmall},
    {kHistoryRefused, 0x64FF, HistoryRefused},
    {kPolicyAccepted, 0x903F, Accepted},
    {0x0000, 0xFFFF, CommunicationProblem},
};

}  // namespace

wxString DescribePolicyStatus(const PinPolicy& policy, PolicyStatus status, std::string_view pin) {
    const Outcome outcome{policy, status, pin};
    const StatusRange* range = kStatusRanges;
    while (status < range->first || status > range->last) {
        ++range;
    }
    return range->describe(outcome);
}

}  // namespace zeldlg
