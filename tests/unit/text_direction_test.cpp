// Host texts in sentences: whatever is in them, the sentence around reads on as it began.
#include "resources/text_direction.h"

#include <gtest/gtest.h>

#include "resources/format_conversions.h"
#include "resources/texts.h"

namespace zeldlg {
namespace {

constexpr TextDirection kLeft = TextDirection::LeftToRight;
constexpr TextDirection kRight = TextDirection::RightToLeft;

struct DirectionRow {
    const wchar_t* text;
    std::optional<TextDirection> direction;
};

class Directions : public testing::TestWithParam<DirectionRow> {};

TEST_P(Directions, AreThoseOfTheFirstLetter) {
    EXPECT_EQ(DirectionOf(GetParam().text), GetParam().direction);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, Directions,
    testing::Values(DirectionRow{L"", {}}, DirectionRow{L"2024-01-01 (\u202E)", {}},
                    DirectionRow{L"1. Card", kLeft}, DirectionRow{L"\u03A9", kLeft},
                    DirectionRow{L"\u6F22", kLeft}, DirectionRow{L"\u05D0bc", kRight},
                    DirectionRow{L"\"\u0645", kRight}, DirectionRow{L"\u0661\u06D4", kRight},
                    DirectionRow{L"\u0661\u05B0x", kLeft}, DirectionRow{L"\uFEFFx", kLeft},
                    DirectionRow{L"\U0001E900", kRight}));

// Where a block begins that is written from right to left, and what is behind the last one.
INSTANTIATE_TEST_SUITE_P(
    Blocks, Directions,
    testing::Values(DirectionRow{L"\u0590x", kRight}, DirectionRow{L"\uFB1Dx", kRight},
                    DirectionRow{L"\uFE70x", kRight}, DirectionRow{L"\U00010800x", kRight},
                    DirectionRow{L"\U0001E800x", kRight}, DirectionRow{L"\U0001F000x", kLeft}));

struct IsolatedRow {
    const wchar_t* text;
    TextDirection surroundings;
    const wchar_t* isolated;
};

class IsolatedTexts : public testing::TestWithParam<IsolatedRow> {};

TEST_P(IsolatedTexts, AreEnclosedWhereTheyCouldTurnTheSentence) {
    const auto& [text, surroundings, isolated] = GetParam();
    EXPECT_EQ(Isolated(text, surroundings), isolated);
}

INSTANTIATE_TEST_SUITE_P(
    Ordinary, IsolatedTexts,
    testing::Values(IsolatedRow{L"", kLeft, L""}, IsolatedRow{L"", kRight, L""},
                    IsolatedRow{L"My card 1", kLeft, L"My card 1"},
                    IsolatedRow{L"two\nlines", kLeft, L"two\nlines"},
                    IsolatedRow{L"\u03A9\u6F22\U0001F511", kLeft, L"\u03A9\u6F22\U0001F511"},
                    IsolatedRow{L"2024-01-01", kRight, L"2024-01-01"},
                    IsolatedRow{L"\u05D0\u05D1 1", kRight, L"\u05D0\u05D1 1"}));

INSTANTIATE_TEST_SUITE_P(
    OtherDirection, IsolatedTexts,
    testing::Values(IsolatedRow{L"\u05D0\u05D1", kLeft, L"\u2068\u05D0\u05D1\u2069"},
                    IsolatedRow{L"Card \u0645", kLeft, L"\u2068Card \u0645\u2069"},
                    IsolatedRow{L"My card", kRight, L"\u2068My card\u2069"},
                    IsolatedRow{L"\u05D0 x", kRight, L"\u2068\u05D0 x\u2069"}));

// U+2069 ends whatever embedding or override the text has begun.
INSTANTIATE_TEST_SUITE_P(Controls, IsolatedTexts,
                         testing::Values(IsolatedRow{L"\u202Eabc", kLeft, L"\u2068\u202Eabc\u2069"},
                                         IsolatedRow{L"a\u202Cb", kRight, L"\u2068a\u202Cb\u2069"},
                                         IsolatedRow{L"\u202A", kLeft, L"\u2068\u202A\u2069"},
                                         IsolatedRow{L"\u202B", kLeft, L"\u2068\u202B\u2069"},
                                         IsolatedRow{L"\u202D", kLeft, L"\u2068\u202D\u2069"},
                                         IsolatedRow{L"1\u200E", kLeft, L"\u20681\u200E\u2069"},
                                         IsolatedRow{L"1\u200F", kLeft, L"\u20681\u200F\u2069"},
                                         IsolatedRow{L"1\u061C", kLeft, L"\u20681\u061C\u2069"},
                                         IsolatedRow{L"1\u061C", kRight, L"\u20681\u061C\u2069"}));

INSTANTIATE_TEST_SUITE_P(
    Unbalanced, IsolatedTexts,
    testing::Values(IsolatedRow{L"a\u2069b", kLeft, L"\u2068\u2068a\u2069b\u2069"},
                    IsolatedRow{L"a\u2066b", kLeft, L"\u2068a\u2066b\u2069\u2069"},
                    IsolatedRow{L"\u2069\u2069\u2067", kLeft,
                                L"\u2068\u2068\u2068\u2069\u2069\u2067\u2069\u2069"},
                    IsolatedRow{L"\u2068a\u2069", kLeft, L"\u2068\u2068a\u2069\u2069"}));

// An isolate ends with its paragraph.
INSTANTIATE_TEST_SUITE_P(
    Paragraphs, IsolatedTexts,
    testing::Values(
        IsolatedRow{L"a\n\u202Eb", kLeft, L"\u2068a\u2069\n\u200E\u2068\u202Eb\u2069"},
        IsolatedRow{L"\u05D0\r\n\u05D1\n", kLeft,
                    L"\u2068\u05D0\u2069\r\n\u200E\u2068\u05D1\u2069\n"},
        IsolatedRow{L"a\x1C\u202Eb", kLeft, L"\u2068a\u2069\x1C\u200E\u2068\u202Eb\u2069"},
        IsolatedRow{L"a\x1D\u202Eb", kLeft, L"\u2068a\u2069\x1D\u200E\u2068\u202Eb\u2069"},
        IsolatedRow{L"a\x1E\u202Eb", kLeft, L"\u2068a\u2069\x1E\u200E\u2068\u202Eb\u2069"},
        IsolatedRow{L"a\u2029b", kRight, L"\u2068a\u2069\u2029\u200F\u2068b\u2069"},
        IsolatedRow{L"\u2066\u0085\u2069", kLeft,
                    L"\u2068\u2066\u2069\u2069\u0085\u200E\u2068\u2068\u2069\u2069"}));

TEST(OpenIsolates, AreThoseOfTheLastParagraph) {
    EXPECT_EQ(OpenIsolates(L"a\u2066b\u2068c\u2069\u2067"), L"\u2066\u2067");
    EXPECT_EQ(OpenIsolates(L"\u2068a\nb"), L"");
    EXPECT_EQ(Closing(L"\u2066\u2067"), L"\u2069\u2069");
}

TEST(CutTo, ClosesWhatTheCutLeavesOpen) {
    EXPECT_EQ(CutTo(L"abcdef", 6), L"abcdef");
    EXPECT_EQ(CutTo(L"abcdef", 4), L"abcd");
    EXPECT_EQ(CutTo(L"ab\u2068cdef\u2069", 6), L"ab\u2068cd\u2069");
    EXPECT_EQ(CutTo(L"\u2068\u2068ab\u2069\u2069c", 5), L"\u2068\u2068a\u2069\u2069");
    EXPECT_EQ(CutTo(L"\u2068\u2068\u2068a", 3), L"\u2068\u2069");
    EXPECT_EQ(CutTo(L"\u2068a", 0), L"");
    EXPECT_EQ(CutTo(L"\u2068a", 2), L"\u2068a") << "whole as it is";
}

TEST(WithoutConversions, LeavesTheWords) {
    EXPECT_EQ(WithoutConversions(L"To log in to \"%s\": %5.2lf %% of %d"),
              L"To log in to \"\":   of ");
}

TEST(FormatHostTexts, LeavesOrdinaryTextsAsTheyAre) {
    EXPECT_EQ(FormatHostTexts("To log in to \"%s\"", wxString(L"Ausweis M\u00FCller")),
              L"To log in to \"Ausweis M\u00FCller\"");
}

TEST(FormatHostTexts, EnclosesEachTextThatCouldTurnTheSentence) {
    EXPECT_EQ(FormatHostTexts("To log in to \"%s\"", wxString(L"\u202Ex")),
              L"To log in to \"\u2068\u202Ex\u2069\"");
    EXPECT_EQ(FormatHostTexts("%s (%s)", wxString(L"\u05D0"), wxString(L"\u05D0")),
              L"\u200E\u2068\u05D0\u2069 (\u2068\u05D0\u2069)");
}

TEST(FormatHostTexts, ASentenceThatBeginsWithATextKeepsItsDirection) {
    EXPECT_EQ(FormatHostTexts("%s (%s)", wxString(L"\u05D0"), wxString("Reader")),
              L"\u200E\u2068\u05D0\u2069 (Reader)");
    EXPECT_EQ(FormatHostTexts("%s (%s)", wxString("Card"), wxString(L"\u05D0")),
              L"Card (\u2068\u05D0\u2069)");
}

TEST(FormatHostTexts, AreClosedWhereTheyAreCut) {
    const wxString label = L"\u202E" + wxString('x', 600);
    const wxString text = FormatHostTexts("To log in to \"%s\"", label);
    EXPECT_EQ(text.length(), kFormattedTextLimit);
    EXPECT_TRUE(text.EndsWith(L"x\u2069"));
    EXPECT_EQ(OpenIsolates(text.ToStdWstring()), L"");
}

}  // namespace
}  // namespace zeldlg
