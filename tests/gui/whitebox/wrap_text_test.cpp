// Texts that are broken into lines, in either direction of writing: what labels show of them, and
// what a screen reader is told.
#include <gtest/gtest.h>
#include <gtk/gtk.h>
#include <wx/arrstr.h>
#include <wx/frame.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

#include "test_app.h"
#include "widgets/accessible.h"
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
    const wxString begin = mark + text.AfterFirst(' ').Left(1);
    for (size_t line = 1; line < lines.size(); ++line) {
        EXPECT_EQ(lines[line].Left(2), begin) << line << ": " << lines[line].utf8_str();
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

class TextLabel : public testing::Test {
protected:
    ~TextLabel() override { m_frame->Destroy(); }

    static wxArrayString LinesOf(const wxStaticText& label) {
        return wxSplit(label.GetLabelText(), '\n', '\0');
    }

    wxFrame* const m_frame = new wxFrame(nullptr, wxID_ANY, "Frame");
};

TEST_F(TextLabel, TwoLinesAreBrokenOnceMoreAtAnotherWidth) {
    wxString text = "token";
    while (m_frame->GetTextExtent(text).x <= layout::TextWidth(*m_frame)) {
        text += " token";
    }
    layout::TextLabel& label = *layout::NewText(m_frame, text);
    EXPECT_EQ(LinesOf(label).size(), 2U);
    label.WrapAt(layout::TextWidth(*m_frame) / 3);
    EXPECT_GT(LinesOf(label).size(), 3U);
    label.WrapAt(2 * layout::TextWidth(*m_frame));
    EXPECT_EQ(LinesOf(label).size(), 1U);
}

TEST_F(TextLabel, LinesOfTheTextItselfAreBrokenLikeOthers) {
    layout::TextLabel& label = *layout::NewText(m_frame, "One two three\nfour");
    EXPECT_EQ(LinesOf(label).size(), 2U);
    label.WrapAt(m_frame->GetTextExtent("One two").x);
    EXPECT_EQ(label.GetLabelText(), "One two\nthree\nfour");
}

TEST_F(TextLabel, WhatItsLinesHaveNoRoomForIsCut) {
    for (const wchar_t* const word : {L"token", L"~~~~~"}) {
        const wxString whole = Repeat(word);
        const wxArrayString lines = LinesOf(*layout::NewText(m_frame, whole));
        ASSERT_GT(lines.size(), 2U);
        const layout::TextLabel& cut = *layout::NewLimitedText(m_frame, whole, 2);
        EXPECT_EQ(cut.GetLabelText(), lines[0] + "\n" + lines[1] + L"\u2026");
    }
}

TEST_F(TextLabel, AHeadingDoesWithALineLessDownToTwo) {
    const wxString whole = Repeat(L"token");
    layout::TextLabel& heading = *layout::NewHeading(m_frame, whole + whole, 4);
    EXPECT_EQ(LinesOf(heading).size(), 4U);
    EXPECT_TRUE(heading.DropLine());
    EXPECT_EQ(LinesOf(heading).size(), 3U);
    EXPECT_TRUE(heading.DropLine());
    EXPECT_EQ(LinesOf(heading).size(), 2U);
    EXPECT_FALSE(heading.DropLine());
    EXPECT_EQ(LinesOf(heading).size(), 2U);
    EXPECT_FALSE(layout::NewText(m_frame, whole)->DropLine());
}

TEST_F(TextLabel, WhatFitsItsLineStaysOnIt) {
    layout::TextLabel& label = *layout::NewText(m_frame, "One two three");
    label.WrapAt(m_frame->GetTextExtent("One").x);
    EXPECT_EQ(label.GetLabelText(), "One two three");
}

// A screen reader says that itself where it has to, and would make a pause at the end of a line.
TEST(AccessibleName, HasNeitherTheLinesOfItsLabelNorTheColon) {
    auto* const frame = new wxFrame(nullptr, wxID_ANY, "Frame");
    auto* const label = new wxStaticText(frame, wxID_ANY, wxEmptyString);
    auto* const field = new wxTextCtrl(frame, wxID_ANY);
    const struct {
        const wchar_t* text;
        const wchar_t* name;
    } rows[] = {{L"New PIN:", L"New PIN"},
                {L"Nouveau\nPIN\u00A0:", L"Nouveau PIN"},
                {L"One\ntwo\nthree", L"One two three"},
                {L"R&&D: PIN", L"R&D: PIN"}};
    for (const auto& row : rows) {
        label->SetLabel(row.text);
        SetLabelFor(*label, *field);
        const char* const name = atk_object_get_name(gtk_widget_get_accessible(field->GetHandle()));
        EXPECT_EQ(wxString::FromUTF8(name), row.name);
    }
    frame->Destroy();
}

}  // namespace
}  // namespace zeldlg
