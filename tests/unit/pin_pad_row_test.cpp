#include "pin/pin_pad.h"

#include <gtest/gtest.h>

#include <string>

namespace zeldlg {
namespace {

const std::wstring kBlankRow = L"_______________";

void Add(PinPadRow& row, int count) {
    for (int i = 0; i < count; ++i) {
        row.AddChar();
    }
}

TEST(PinPadRow, StartsWithFifteenUnderscores) { EXPECT_EQ(PinPadRow().Text(), kBlankRow); }

TEST(PinPadRow, DigitsTakeThePlacesFromTheLeftAndAreDeletedFromTheRight) {
    PinPadRow row;
    Add(row, 3);
    EXPECT_EQ(row.Text(), L"***____________");
    EXPECT_TRUE(row.DeleteChar());
    EXPECT_EQ(row.Text(), L"**_____________");
}

TEST(PinPadRow, EveryNumberOfDigitsLeavesFifteenPlaces) {
    PinPadRow row;
    for (size_t digits = 1; digits <= 15; ++digits) {
        EXPECT_TRUE(row.AddChar());
        EXPECT_EQ(row.Text(), std::wstring(digits, L'*') + std::wstring(15 - digits, L'_'));
    }
}

TEST(PinPadRow, ASixteenthDigitChangesNothing) {
    PinPadRow row;
    Add(row, 15);
    EXPECT_FALSE(row.AddChar());
    EXPECT_EQ(row.Text(), L"***************");
    EXPECT_TRUE(row.DeleteChar());
    EXPECT_EQ(row.Text(), L"**************_");
}

TEST(PinPadRow, NothingIsDeletedFromABlankRow) {
    PinPadRow row;
    EXPECT_FALSE(row.DeleteChar());
    EXPECT_EQ(row.Text(), kBlankRow);
}

TEST(PinPadRow, ClearBlanksTheRowAndSaysWhetherItWasBlank) {
    PinPadRow row;
    EXPECT_FALSE(row.Clear());
    Add(row, 4);
    EXPECT_TRUE(row.Clear());
    EXPECT_EQ(row.Text(), kBlankRow);
}

TEST(PinPadRow, StatusWordsStandInTheMiddle) {
    const struct {
        const wchar_t* words;
        const wchar_t* text;
    } cases[] = {
        {L"Cancel Pressed", L"Cancel_Pressed_"},
        {L"Timer Expired", L"_Timer_Expired_"},
        {L"Ok Pressed", L"__Ok_Pressed___"},
        {L"", L"_______________"},
        {L"   ", L"_______________"},
        {L"x", L"_______x_______"},
        {L"xy", L"______xy_______"},
        {L"  two  blanks  ", L"__two__blanks__"},
        {L"exactly fifteen", L"exactly_fifteen"},
        {L"   exactly fifteen   ", L"exactly_fifteen"},
        {L"sixteen letters!", L"sixteen_letters"},
        {L"fourteen+blank next", L"fourteen+blank_"},
        {L"Zeit\u00fcberschreitung", L"Zeit\u00fcberschreit"},
        {L"Zeit\u00fcberschritten, bitte wiederholen", L"Zeit\u00fcberschritt"},
        {L"\u8d85\u6642", L"______\u8d85\u6642_______"},
        {L"\u0412\u0440\u0435\u043c\u044f \u0432\u044b\u0448\u043b\u043e",
         L"__\u0412\u0440\u0435\u043c\u044f_\u0432\u044b\u0448\u043b\u043e__"},
        {L"\U0001F512 locked", L"___\U0001F512_locked____"},
        {L"tab\tstays", L"___tab\tstays___"},
    };
    for (const auto& each : cases) {
        PinPadRow row;
        Add(row, 5);
        EXPECT_TRUE(row.ShowStatus(each.words)) << each.words;
        EXPECT_EQ(row.Text(), each.text) << each.words;
        EXPECT_EQ(row.Text().size(), 15U) << each.words;
        EXPECT_FALSE(row.ShowStatus(each.words)) << each.words;
    }
}

TEST(PinPadRow, DigitsAfterStatusWordsOverwriteThemFromTheLeft) {
    PinPadRow row;
    row.ShowStatus(L"Timer Expired");
    Add(row, 2);
    EXPECT_EQ(row.Text(), L"**imer_Expired_");
    row.DeleteChar();
    EXPECT_EQ(row.Text(), L"*_imer_Expired_");
    row.Clear();
    EXPECT_EQ(row.Text(), kBlankRow);
}

TEST(PinPadRow, AMaskCharacterInStatusWordsCountsAsADigit) {
    PinPadRow row;
    row.ShowStatus(L"OK * OK");
    EXPECT_EQ(row.Text(), L"____OK_*_OK____");
    row.AddChar();
    EXPECT_EQ(row.Text(), L"____OK_**OK____");
    row.DeleteChar();
    row.DeleteChar();
    EXPECT_FALSE(row.DeleteChar());
    EXPECT_EQ(row.Text(), L"____OK___OK____");
}

}  // namespace
}  // namespace zeldlg
