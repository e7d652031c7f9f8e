// What code sees of the control: construction, the overridden operations, the field width.

#include <gtk/gtk.h>
#include <wx/dcclient.h>
#include <wx/settings.h>

#include <cstdlib>

#include "secure_text_fixture.h"
#include "test_app.h"
#include "user.h"

namespace zeldlg::test {
namespace {

class SecureTextInterface : public SecureText {};

TEST_F(SecureTextInterface, StartsEmpty) {
    Open();
    ExpectHolds("");
    EXPECT_EQ(Field().GetMinLength(), 4);
}

TEST_F(SecureTextInterface, StyleIsTheCallersAndItsOwn) {
    Open({.style = wxTE_CENTRE});
    const long style = Field().GetWindowStyleFlag();
    EXPECT_EQ(style & 0x2008880, 0x2008880);
    EXPECT_EQ(style & wxTE_CENTRE, wxTE_CENTRE);
    EXPECT_EQ(gtk_entry_get_visibility(Entry()), FALSE);
}

TEST_F(SecureTextInterface, IdNameAndSizeAreWhatTheConstructorSays) {
    Open();
    EXPECT_EQ(Field().GetId(), kFieldId);
    EXPECT_EQ(Field().GetName(), wxTextCtrlNameStr);
    EXPECT_EQ(Field().GetMinSize(), wxSize(200, 30));
}

TEST_F(SecureTextInterface, ScreenShowsTheMaskCharacterItself) {
    Open();
    EXPECT_EQ(gtk_entry_get_invisible_char(Entry()), gunichar{'*'});
}

TEST_F(SecureTextInterface, InputMethodsAreToldThatItIsAPassword) {
    Open();
    EXPECT_EQ(gtk_entry_get_input_purpose(Entry()), GTK_INPUT_PURPOSE_PASSWORD);
}

TEST_F(SecureTextInterface, ValueIsTheSecretThroughEveryBase) {
    OpenWith("1234");
    const wxTextEntryBase& entry = Field();
    const wxTextAreaBase& area = Field();
    const wxTextCtrl& control = Field();
    EXPECT_EQ(entry.GetValue(), "1234");
    EXPECT_EQ(area.GetValue(), "1234");
    EXPECT_EQ(control.GetValue(), "1234");
}

TEST_F(SecureTextInterface, SetValueReplacesTheSecretAndSendsTheChangeEvent) {
    OpenWith("1234");
    Field().SetValue("567");
    ExpectHolds("567");
    EXPECT_EQ(m_toolkitEvents, 1);
    EXPECT_EQ(m_notifications, 0);
}

TEST_F(SecureTextInterface, SetValueOfTheSameLengthSendsTheChangeEvent) {
    OpenWith("1234");
    Field().SetValue("5678");
    ExpectHolds("5678");
    EXPECT_EQ(m_toolkitEvents, 1);
}

TEST_F(SecureTextInterface, SetValueWorksThroughEveryBase) {
    Open();
    static_cast<wxTextEntryBase&>(Field()).SetValue("12");
    ExpectHolds("12");
    static_cast<wxTextAreaBase&>(Field()).SetValue("345");
    ExpectHolds("345");
}

TEST_F(SecureTextInterface, ChangeValueReplacesTheSecretWithoutAnEvent) {
    OpenWith("1234");
    Field().ChangeValue("567");
    ExpectHolds("567");
    EXPECT_EQ(m_toolkitEvents, 0);
}

TEST_F(SecureTextInterface, LineZeroIsTheSecretAndOtherLinesAreEmpty) {
    OpenWith("1234");
    EXPECT_EQ(Field().GetLineText(0), "1234");
    EXPECT_EQ(Field().GetLineText(1), "");
    EXPECT_EQ(Field().GetLineText(-1), "");
    const wxTextAreaBase& area = Field();
    EXPECT_EQ(area.GetLineText(0), "1234");
}

TEST_F(SecureTextInterface, AppendTextAddsAtTheEndAndMovesTheCaretThere) {
    OpenWith("12");
    Field().SetInsertionPoint(0);
    Field().AppendText("34");
    ExpectHolds("1234");
    EXPECT_EQ(Caret(), 4);
}

TEST_F(SecureTextInterface, ClearEmptiesBoth) {
    OpenWith("1234");
    Field().Clear();
    ExpectHolds("");
}

TEST_F(SecureTextInterface, TypingGoesOnAfterSetValue) {
    OpenWith("12");
    Field().SetInsertionPoint(0);
    user::Type("0");
    ExpectHolds("012");
}

TEST_F(SecureTextInterface, ThereIsNothingToDropOn) {
    Open();
    EXPECT_EQ(Field().GetDropTarget(), nullptr);
    EXPECT_EQ(gtk_drag_dest_get_target_list(Field().GetHandle()), nullptr);
}

// The width lives as long as the process: only a new process has not measured yet.
TEST(FieldWidth, Is130UntilMeasured) {
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    EXPECT_EXIT(std::_Exit(CSecureTextControl::GetFieldWidth()), testing::ExitedWithCode(130), "");
}

TEST(FieldWidth, IsThatOf18MasksInTheDefaultFont) {
    auto* const dialog = new wxDialog(nullptr, wxID_ANY, "Width");
    wxFont other(40, wxFONTFAMILY_TELETYPE, wxFONTSTYLE_NORMAL, wxFONTWEIGHT_BOLD);
    dialog->SetFont(other);
    CSecureTextControl::MeasureFieldWidth(dialog);
    const int width = CSecureTextControl::GetFieldWidth();
    {
        wxClientDC dc(dialog);
        dc.SetFont(wxSystemSettings::GetFont(wxSYS_DEFAULT_GUI_FONT));
        EXPECT_EQ(width, dc.GetTextExtent("******************").GetWidth());
        dc.SetFont(other);
        EXPECT_NE(width, dc.GetTextExtent("******************").GetWidth());
    }
    CSecureTextControl::MeasureFieldWidth(dialog);
    EXPECT_EQ(CSecureTextControl::GetFieldWidth(), width);
    delete dialog;
}

}  // namespace
}  // namespace zeldlg::test
