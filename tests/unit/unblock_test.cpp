// What the unblock dialogs decide without a window: methods, algorithms, the challenge's text, the
// rules of a new PIN.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <limits>
#include <string>

#include "dialogs/challenge_response.h"
#include "dialogs/select_unblock_method_dialog.h"

namespace zeldlg {
namespace {

constexpr int32_t kLowest = std::numeric_limits<int32_t>::min();
constexpr int32_t kHighest = std::numeric_limits<int32_t>::max();

TEST(Method, IsOneForThePukElseOneAndTheOfflineState) {
    EXPECT_EQ(UnblockMethodOf(true, false), 1U);
    EXPECT_EQ(UnblockMethodOf(true, true), 1U);
    EXPECT_EQ(UnblockMethodOf(false, true), 2U);
    EXPECT_EQ(UnblockMethodOf(false, false), 1U);
}

TEST(AlgorithmIndex, IsTheRowOrZeroWhereThereIsNone) {
    EXPECT_EQ(AlgorithmIndexOf(0), 0U);
    EXPECT_EQ(AlgorithmIndexOf(7), 7U);
    EXPECT_EQ(AlgorithmIndexOf(-1), 0U);
}

TEST(AlgorithmNames, AreThoseOfTheKnownCodesAndTheNumberOfOthers) {
    EXPECT_EQ(AlgorithmName(0), "3DES ECB Challenge/Response");
    EXPECT_EQ(AlgorithmName(1), "3DES ECB Witness/Challenge/Response");
    EXPECT_EQ(AlgorithmName(2), "Unknown algorithm (2)");
    EXPECT_EQ(AlgorithmName(4294967295), "Unknown algorithm (4294967295)");
}

TEST(Challenge, IsUpperCaseHexadecimalWithoutSeparators) {
    EXPECT_EQ(ChallengeText(""), "");
    EXPECT_EQ(ChallengeText(std::string("\0\x01\x0a\x7f\x80\xff", 6)), "00010A7F80FF");
    for (int byte = 0; byte < 256; ++byte) {
        char expected[3];
        ASSERT_EQ(snprintf(expected, sizeof expected, "%.2X", static_cast<unsigned>(byte)), 2);
        EXPECT_EQ(ChallengeText(std::string(1, static_cast<char>(byte))), expected);
    }
}

struct NewPinRow {
    NewPinBounds bounds;
    const char* pin;
    const char* confirmation;
    bool minOk;
    bool maxOk;
    bool equal;
};

class NewPin : public testing::TestWithParam<NewPinRow> {};

TEST_P(NewPin, IsCheckedWithItsConfirmation) {
    const NewPinRow& row = GetParam();
    const NewPinRules rules = CheckNewPin(row.bounds, row.pin, row.confirmation);
    EXPECT_EQ(rules.minOk, row.minOk);
    EXPECT_EQ(rules.maxOk, row.maxOk);
    EXPECT_EQ(rules.equal, row.equal);
    EXPECT_EQ(rules.LengthOk(), row.minOk && row.maxOk);
}

INSTANTIATE_TEST_SUITE_P(
    Bounds, NewPin,
    testing::Values(NewPinRow{{4, 8}, "", "", false, true, true},
                    NewPinRow{{4, 8}, "123", "123", false, true, true},
                    NewPinRow{{4, 8}, "1234", "1234", true, true, true},
                    NewPinRow{{4, 8}, "12345678", "12345678", true, true, true},
                    NewPinRow{{4, 8}, "123456789", "123456789", true, false, true},
                    // Bytes, not characters.
                    NewPinRow{{4, 8}, "\u00e9\u00e9", "\u00e9\u00e9", true, true, true},
                    NewPinRow{{0, 3}, "\u00e9\u00e9", "\u00e9\u00e9", true, false, true}));

INSTANTIATE_TEST_SUITE_P(TheSecondIsLookedAtWhenTheFirstPasses, NewPin,
                         testing::Values(NewPinRow{{4, 8}, "1234", "", false, true, false},
                                         NewPinRow{{4, 8}, "1234", "123456789", true, false, false},
                                         NewPinRow{{4, 8}, "123456789", "", true, false, false},
                                         NewPinRow{
                                             {4, 8}, "123", "123456789", false, true, false}));

INSTANTIATE_TEST_SUITE_P(Equality, NewPin,
                         testing::Values(NewPinRow{{4, 8}, "1234", "1235", true, true, false},
                                         NewPinRow{{4, 8}, "1234", "12345", true, true, false},
                                         NewPinRow{{4, 8}, "abcd", "ABCD", true, true, false}));

INSTANTIATE_TEST_SUITE_P(
    OddBounds, NewPin,
    testing::Values(NewPinRow{{0, 0}, "", "", true, true, true},
                    NewPinRow{{0, 0}, "1", "1", true, false, true},
                    NewPinRow{{-1, 8}, "", "", true, true, true},
                    NewPinRow{{kLowest, kHighest}, "1", "1", true, true, true},
                    NewPinRow{{4, -1}, "1234", "1234", true, false, true},
                    NewPinRow{{kLowest, kLowest}, "", "", true, false, true},
                    NewPinRow{{kHighest, kHighest}, "1234", "1234", false, true, true},
                    // No PIN fits between these.
                    NewPinRow{{8, 4}, "123456", "123456", false, false, true}));

}  // namespace
}  // namespace zeldlg
