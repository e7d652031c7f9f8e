// Characters on their way out of the control: Back, Delete and what goes with them.

#include <gdk/gdkkeysyms.h>
#include <gtk/gtk.h>

#include "secure_text_fixture.h"
#include "test_app.h"
#include "user.h"

namespace zeldlg::test {
namespace {

class SecureTextDeleting : public SecureText {};

// True when the event was consumed, that is, the toolkit will not act on it.
bool SendKeyDown(CSecureTextControl& field, int keyCode) {
    wxKeyEvent event(wxEVT_KEY_DOWN);
    event.m_keyCode = keyCode;
    return field.HandleWindowEvent(event);
}

TEST_F(SecureTextDeleting, BackTakesTheCharacterBeforeTheCaret) {
    OpenWith("1234");
    Field().SetInsertionPoint(2);
    user::Press(WXK_BACK);
    ExpectHolds("134");
    EXPECT_EQ(Caret(), 1);
    EXPECT_EQ(m_notifications, 1);
    EXPECT_EQ(m_valueAtNotification, "134");
}

TEST_F(SecureTextDeleting, DeleteTakesTheCharacterAfterTheCaret) {
    OpenWith("1234");
    Field().SetInsertionPoint(2);
    user::Press(WXK_DELETE);
    ExpectHolds("124");
    EXPECT_EQ(Caret(), 2);
    EXPECT_EQ(m_notifications, 1);
    EXPECT_EQ(m_valueAtNotification, "124");
}

TEST_F(SecureTextDeleting, BackAtTheStartDoesNothingAtAll) {
    OpenWith("1234");
    Field().SetInsertionPoint(0);
    user::Press(WXK_BACK);
    EXPECT_TRUE(SendKeyDown(Field(), WXK_BACK));
    ExpectUntouched("1234");
    EXPECT_EQ(m_notifications, 0);
    EXPECT_EQ(m_toolkitEvents, 0);
}

TEST_F(SecureTextDeleting, BackAtTheStartLeavesASelectionAlone) {
    OpenWith("1234");
    Field().SetSelection(0, 2);
    ASSERT_EQ(Caret(), 0);
    user::Press(WXK_BACK);
    ExpectHolds("1234");
    EXPECT_EQ(m_notifications, 0);
}

TEST_F(SecureTextDeleting, DeleteAtTheEndRemovesNothing) {
    OpenWith("1234");
    user::Press(WXK_DELETE);
    ExpectUntouched("1234");
}

TEST_F(SecureTextDeleting, EmptyFieldTakesBothKeys) {
    Open();
    user::Press(WXK_BACK);
    user::Press(WXK_DELETE);
    ExpectUntouched("");
}

TEST_F(SecureTextDeleting, BothKeysTakeASelectionThatTheCaretIsInFrontOf) {
    Open();
    for (const int key : {WXK_BACK, WXK_DELETE}) {
        Field().SetValue("123456");
        Field().SetSelection(1, 4);
        m_notifications = 0;
        user::Press(key);
        ExpectUntouched("156");
        EXPECT_EQ(Caret(), 1);
        EXPECT_EQ(m_notifications, 1);
    }
}

TEST_F(SecureTextDeleting, ToolkitIsLeftToTakeTheMaskAway) {
    OpenWith("1234");
    EXPECT_FALSE(SendKeyDown(Field(), WXK_BACK));
    EXPECT_EQ(Secret(), "123");
    EXPECT_EQ(Shown(), "****") << "the toolkit has not seen the key yet";
}

TEST_F(SecureTextDeleting, CharacterEventsOfTheKeysGoToTheToolkit) {
    OpenWith("1234");
    for (const int key : {WXK_BACK, WXK_DELETE}) {
        wxKeyEvent event(wxEVT_CHAR);
        event.m_keyCode = key;
        EXPECT_FALSE(Field().HandleWindowEvent(event)) << key;
    }
    EXPECT_EQ(Secret(), "1234");
    EXPECT_EQ(TakeBellCount(), 0);
}

TEST_F(SecureTextDeleting, FieldThatIsNotEditableKeepsItsText) {
    OpenWith("1234");
    Field().SetEditable(false);
    Field().SetInsertionPoint(2);
    user::Press(WXK_BACK);
    user::Press(WXK_DELETE);
    ExpectUntouched("1234");
    EXPECT_EQ(m_notifications, 0);
}

TEST_F(SecureTextDeleting, KeyPadDeleteTakesTheCharacterAfterTheCaret) {
    OpenWith("1234");
    Field().SetInsertionPoint(1);
    user::Press(WXK_NUMPAD_DELETE);
    ExpectHolds("134");
}

TEST_F(SecureTextDeleting, WordKeysTakeAllUpToTheCaretOrFromIt) {
    OpenWith("123456");
    Field().SetInsertionPoint(4);
    user::Press(WXK_BACK, wxMOD_CONTROL);
    ExpectHolds("56");
    Field().SetValue("123456");
    Field().SetInsertionPoint(4);
    user::Press(WXK_DELETE, wxMOD_CONTROL);
    ExpectHolds("1234");
}

TEST_F(SecureTextDeleting, MaskFollowsWhereTheToolkitIgnoresTheKey) {
    OpenWith("1234");
    user::Press(WXK_BACK, wxMOD_ALT);
    ExpectHolds("123");
}

TEST_F(SecureTextDeleting, MaskFollowsWhereTheInputMethodKeepsTheKey) {
    OpenWith("1234", {.allowNonAscii = true});
    user::PressSymbol(Field(), GDK_KEY_dead_acute);
    user::Press(WXK_BACK);
    ExpectHolds("123");
    user::Type("5");
    ExpectHolds("1235");
}

TEST_F(SecureTextDeleting, BackAfterComingBackToTheFieldTakesOneCharacter) {
    OpenWith("1234");
    user::Press(WXK_TAB);
    user::Press(WXK_TAB, wxMOD_SHIFT);
    ASSERT_TRUE(Field().HasFocus());
    user::Press(WXK_BACK);
    ExpectUntouched("123");
}

// What the control must never meet: a caret that is not where the selection starts.
class CaretPastTheText : public CSecureTextControl {
public:
    using CSecureTextControl::CSecureTextControl;
    long GetInsertionPoint() const override { return m_caret; }
    void PretendCaret(long caret) { m_caret = caret; }

private:
    long m_caret = 0;
};

class SecureTextAbort : public SecureText {
protected:
    SecureTextAbort() { testing::GTEST_FLAG(death_test_style) = "threadsafe"; }

