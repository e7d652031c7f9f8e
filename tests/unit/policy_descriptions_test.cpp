// The words for a policy, to the letter.
#include "policy/policy_descriptions.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

namespace zeldlg {
namespace {

PinPolicy Enabled(const std::function<void(PinPolicy&)>& change = [](PinPolicy&) {}) {
    PinPolicy policy;
    policy.enabledMask = 15;
    change(policy);
    return policy;
}

TEST(PolicyDescriptions, DisabledPoliciesHaveTheirTitleAndSaySo) {
    PinPolicy policy;
    policy.p3Threshold = 3;
    policy.p4CharList = "abc";
    EXPECT_EQ(DescribeElementaryDistance(policy), "Elementary distance:\nThis policy is disabled");
    EXPECT_EQ(DescribeCharacterClassification(policy),
              "Character classification:\nThis policy is disabled");
    EXPECT_EQ(DescribeHistoryChecking(policy), "History checking:\nThis policy is disabled");
    EXPECT_EQ(DescribeCharacterRestriction(policy),
              "Character restriction:\nThis policy is disabled");
}

TEST(PolicyDescriptions, EachPolicyHasItsOwnBit) {
    for (unsigned number = 0; number < 8; ++number) {
        const auto bit = static_cast<uint8_t>(1U << number);
        PinPolicy policy;
        policy.enabledMask = bit;
        const auto isDisabled = [](const wxString& text) {
            return text.EndsWith("This policy is disabled");
        };
        EXPECT_EQ(isDisabled(DescribeElementaryDistance(policy)), bit != 1) << +bit;
        EXPECT_EQ(isDisabled(DescribeCharacterClassification(policy)), bit != 2) << +bit;
        EXPECT_EQ(isDisabled(DescribeHistoryChecking(policy)), bit != 4) << +bit;
        EXPECT_EQ(isDisabled(DescribeCharacterRestriction(policy)), bit != 8) << +bit;
    }
}

struct DistanceRow {
    uint8_t threshold;
    uint8_t caseSensitive;
    const wchar_t* text;
};

constexpr DistanceRow kDistanceRows[] = {
    {0, 0,
     L"Elementary distance:\nThe distance between each character has to be more than 0 for "
     L"example: \"aaaa\" would not be correct  without consideration of the case."},
    {0, 1,
     L"Elementary distance:\nThe distance between each character has to be more than 0 for "
     L"example: \"aaaa\" would not be correct ."},
    {1, 0,
     L"Elementary distance:\nThe distance between each character has to be more than 1 for "
     L"example: \"7654321\" or \"abcd\" would not be correct  without consideration of the case."},
    {1, 255,
     L"Elementary distance:\nThe distance between each character has to be more than 1 for "
     L"example: \"7654321\" or \"abcd\" would not be correct ."},
    {2, 0,
     L"Elementary distance:\nThe distance between each character has to be more than 2 for "
     L"example: \"02468\" would not be correct without consideration of the case."},
    {2, 1,
     L"Elementary distance:\nThe distance between each character has to be more than 2 for "
     L"example: \"02468\" would not be correct."},
    {3, 0,
     L"Elementary distance:\nThe distance between each character has to be more than 3 without "
     L"consideration of the case."},
    {5, 1, L"Elementary distance:\nThe distance between each character has to be more than 5."},
    {255, 1, L"Elementary distance:\nThe distance between each character has to be more than 255."},
};

TEST(PolicyDescriptions, DistanceTellsThresholdExampleAndCase) {
    for (const DistanceRow& row : kDistanceRows) {
        const PinPolicy policy = Enabled([&row](PinPolicy& each) {
            each.p1Threshold = row.threshold;
            each.p1CaseSensitive = row.caseSensitive;
        });
        EXPECT_EQ(DescribeElementaryDistance(policy).ToStdWstring(), row.text);
    }
}

TEST(PolicyDescriptions, DistanceOfFiveHasNoExample) {
    const PinPolicy policy = Enabled([](PinPolicy& each) { each.p1Threshold = 5; });
    EXPECT_EQ(DescribeElementaryDistance(policy),
              "Elementary distance:\nThe distance between each character has to be more than 5 "
              "without consideration of the case.");
}

struct ClassificationRow {
    uint8_t classes;
    uint8_t population;
    uint8_t length;
    uint8_t mask;
    const wchar_t* text;
};

constexpr ClassificationRow kClassificationRows[] = {
    {0, 0, 0, 0,
     L"Character classification:\nThe length of the PIN code has to be at least 0 characters.\n"
     L"The PIN code has to use a minimum number of 0 classes chosen between and each class has to "
     L"be composed of a minimum of 0 characters."},
    {1, 1, 1, 1,
     L"Character classification:\nThe length of the PIN code has to be at least 1 characters.\n"
     L"The PIN code has to use a minimum number of 1 classe chosen between downcase letters, and "
     L"each class has to be composed of a minimum of 1 character."},
    {2, 2, 8, 255,
     L"Character classification:\nThe length of the PIN code has to be at least 8 characters.\n"
     L"The PIN code has to use a minimum number of 2 classes chosen between downcase letters, "
     L"upcase letters, numbers, punctuation characters, and accentuated characters, and each class "
     L"has to be composed of a minimum of 2 characters."},
    {255, 255, 255, 10,
     L"Character classification:\nThe length of the PIN code has to be at least 255 characters.\n"
     L"The PIN code has to use a minimum number of 255 classes chosen between upcase letters, "
     L"punctuation characters, and each class has to be composed of a minimum of 255 characters."},
    {3, 1, 6, 20,
     L"Character classification:\nThe length of the PIN code has to be at least 6 characters.\n"
     L"The PIN code has to use a minimum number of 3 classes chosen between numbers, and "
     L"accentuated characters, and each class has to be composed of a minimum of 1 character."},
};

TEST(PolicyDescriptions, ClassificationTellsLengthClassesAndPopulation) {
    for (const ClassificationRow& row : kClassificationRows) {
        const PinPolicy policy = Enabled([&row](PinPolicy& each) {
            each.p2NbClass = row.classes;
            each.p2PopMin = row.population;
            each.p2MinLen = row.length;
            each.p2ClassMask = row.mask;
        });
        EXPECT_EQ(DescribeCharacterClassification(policy).ToStdWstring(), row.text);
    }
}

struct HistoryRow {
    uint8_t size;
    uint8_t strictOnly;
    uint8_t threshold;
    uint8_t normalize;
    uint8_t caseInsensitive;
    const wchar_t* text;
};

constexpr HistoryRow kHistoryRows[] = {
    {5, 0, 1, 0, 0,
     L"History checking:\nThe size of the history memory is 5, and the level of tolerance is low, "
     L"the two compared PIN code shouldn't share any common letters, or at least at the same "
     L"place. This similarity is calculated regarding the case."},
    {5, 0, 3, 1, 1,
     L"History checking:\nThe size of the history memory is 5, and the level of tolerance is "
     L"medium, the two compared PIN code don't have to share too much common letters at the same "
     L"place. The similarity is calculated without regarding the case."},
    {255, 0, 0, 0, 0,
     L"History checking:\nThe size of the history memory is the maximum available on the card, and "
     L"the level of tolerance is high, the two compared PIN code cannot be the same, or really "
     L"similar. This similarity is calculated regarding the case."},
    {0, 0, 13, 0, 1,
     L"History checking:\nThe size of the history memory is 0, and the level of tolerance is high, "
     L"the two compared PIN code cannot be the same, or really similar. The similarity is "
     L"calculated without regarding the case."},
    {254, 1, 3, 0, 0,
     L"History checking:\nThe size of the history memory is 254. All PINs present in the history "
     L"will be refused. This similarity is calculated regarding the case."},
};

TEST(PolicyDescriptions, HistoryTellsSizeToleranceAndCase) {
    for (const HistoryRow& row : kHistoryRows) {
        const PinPolicy policy = Enabled([&row](PinPolicy& each) {
            each.p3HistorySize = row.size;
            each.p3StrictOnly = row.strictOnly;
            each.p3Threshold = row.threshold;
            each.p3LengthNormalize = row.normalize;
            each.p3CaseInsensitive = row.caseInsensitive;
        });
        EXPECT_EQ(DescribeHistoryChecking(policy).ToStdWstring(), row.text);
    }
}

TEST(PolicyDescriptions, HistoryOf255WithStrictOnlyNamesTheMaximumOfTheCard) {
    const PinPolicy policy = Enabled([](PinPolicy& each) {
        each.p3HistorySize = 255;
        each.p3StrictOnly = 1;
        each.p3CaseInsensitive = 1;
    });
    EXPECT_EQ(DescribeHistoryChecking(policy),
              "History checking:\nThe size of the history memory is the maximum available on the "
              "card. All PINs present in the history will be refused. The similarity is calculated "
              "without regarding the case.");
}

std::wstring Restriction(const std::string& list, bool whiteList) {
    return DescribeCharacterRestriction(Enabled([&](PinPolicy& each) {
               each.p4CharList = list;
               each.p4IsWhiteList = whiteList ? 1 : 0;
           }))
        .ToStdWstring();
}

TEST(PolicyDescriptions, RestrictionWithoutAListAllowsEverything) {
    for (const bool whiteList : {false, true}) {
        EXPECT_EQ(Restriction("", whiteList),
                  L"Character restriction:\nAll the characters are allowed.");
    }
}

TEST(PolicyDescriptions, RestrictionNamesTheListedCharacters) {
    EXPECT_EQ(Restriction("0123", true),
              L"Character restriction:\nOnly some characters are allowed for usage in the "
              L"PIN.Those one are: \"0123\" (without the surrounding `\"`)");
    EXPECT_EQ(Restriction("%d\"", false),
              L"Character restriction:\nSome characters are disallowed for usage in the "
              L"PIN.Those one are: \"%d\"\" (without the surrounding `\"`)");
}

TEST(PolicyDescriptions, ListIsShownAsLatin1UpToAZeroByte) {
    EXPECT_EQ(Restriction("\xC3\xA9\x80\xFF", true),
              L"Character restriction:\nOnly some characters are allowed for usage in the "
              L"PIN.Those one are: \"\u00C3\u00A9\u0080\u00FF\" (without the surrounding `\"`)");
    EXPECT_EQ(Restriction(std::string("ab\0cd", 5), true),
              L"Character restriction:\nOnly some characters are allowed for usage in the "
              L"PIN.Those one are: \"ab\" (without the surrounding `\"`)");
}

TEST(PolicyDescriptions, PieceWithALongListIsCutAt499Characters) {
    const std::wstring before =
        L"Character restriction:\nSome characters are disallowed for usage in the PIN.";
    const std::wstring first = L"Those one are: \"";
    const std::wstring last = L"\" (without the surrounding `\"`)";
    const size_t room = 499 - first.length() - last.length();
    EXPECT_EQ(Restriction(std::string(room, 'q'), false),
              before + first + std::wstring(room, L'q') + last);
    EXPECT_EQ(Restriction(std::string(room + 1, 'q'), false),
              before + first + std::wstring(room + 1, L'q') + last.substr(0, last.length() - 1));
    for (const size_t length : {499U, 500U, 1U << 20}) {
        EXPECT_EQ(Restriction(std::string(length, 'q'), false),
                  before + first + std::wstring(499 - first.length(), L'q'))
            << length;
    }
}

TEST(PolicyDescriptions, CombinedJoinsTheFourBlocksAndTheSource) {
    EXPECT_EQ(DescribePinPolicy(PinPolicy()),
              "Elementary distance:\nThis policy is disabled\n\n"
              "Character classification:\nThis policy is disabled\n\n"
              "History checking:\nThis policy is disabled\n\n"
              "Character restriction:\nThis policy is disabled\n\n"
              "The source of this policy is unknown ...");
    const PinPolicy policy = Enabled();
    EXPECT_EQ(DescribePinPolicy(policy), DescribeElementaryDistance(policy) + "\n\n" +
                                             DescribeCharacterClassification(policy) + "\n\n" +
                                             DescribeHistoryChecking(policy) + "\n\n" +
                                             DescribeCharacterRestriction(policy) + "\n\n" +
                                             "The source of this policy is unknown ...");
}

TEST(PolicyDescriptions, CombinedNamesEachSource) {
    const auto lastLine = [](int32_t source) {
        PinPolicy policy;
        policy.source = static_cast<PolicySource>(source);
        return DescribePinPolicy(policy).AfterLast('\n').ToStdString();
    };
    EXPECT_EQ(lastLine(-4), "This is the current policy present on the card.");
    EXPECT_EQ(lastLine(-3), "This description is extracted from the registry setting.");
    EXPECT_EQ(lastLine(-2), "The source of this policy is unknown ...");
    for (const int32_t other : {-5, -1, 0, 1, 252}) {
        EXPECT_EQ(lastLine(other), " /!\\ No clear source specified. /!\\") << other;
    }
}

}  // namespace
}  // namespace zeldlg
