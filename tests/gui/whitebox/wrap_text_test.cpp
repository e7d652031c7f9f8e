// Texts that are broken into lines, in either direction of writing.
#include <gtest/gtest.h>
#include <wx/arrstr.h>
#include <wx/frame.h>

#include "test_app.h"
#include "widgets/layout.h"

namespace zeldlg {
namespace {

// A word of each direction, often enough for several lines.
wxString Repeat(const wchar_t* word) {
    wxString text;
    for (int i = 0; i < 40; ++i) {
        text += wxString(word) + " ";
    }
    return text;
}

wxArrayString WrappedLines(const wxString& text) {
    auto* const frame = new wxFrame(nullptr, wxID_ANY, "Frame");
    const wxArrayString lines = wxSplit(layout::WrapText(*frame, text), '\n', '\0');
    frame->Destroy();
    return lines;
}

void ExpectMarkBeforeContinuedLines(const wxString& text, const wxString& mark) {
    const wxArrayString lines = WrappedLines(text);
    ASSERT_GT(lines.size(), 2U);
    EXPECT_NE(lines[0].Left(1), mark);
    for (size_t line = 1; line < lines.size(); ++line) {
        EXPECT_EQ(lines[line].Left(1), mark) << line << ": " << lines[line].utf8_str();
    }
}

TEST(WrapText, LinesOfOneDirectionAreLeftAsTheyAre) {
    for (const wchar_t* const word : {L"token", L"אסימון", L"123"}) {
        const wxString text = Repeat(word);
        wxString joined;
        for (const wxString& line : WrappedLines(text)) {
            joined += wxString(line).Trim() + " ";
        }
        EXPECT_EQ(joined, text);
    }
}

TEST(WrapText, ContinuedLinesKeepTheDirectionOfTheirParagraph) {
    ExpectMarkBeforeContinuedLines("Token " + Repeat(L"אסימון"), L"\u200E");
    ExpectMarkBeforeContinuedLines(L"אסימון " + Repeat(L"token"), L"\u200F");
}

TEST(WrapText, WhatIsEnclosedStaysSoInEachLine) {
    const wxArrayString lines =
        WrappedLines(L"Token \"\u2068" + Repeat(L"אסימון") + L"\u2069\" is locked");
    ASSERT_GT(lines.size(), 2U);
    for (size_t line = 0; line < lines.size(); ++line) {
        EXPECT_EQ(lines[line].Freq(L'\u2068'), 1U) << line;
        EXPECT_EQ(lines[line].Freq(L'\u2069'), 1U) << line;
    }
    EXPECT_TRUE(lines.Last().StartsWith(L"\u200E\u2068")) << lines.Last().utf8_str();
    EXPECT_TRUE(lines.Last().EndsWith(L"\u2069\" is locked")) << lines.Last().utf8_str();
}

TEST(WrapText, ALineBreakOfTheTextBeginsAParagraph) {
    const wxArrayString lines = WrappedLines(L"Token\nאסימון");
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[1], L"אסימון");
}

}  // namespace
}  // namespace zeldlg
