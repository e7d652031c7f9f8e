// A PIN field that takes ASCII only keeps its selection when a key or a paste brings nothing of
// that, and gives it up for everything else.
#include <gdk/gdkkeysyms.h>
#include <gtest/gtest.h>
#include <gtk/gtk.h>
#include <wx/dialog.h>
#include <wx/sizer.h>

#include <string>

#include "dialogs/common/window_ptr.h"
#include "pin/pin_field.h"
#include "test_app.h"
#include "user.h"

namespace zeldlg::test {

namespace {

class PinFieldSelection : public testing::Test {
protected:
    void SetUp() override {
        auto* const label = new wxStaticText(m_dialog.get(), wxID_ANY, "Enter PIN:");
        m_field = new PinField(m_dialog.get(), *label, PinField::Accepts::AsciiOnly);
        auto* const rows = new wxBoxSizer(wxVERTICAL);
        rows->Add(label);
        rows->Add(m_field);
        m_dialog->SetSizerAndFit(rows);
        m_dialog->Show();
        m_dialog->Raise();
        ASSERT_TRUE(PumpUntil([this] { return m_dialog->IsActive(); }));
        m_field->SetFocus();
        ASSERT_TRUE(PumpUntil([this] { return m_field->HasFocus(); }));
        m_field->ChangeValue("123456");
        m_field->SetSelection(2, 4);
        TakeBellCount();
    }

    void ExpectKept() {
        EXPECT_EQ(Pin(), "123456");
        EXPECT_EQ(m_field->GetStringSelection(), "34");
        EXPECT_EQ(TakeBellCount(), 1);
    }

    void ExpectReplacedBy(const std::string& text) {
        EXPECT_EQ(Pin(), "12" + text + "56");
        EXPECT_EQ(m_field->GetInsertionPoint(), static_cast<long>(2 + text.size()));
        EXPECT_FALSE(m_field->HasSelection());
        EXPECT_EQ(TakeBellCount(), 0);
    }

    // What is asked of a clipboard of the same program is answered at once.
    static void Paste(const char* text) {
        gtk_clipboard_set_text(gtk_clipboard_get(GDK_SELECTION_CLIPBOARD), text, -1);
        user::Press('V', wxMOD_CONTROL);
    }

    std::string Pin() const { return std::string(std::string_view(m_field->Pin())); }

    WindowPtr<wxDialog> m_dialog = MakeWindow<wxDialog>(nullptr, wxID_ANY, wxString("PIN"));
    PinField* m_field = nullptr;
};

TEST_F(PinFieldSelection, IsKeptWhenAKeyIsRefused) {
    for (const unsigned key : {GDK_KEY_eacute, GDK_KEY_EuroSign, GDK_KEY_Cyrillic_a}) {
        user::PressSymbol(*m_field, key);
        ExpectKept();
    }
}

TEST_F(PinFieldSelection, IsReplacedByAKeyThatIsNot) {
    user::PressSymbol(*m_field, GDK_KEY_7);
    ExpectReplacedBy("7");
}

// Neither key of the two is a character by itself.
TEST_F(PinFieldSelection, IsReplacedByAnAsciiCharacterFromADeadKey) {
    user::PressSymbol(*m_field, GDK_KEY_dead_circumflex);
    user::PressSymbol(*m_field, GDK_KEY_space);
    ExpectReplacedBy("^");
}

TEST_F(PinFieldSelection, IsKeptWhenNothingOfAPasteIsLeft) {
    for (const char* const text : {"\u00e9", "\u6f22\U0001f511", "", "\n1"}) {
        Paste(text);
        ExpectKept();
    }
}

TEST_F(PinFieldSelection, IsReplacedByWhatIsLeftOfAPaste) {
    Paste(
        "a\u00e9\u20ac"
        "bc");
    ExpectReplacedBy("abc");
    Paste("d");
    EXPECT_EQ(Pin(), "12abcd56");
}

TEST_F(PinFieldSelection, IsReplacedByTheFirstLineOfAPaste) {
    Paste("ab\r\ncd\n");
    ExpectReplacedBy("ab");
}

// With one change, not one for the selection and one for the text.
TEST_F(PinFieldSelection, IsReplacedByAPasteInOneStep) {
    int changes = 0;
    m_field->Bind(wxEVT_TEXT, [&changes](wxCommandEvent&) { ++changes; });
    Paste("abcd");
    ExpectReplacedBy("abcd");
    EXPECT_EQ(changes, 1);
}

}  // namespace

}  // namespace zeldlg::test
