#include <gtest/gtest.h>

#include "dialogs/selection.h"

namespace zeldlg {
namespace {

TEST(SelectionTexts, TokenRowDropsWhiteSpaceBehindNameAndDetail) {
    EXPECT_EQ(L"Card A (Reader 1)", TokenRowText(L"Card A   ", L"Reader 1"));
    EXPECT_EQ(L"Card A (Reader 1)", TokenRowText(L"Card A\t\r\n", L"Reader 1 \n"));
    EXPECT_EQ(L"  Card  A (  Reader)", TokenRowText(L"  Card  A", L"  Reader"));
    EXPECT_EQ(L" ()", TokenRowText(L"", L"   "));
}

TEST(SelectionTexts, TokenRowShowsConversionsOfTheHostLiterally) {
    EXPECT_EQ(L"100%s (%d & %n)", TokenRowText(L"100%s", L"%d & %n"));
}

TEST(SelectionTexts, TokenRowIsCutAt499Characters) {
    const wxString row = TokenRowText(wxString(L'x', 600), L"Reader");
    EXPECT_EQ(499U, row.length());
    EXPECT_EQ(wxString(L'x', 499), row);
}

TEST(SelectionTexts, CaptionHasAColonAndABlank) {
    EXPECT_EQ(L"Valid From: ", CaptionText(L"Valid From"));
}

TEST(SelectionTexts, CountDownLabelShowsTheSeconds) {
    EXPECT_EQ(L"OK (5s)", CountDownLabel(L"OK", 5));
    EXPECT_EQ(L"OK (0s)", CountDownLabel(L"OK", 0));
    EXPECT_EQ(L"OK (2147483647s)", CountDownLabel(L"OK", 0xFFFFFFFF));
}

TEST(DefaultCountDown, ConfirmsAfterItsSeconds) {
    DefaultCountDown countDown(3);
    EXPECT_EQ(1000, countDown.PeriodMilliseconds());
    EXPECT_EQ(3U, countDown.Remaining());
    EXPECT_FALSE(countDown.Tick());
    EXPECT_EQ(2U, countDown.Remaining());
    EXPECT_FALSE(countDown.Tick());
    EXPECT_TRUE(countDown.Tick());
    EXPECT_EQ(0U, countDown.Remaining());
}

TEST(DefaultCountDown, ZeroSecondsConfirmWithTheFirstTickOfAMillisecond) {
    DefaultCountDown countDown(0);
    EXPECT_EQ(1, countDown.PeriodMilliseconds());
    EXPECT_EQ(1U, countDown.Remaining());
    EXPECT_TRUE(countDown.Tick());
}

TEST(DefaultCountDown, TheLargestSettingCounts) {
    DefaultCountDown countDown(0xFFFFFFFF);
    EXPECT_FALSE(countDown.Tick());
    EXPECT_EQ(0xFFFFFFFEU, countDown.Remaining());
}

}  // namespace
}  // namespace zeldlg
