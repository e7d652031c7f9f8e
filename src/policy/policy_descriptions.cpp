#include "policy/policy_descriptions.h"

#include <algorithm>
#include <iterator>

#include "resources/texts.h"

namespace zeldlg {

namespace {

// What to say about P1 for the smallest thresholds. kept: the blank at the end of the first two.
constexpr const char* kDistanceExamples[] = {
    CATALOGUE_KEY("\"aaaa\" would not be correct "),
    CATALOGUE_KEY("\"7654321\" or \"abcd\" would not be correct "),
    CATALOGUE_KEY("\"02468\" would not be correct"),
};

// kept: with case folding two blanks follow an example that ends with one.
wxString DistanceText(const PinPolicy& policy) {
    wxString text = FormatTranslated("The distance between each character has to be more than %d",
                                     static_cast<int>(policy.p1Threshold));
    if (policy.p1Threshold < std::size(kDistanceExamples)) {
        text += Translate(" for example: ");
        text += Translate(kDistanceExamples[policy.p1Threshold]);
    }
    if (policy.p1CaseSensitive == 0) {
        text += Translate(" without consideration of the case");
    }
    return text + Translate(".");
}

struct ClassItem {
    uint8_t bit;
    const char* text;
};

// kept: each item ends with ", ", so the list runs into the words that follow it.
constexpr ClassItem kClassItems[] = {
    {kClassLower, CATALOGUE_KEY("downcase letters, ")},
    {kClassUpper, CATALOGUE_KEY("upcase letters, ")},
    {kClassDigit, CATALOGUE_KEY("numbers, ")},
    {kClassPunctuation, CATALOGUE_KEY("punctuation characters, ")},
    {kClassOther, CATALOGUE_KEY("and accentuated characters, ")},
};

wxString ClassList(const PinPolicy& policy) {
    wxString list = Translate("chosen between ");
    for (const ClassItem& item : kClassItems) {
        if ((policy.p2ClassMask & item.bit) != 0) {
            list += Translate(item.text);
        }
    }
    return list;
}

wxString ClassificationText(const PinPolicy& policy) {
    // kept: the spelling of the singular.
    const wxString word =
        Translate(policy.p2NbClass == 1 ? CATALOGUE_KEY("classe") : CATALOGUE_KEY("classes"));
    const wxString population =
        policy.p2PopMin == 1 ? Translate("1 character")
                             : FormatTranslated("%d characters", static_cast<int>(policy.p2PopMin));
    return FormatTranslated("The length of the PIN code has to be at least %d characters.\n",
                            static_cast<int>(policy.p2MinLen)) +
           FormatTranslated(
               "The PIN code has to use a minimum number of %d %ls %lsand each "
               "class has to be composed of a minimum of %ls.",
               static_cast<int>(policy.p2NbClass), word, ClassList(policy), population);
}

// By ToleranceLevel.
constexpr const char* kToleranceTexts[] = {
    CATALOGUE_KEY("low, the two compared PIN code shouldn't share any common letters, or at least "
                  "at the same place."),
    CATALOGUE_KEY("medium, the two compared PIN code don't have to share too much common letters "
                  "at the same place."),
    CATALOGUE_KEY("high, the two compared PIN code cannot be the same, or really similar."),
};

wxString HistoryText(const PinPolicy& policy) {
    const wxString size = policy.p3HistorySize == 255
                              ? Translate("the maximum available on the card")
                              : FormatTranslated("%d", static_cast<int>(policy.p3HistorySize));
    wxString text = FormatTranslated("The size of the history memory is %ls", size);
    if (policy.p3StrictOnly != 0) {
        text += Translate(". All PINs present in the history will be refused.");
    } else {
        const auto level = static_cast<size_t>(HistoryTolerance(policy));
        text += FormatTranslated(", and the level of tolerance is %ls",
                                 Translate(kToleranceTexts[level]));
    }
    return text +
           Translate(
               policy.p3CaseInsensitive != 0
                   ? CATALOGUE_KEY(" The similarity is calculated without regarding the case.")
                   : CATALOGUE_KEY(" This similarity is calculated regarding the case."));
}

wxString RestrictionText(const PinPolicy& policy) {
    if (policy.p4CharList.empty()) {
        return Translate("All the characters are allowed.");
    }
    // What exceeds the limit would be cut after formatting anyway.
    const size_t shown = std::min(policy.p4CharList.size(), kFormattedTextLimit);
    return Translate(policy.p4IsWhiteList != 0
                         ? CATALOGUE_KEY("Only some characters are allowed for usage in the PIN.")
                         : CATALOGUE_KEY("Some characters are disallowed for usage in the PIN.")) +
           FormatTranslated("Those one are: \"%ls\" (without the surrounding `\"`)",
                            wxString::From8BitData(policy.p4CharList.data(), shown));
}

struct PolicyBlock {
    uint8_t bit;
    const char* title;
    wxString (*text)(const PinPolicy&);
};

constexpr PolicyBlock kDistanceBlock = {kPolicyElementaryDistance,
                                        CATALOGUE_KEY("Elementary distance:\n"), DistanceText};
constexpr PolicyBlock kClassificationBlock = {kPolicyCharacterClassification,
                                              CATALOGUE_KEY("Character classification:\n"),
                                              ClassificationText};
constexpr PolicyBlock kHistoryBlock = {kPolicyHistoryChecking, CATALOGUE_KEY("History checking:\n"),
                                       HistoryText};
constexpr PolicyBlock kRestrictionBlock = {
    kPolicyCharacterRestriction, CATALOGUE_KEY("Character restriction:\n"), RestrictionText};

wxString Describe(const PolicyBlock& block, const PinPolicy& policy) {
    return Translate(block.title) + (policy.IsEnabled(block.bit)
                                         ? block.text(policy)
                                         : Translate("This policy is disabled"));
}

struct SourceText {
    PolicySource source;
    const char* text;
};

constexpr SourceText kSourceTexts[] = {
    {PolicySource::Card, CATALOGUE_KEY("This is the current policy present on the card.")},
    {PolicySource::Registry,
     CATALOGUE_KEY("This description is extracted from the registry setting.")},
    {PolicySource::Unknown, CATALOGUE_KEY("The source of this policy is unknown ...")},
};

wxString DescribeSource(PolicySource source) {
    const auto* const found =
        std::find_if(std::begin(kSourceTexts), std::end(kSourceTexts),
                     [source](const SourceText& each) { return each.source == source; });
    return Translate(found != std::end(kSourceTexts)
                         ? found->text
                         : CATALOGUE_KEY(" /!\\ No clear source specified. /!\\"));
}

}  // namespace

wxString DescribeElementaryDistance(const PinPolicy& policy) {
    return Describe(kDistanceBlock, policy);
}

wxString DescribeCharacterClassification(const PinPolicy& policy) {
    return Describe(kClassificationBlock, policy);
}

wxString DescribeHistoryChecking(const PinPolicy& policy) {
    return Describe(kHistoryBlock, policy);
}

wxString DescribeCharacterRestriction(const PinPolicy& policy) {
    return Describe(kRestrictionBlock, policy);
}

wxString DescribePinPolicy(const PinPolicy& policy) {
    wxString text;
    for (const PolicyBlock& block :
         {kDistanceBlock, kClassificationBlock, kHistoryBlock, kRestrictionBlock}) {
        text += Describe(block, policy) + Translate("\n\n");
    }
    return text + DescribeSource(policy.source);
}

}  // namespace zeldlg
