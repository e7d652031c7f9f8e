#include <gtest/gtest.h>

#include <string>

#include "pin/pin_rules.h"
#include "support/attempt_warnings.h"

namespace zeldlg {
namespace {

TEST(PinLengthRule, AnEmptyFieldIsTooShortAndNotTooLong) {
    const PinLengthRule rule(4, 8);
    EXPECT_FALSE(rule.MinOk());
    EXPECT_TRUE(rule.MaxOk());
    EXPECT_FALSE(rule.Accepts());
}

TEST(PinLengthRule, AcceptsExactlyTheLengthsBetweenTheLimits) {
    PinLengthRule rule(4, 8);
    for (uint32_t length = 0; length <= 12; ++length) {
        rule.Update(length);
        EXPECT_EQ(rule.MinOk(), length >= 4) << length;
        EXPECT_EQ(rule.MaxOk(), length <= 8) << length;
        EXPECT_EQ(rule.Accepts(), length >= 4 && length <= 8) << length;
    }
}

TEST(PinLengthRule, ReportsOnlyChanges) {
    PinLengthRule rule(4, 8);
    EXPECT_FALSE(rule.Update(3));
    EXPECT_TRUE(rule.Update(4));
    EXPECT_FALSE(rule.Update(8));
    EXPECT_TRUE(rule.Update(9));
    EXPECT_FALSE(rule.Update(20));
    EXPECT_TRUE(rule.Update(0)) << "from too long to too short both limits change";
}

TEST(PinLengthRule, WithMinimumZeroNothingIsAcceptedUntilTheFirstChange) {
    PinLengthRule rule(0, 8);
    EXPECT_FALSE(rule.Accepts());
    EXPECT_TRUE(rule.Update(0));
    EXPECT_TRUE(rule.Accepts());
}

TEST(PinLengthRule, LimitsThatContradictEachOtherAcceptNothing) {
    PinLengthRule rule(8, 4);
    for (uint32_t length = 0; length <= 12; ++length) {
        rule.Update(length);
        EXPECT_FALSE(rule.Accepts()) << length;
    }
}

TEST(PinLengthRule, LimitsAreUnsigned) {
    PinLengthRule rule(0, 0xFFFFFFFF);
    rule.Update(65535);
    EXPECT_TRUE(rule.Accepts());
}

constexpr const char* kIncorrect = "PIN incorrect";
constexpr const char* kEarlier = "The PIN has previously been entered incorrectly";
using test::kLastAttempt;
using test::kMayLock;

std::string Line(const char* key) { return key != nullptr ? key : ""; }

struct AttemptsRow {
    PinAttempts attempts;
    const char* failure;
    const char* warning;
};

class FailureOfAttempts : public testing::TestWithParam<AttemptsRow> {};

TEST_P(FailureOfAttempts, IsDescribed) {
    const auto& [attempts, failure, warning] = GetParam();
    const PinFailureLines lines = DescribeFailure(attempts);
    EXPECT_EQ(Line(lines.failure), failure);
    EXPECT_EQ(Line(lines.warning), warning);
    EXPECT_FALSE(lines.triesLeft);
}

// {noFailure, finalTry, failedEarlier}
INSTANTIATE_TEST_SUITE_P(AllCombinations, FailureOfAttempts,
                         testing::Values(AttemptsRow{{true, false, false}, "", ""},
                                         AttemptsRow{{true, false, true}, "", ""},
                                         AttemptsRow{{true, true, false}, kIncorrect, kLastAttempt},
                                         AttemptsRow{{true, true, true}, kEarlier, kLastAttempt},
                                         AttemptsRow{{false, false, false}, kIncorrect, kMayLock},
                                         AttemptsRow{{false, false, true}, kEarlier, kMayLock},
                                         AttemptsRow{
                                             {false, true, false}, kIncorrect, kLastAttempt},
                                         AttemptsRow{{false, true, true}, kEarlier, kLastAttempt}));

struct CounterRow {
    PinRetryCounter counter;
    const char* failure;
    const char* warning;
    std::optional<uint32_t> triesLeft;
};

class FailureOfCounter : public testing::TestWithParam<CounterRow> {};

TEST_P(FailureOfCounter, IsDescribed) {
    const auto& [counter, failure, warning, triesLeft] = GetParam();
    const PinFailureLines lines = DescribeFailure(counter);
    EXPECT_EQ(Line(lines.failure), failure);
    EXPECT_EQ(Line(lines.warning), warning);
    EXPECT_EQ(lines.triesLeft, triesLeft);
}

// {maxTries, triesLeft, failedEarlier}
INSTANTIATE_TEST_SUITE_P(AllCombinations, FailureOfCounter,
                         testing::Values(CounterRow{{3, 3, false}, "", "", {}},
                                         CounterRow{{3, 3, true}, "", "", {}},
                                         CounterRow{{3, 2, false}, kIncorrect, kMayLock, 2},
                                         CounterRow{{3, 2, true}, kEarlier, kMayLock, 2},
                                         CounterRow{{3, 1, false}, kIncorrect, kLastAttempt, {}},
                                         CounterRow{{3, 1, true}, kEarlier, kLastAttempt, {}},
                                         CounterRow{{1, 1, false}, kIncorrect, kLastAttempt, {}},
                                         CounterRow{{1, 1, true}, kEarlier, kLastAttempt, {}},
                                         CounterRow{{3, 0, false}, kIncorrect, kMayLock, 0},
                                         CounterRow{{0, 0, false}, "", "", {}},
                                         CounterRow{{3, 5, true}, kEarlier, kMayLock, 5}));

}  // namespace
}  // namespace zeldlg
