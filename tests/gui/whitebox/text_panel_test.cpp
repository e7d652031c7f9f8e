// The stack of labels that longer texts are shown with.
#include "widgets/text_panel.h"

#include <gtest/gtest.h>
#include <wx/dialog.h>
#include <wx/sizer.h>
#include <wx/stattext.h>

#include <string>
#include <vector>

#include "test_app.h"

namespace zeldlg {

namespace {

class TextPanel : public testing::Test {
protected:
    TextPanel() : m_dialog(new wxDialog(nullptr, wxID_ANY, "Dialog")) {}
    ~TextPanel() override {
        m_dialog->Destroy();
        wxTheApp->ProcessIdle();
    }

    CTextPanel& Make(const wxString& text) {
        return *new CTextPanel(m_dialog, text, m_dialog->GetFont());
    }

    static std::vector<std::string> PiecesOf(const wxWindow& panel) {
        std::vector<std::string> pieces;
        for (wxWindow* const child : panel.GetChildren()) {
            pieces.push_back(dynamic_cast<wxStaticText&>(*child).GetLabelText().utf8_string());
        }
        return pieces;
    }

    wxDialog* m_dialog;
};

using Pieces = std::vector<std::string>;

TEST_F(TextPanel, HasOneLabelForEachPieceBetweenLineFeeds) {
    const struct {
        const char* text;
        Pieces pieces;
    } rows[] = {
        {"one", {"one"}},
        {"one\ntwo\nthree", {"one", "two", "three"}},
        {"one\n\ntwo", {"one", "", "two"}},
        {"\none\n", {"", "one", ""}},
        {"", {""}},
        {"\n", {"", ""}},
        {"a\r\nb", {"a\r", "b"}},
        {"back\\\nslash", {"back\\", "slash"}},
        {"R&D && co", {"R&D && co"}},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(PiecesOf(Make(row.text)), row.pieces) << row.text;
    }
}

TEST_F(TextPanel, StacksItsLabelsAndFitsItselfToThem) {
    const CTextPanel& panel = Make("short\na much longer line\n\nend");
    int bottom = 0;
    int width = 0;
    for (wxWindow* const child : panel.GetChildren()) {
        const wxRect place(child->GetPosition(), child->GetSize());
        EXPECT_EQ(place.x, 0);
        EXPECT_EQ(place.y, bottom);
        EXPECT_GE(place.height, panel.GetCharHeight()) << child->GetLabel();
        bottom = place.y + place.height;
        width = std::max(width, place.width);
    }
    EXPECT_EQ(panel.GetClientSize(), wxSize(width, bottom));
    ASSERT_NE(dynamic_cast<wxBoxSizer*>(panel.GetSizer()), nullptr);
    EXPECT_EQ(dynamic_cast<wxBoxSizer&>(*panel.GetSizer()).GetOrientation(), wxVERTICAL);
}

TEST_F(TextPanel, AnEmptyLineIsAsHighAsAnyOther) {
    const auto heightOf = [this](const char* text) { return Make(text).GetSize().y; };
    EXPECT_EQ(heightOf("one\n\ntwo"), heightOf("one\ntwo\nthree"));
}

TEST_F(TextPanel, UsesTheFontThatItIsGiven) {
    const wxFont font = m_dialog->GetFont().Bold().Scaled(2);
    const auto* const panel = new CTextPanel(m_dialog, "one\n\ntwo", font);
    for (wxWindow* const child : panel->GetChildren()) {
        EXPECT_EQ(child->GetFont(), font);
    }
    EXPECT_GT(panel->GetSize().y, Make("one\n\ntwo").GetSize().y * 3 / 2);
}

TEST_F(TextPanel, HasTheGivenStyleAndTabTraversal) {
    const auto styleOf = [this](long style) {
        return (new CTextPanel(m_dialog, "one", m_dialog->GetFont(), style))->GetWindowStyle();
    };
    EXPECT_EQ(Make("one").GetWindowStyle(), wxTAB_TRAVERSAL | wxNO_BORDER);
    EXPECT_EQ(styleOf(wxBORDER_SIMPLE), wxTAB_TRAVERSAL | wxBORDER_SIMPLE);
}

TEST_F(TextPanel, TakesNoFocus) { EXPECT_FALSE(Make("one").AcceptsFocusFromKeyboard()); }

TEST_F(TextPanel, DisablesItsLabelsWithItself) {
    CTextPanel& panel = Make("one\ntwo");
    panel.Disable();
    for (wxWindow* const child : panel.GetChildren()) {
        EXPECT_FALSE(child->IsEnabled());
    }
}

}  // namespace

}  // namespace zeldlg