    CaretPastTheText& OpenWithCaretAt(long caret) {
        MakeDialog();
        auto* const field =
            new CaretPastTheText(m_dialog, kFieldId, 0, 0, wxSize(200, 30), false, 0);
        Show(field);
        field->ChangeValue("1234");
        field->PretendCaret(caret);
        return *field;
    }
};

TEST_F(SecureTextAbort, RemovingASelectionPastTheEndEndsTheProcess) {
    CaretPastTheText& field = OpenWithCaretAt(3);
    field.SetSelection(0, 2);
    EXPECT_EXIT(SendKeyDown(field, WXK_DELETE), testing::KilledBySignal(SIGABRT), "");
    EXPECT_EXIT(SendKeyDown(field, WXK_BACK), testing::KilledBySignal(SIGABRT), "");
}

TEST_F(SecureTextAbort, RemovingOneCharacterPastTheEndEndsTheProcess) {
    CaretPastTheText& field = OpenWithCaretAt(5);
    EXPECT_EXIT(SendKeyDown(field, WXK_DELETE), testing::KilledBySignal(SIGABRT), "");
    field.PretendCaret(6);
    EXPECT_EXIT(SendKeyDown(field, WXK_BACK), testing::KilledBySignal(SIGABRT), "");
}

TEST_F(SecureTextAbort, RemovalStartsAtTheCaretAndNotAtTheSelection) {
    CaretPastTheText& field = OpenWithCaretAt(2);
    field.SetSelection(0, 2);
    EXPECT_FALSE(SendKeyDown(field, WXK_DELETE));
    EXPECT_EQ(field.GetValue(), "12") << "3 and 4 stood behind the caret";
}

}  // namespace
}  // namespace zeldlg::test
