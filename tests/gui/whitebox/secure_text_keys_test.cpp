// Keys that are not text: moving the caret, and what belongs to the dialog.

#include <wx/uiaction.h>

#include "secure_text_fixture.h"
#include "test_app.h"
#include "user.h"

namespace zeldlg::test {
namespace {

class SecureTextKeys : public SecureText {
protected:
    bool Consumes(int keyCode, bool shift) {
        wxKeyEvent event(wxEVT_CHAR);
        event.m_keyCode = keyCode;
        event.SetShiftDown(shift);
        return Field().HandleWindowEvent(event);
    }
};

constexpr int kNavigationKeys[] = {WXK_END,   WXK_HOME, WXK_LEFT,   WXK_UP,
                                   WXK_RIGHT, WXK_DOWN, WXK_PAGEUP, WXK_PAGEDOWN};

TEST_F(SecureTextKeys, NavigationGoesToTheToolkit) {
    OpenWith("1234");
    for (const int key : kNavigationKeys) {
        EXPECT_FALSE(Consumes(key, false)) << key;
    }
}

TEST_F(SecureTextKeys, ShiftedNavigationIsConsumed) {
    OpenWith("1234");
    for (const int key : kNavigationKeys) {
        EXPECT_TRUE(Consumes(key, true)) << key;
    }
    EXPECT_EQ(TakeBellCount(), 0);
}

TEST_F(SecureTextKeys, ArrowsHomeAndEndMoveTheCaret) {
    OpenWith("1234");
    user::Press(WXK_LEFT);
    EXPECT_EQ(Caret(), 3);
    user::Press(WXK_HOME);
    EXPECT_EQ(Caret(), 0);
    user::Press(WXK_RIGHT);
    EXPECT_EQ(Caret(), 1);
    user::Press(WXK_END);
    EXPECT_EQ(Caret(), 4);
    ExpectUntouched("1234");
    EXPECT_EQ(m_notifications, 0);
}

TEST_F(SecureTextKeys, ShiftedNavigationMovesAndSelectsNothing) {
    OpenWith("1234");
    Field().SetInsertionPoint(2);
    for (const int key : kNavigationKeys) {
        for (const int modifiers : {int{wxMOD_SHIFT}, wxMOD_SHIFT | wxMOD_CONTROL}) {
            user::Press(key, modifiers);
            ExpectUntouched("1234");
            EXPECT_EQ(Caret(), 2) << key;
        }
    }
}

TEST_F(SecureTextKeys, DialogKeysGoToTheToolkit) {
    OpenWith("1234");
    for (const int key : {WXK_HELP, WXK_TAB, WXK_RETURN, WXK_ESCAPE}) {
        EXPECT_FALSE(Consumes(key, false)) << key;
    }
    EXPECT_EQ(TakeBellCount(), 0);
    ExpectUntouched("1234");
}

TEST_F(SecureTextKeys, TabGoesOnToTheNextControl) {
    OpenWith("1234");
    user::Press(WXK_TAB);
    EXPECT_TRUE(PumpUntil([this] { return m_okButton->HasFocus(); }));
    ExpectUntouched("1234");
}

TEST_F(SecureTextKeys, ShiftTabGoesBackToThePreviousControl) {
    OpenWith("1234");
    user::Press(WXK_TAB, wxMOD_SHIFT);
    EXPECT_TRUE(PumpUntil([this] { return m_plainField->HasFocus(); }));
    ExpectUntouched("1234");
}

TEST_F(SecureTextKeys, ReturnPressesTheDefaultButton) {
    OpenWith("1234");
    int pressed = 0;
    const auto count = [&](wxCommandEvent&) { ++pressed; };
    m_dialog->Bind(wxEVT_BUTTON, count, wxID_OK);
    user::Press(WXK_RETURN);
    EXPECT_TRUE(PumpUntil([&] { return pressed == 1; }));
    user::Press(WXK_NUMPAD_ENTER);
    EXPECT_TRUE(PumpUntil([&] { return pressed == 2; }));
    ExpectUntouched("1234");
}

TEST_F(SecureTextKeys, EscapeCancelsTheDialog) {
    OpenWith("1234");
    new wxButton(m_dialog, wxID_CANCEL, "Cancel");
    int pressed = 0;
    const auto count = [&](wxCommandEvent&) { ++pressed; };
    m_dialog->Bind(wxEVT_BUTTON, count, wxID_CANCEL);
    wxUIActionSimulator().Char(WXK_ESCAPE);
    EXPECT_TRUE(PumpUntil([&] { return pressed == 1; }));
    ExpectUntouched("1234");
}

TEST_F(SecureTextKeys, FocusByKeyboardSelectsNothingAndPutsTheCaretAtTheEnd) {
    OpenWith("1234");
    Field().SetInsertionPoint(1);
    user::Press(WXK_TAB, wxMOD_SHIFT);
    ASSERT_TRUE(PumpUntil([this] { return m_plainField->HasFocus(); }));
    user::Press(WXK_TAB);
    ASSERT_TRUE(PumpUntil([this] { return Field().HasFocus(); }));
    ExpectUntouched("1234");
    EXPECT_EQ(Caret(), 4);
}

TEST_F(SecureTextKeys, FocusEventsClearTheSelectionAndGoToTheToolkit) {
    OpenWith("1234");
    Field().SetSelection(1, 3);
    wxFocusEvent gained(wxEVT_SET_FOCUS, kFieldId);
    EXPECT_FALSE(Field().HandleWindowEvent(gained));
    EXPECT_FALSE(HasSelection());
    EXPECT_EQ(Caret(), 4);
    Field().SetSelection(1, 3);
    wxFocusEvent lost(wxEVT_KILL_FOCUS, kFieldId);
    EXPECT_FALSE(Field().HandleWindowEvent(lost));
    EXPECT_TRUE(HasSelection());
}

}  // namespace
}  // namespace zeldlg::test
