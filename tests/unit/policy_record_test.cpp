// The policy record: what a new one says, copying, and the tolerance level of P3.
#include <gtest/gtest.h>

#include "policy/pin_policy.h"

namespace zeldlg {
namespace {

PinPolicy FilledPolicy() {
    PinPolicy policy;
    policy.headerByte = 1;
    policy.formatTag = 2;
    policy.enabledMask = 3;
    policy.p1Threshold = 4;
    policy.p1CaseSensitive = 5;
    policy.p1FullPinCheck = 6;
    policy.p2NbClass = 7;
    policy.p2PopMin = 8;
    policy.p2MinLen = 9;
    policy.p2ClassMask = 10;
    policy.p3Threshold = 11;
    policy.p3HistorySize = 12;
    policy.p3CaseInsensitive = 13;
    policy.p3LengthNormalize = 14;
    policy.p3StrictOnly = 15;
    policy.p4CharList = std::string("a\0b", 3);
    policy.lastRefusedCharacter = 16;
    policy.p4IsWhiteList = 17;
    policy.source = PolicySource::Card;
    return policy;
}

TEST(PinPolicy, NewOneHasEverythingSwitchedOffAndAnUnknownSource) {
    const PinPolicy policy;
    for (const uint8_t field :
         {policy.headerByte, policy.formatTag, policy.enabledMask, policy.p1Threshold,
          policy.p1CaseSensitive, policy.p1FullPinCheck, policy.p2NbClass, policy.p2PopMin,
          policy.p2MinLen, policy.p2ClassMask, policy.p3Threshold, policy.p3HistorySize,
          policy.p3CaseInsensitive, policy.p3LengthNormalize, policy.p3StrictOnly,
          policy.lastRefusedCharacter, policy.p4IsWhiteList}) {
        EXPECT_EQ(field, 0);
    }
    EXPECT_EQ(policy.p4CharList, "");
    EXPECT_EQ(static_cast<int>(policy.source), -2);
}

TEST(PinPolicy, CopyHasEveryFieldAndACharacterListOfItsOwn) {
    const PinPolicy original = FilledPolicy();
    PinPolicy copy;
    copy = original;
    EXPECT_EQ(copy, original);
    copy.p4CharList[0] = 'x';
    EXPECT_EQ(original.p4CharList, std::string("a\0b", 3));
}

TEST(PinPolicy, CopyingOntoItselfDoesNothing) {
    PinPolicy policy = FilledPolicy();
    const PinPolicy& same = policy;
    policy = same;
    EXPECT_EQ(policy, FilledPolicy());
}

TEST(PinPolicy, RecordsThatDifferInOneFieldAreNotEqual) {
    PinPolicy other = FilledPolicy();
    other.lastRefusedCharacter = 0;
    EXPECT_NE(other, FilledPolicy());
    other = FilledPolicy();
    other.source = PolicySource::Unknown;
    EXPECT_NE(other, FilledPolicy());
}

TEST(PinPolicy, OnlyTheFourLowestBitsSwitchPoliciesOn) {
    PinPolicy policy;
    policy.enabledMask = 0xF0;
    for (const uint8_t bit : {kPolicyElementaryDistance, kPolicyCharacterClassification,
                              kPolicyHistoryChecking, kPolicyCharacterRestriction}) {
        EXPECT_FALSE(policy.IsEnabled(bit));
    }
    policy.enabledMask = 0xF4;
    EXPECT_TRUE(policy.IsEnabled(kPolicyHistoryChecking));
    EXPECT_FALSE(policy.IsEnabled(kPolicyCharacterRestriction));
}

struct ToleranceRow {
    uint8_t threshold;
    uint8_t normalize;
    ToleranceLevel level;
};

constexpr ToleranceRow kToleranceRows[] = {
    {0, 0, ToleranceLevel::High},
    {0, 1, ToleranceLevel::High},
    {1, 0, ToleranceLevel::Low},
    {5, 0, ToleranceLevel::Low},
    {6, 0, ToleranceLevel::Medium},
    {12, 0, ToleranceLevel::Medium},
    {13, 0, ToleranceLevel::High},
    {255, 0, ToleranceLevel::High},
    {1, 1, ToleranceLevel::Low},
    {2, 1, ToleranceLevel::Low},
    {3, 1, ToleranceLevel::Medium},
    {4, 1, ToleranceLevel::High},
    {3, 255, ToleranceLevel::Medium},
    // Squares whose lowest byte is 0, 1, 4 and 9: the square is not cut to a byte.
    {16, 1, ToleranceLevel::High},
    {127, 1, ToleranceLevel::High},
    {126, 1, ToleranceLevel::High},
    {253, 1, ToleranceLevel::High},
    {255, 1, ToleranceLevel::High},
};

TEST(PinPolicy, ToleranceLevelFollowsTheThresholdOrItsSquare) {
    for (const ToleranceRow& row : kToleranceRows) {
        PinPolicy policy;
        policy.p3Threshold = row.threshold;
        policy.p3LengthNormalize = row.normalize;
        EXPECT_EQ(HistoryTolerance(policy), row.level)
            << "threshold " << +row.threshold << ", normalise " << +row.normalize;
    }
}

TEST(PinPolicy, ThresholdThreeIsMediumNormalisedAndLowOtherwiseAndFourNormalisedIsHigh) {
    PinPolicy policy;
    policy.p3Threshold = 3;
    policy.p3LengthNormalize = 1;
    EXPECT_EQ(HistoryTolerance(policy), ToleranceLevel::Medium);
    policy.p3LengthNormalize = 0;
    EXPECT_EQ(HistoryTolerance(policy), ToleranceLevel::Low);
    policy.p3Threshold = 4;
    policy.p3LengthNormalize = 1;
    EXPECT_EQ(HistoryTolerance(policy), ToleranceLevel::High);
}

}  // namespace
}  // namespace zeldlg
