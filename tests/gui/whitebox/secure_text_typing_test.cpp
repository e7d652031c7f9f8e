// Characters on their way into the control: real keys, and the rules of the character handler
// one by one.

#include <gdk/gdkkeysyms.h>

#include "secure_text_fixture.h"
#include "test_app.h"
#include "user.h"

namespace zeldlg::test {
namespace {

constexpr wchar_t kEAcute = L'\u00e9';

// A character event as the toolkit makes it for a typed character. True when it was consumed.
bool SendCharacter(CSecureTextControl& field, wchar_t character, int modifiers = wxMOD_NONE) {
    wxKeyEvent event(wxEVT_CHAR);
    event.m_uniChar = character;
    event.m_keyCode = character < 256 ? static_cast<int>(character) : 0;
    event.SetControlDown((modifiers & wxMOD_CONTROL) != 0);
    event.SetShiftDown((modifiers & wxMOD_SHIFT) != 0);
    event.SetAltDown((modifiers & wxMOD_ALT) != 0);
    event.SetMetaDown((modifiers & wxMOD_META) != 0);
    return field.HandleWindowEvent(event);
}

class SecureTextTyping : public SecureText {};

TEST_F(SecureTextTyping, FourDigitsShowFourMasksAndAreTheValue) {
    Open();
    user::Type("1234");
    EXPECT_EQ(Shown(), "****");
    EXPECT_EQ(Field().GetValue(), "1234");
    EXPECT_EQ(Caret(), 4);
    EXPECT_EQ(TakeBellCount(), 0);
}

TEST_F(SecureTextTyping, EachCharacterNotifiesTheParentOnce) {
    Open();
    user::Type("1234");
    EXPECT_EQ(m_notifications, 4);
    EXPECT_EQ(m_toolkitEvents, 4);
}

TEST_F(SecureTextTyping, NotificationIsSynchronousAndFindsTheFieldUpToDate) {
    OpenWith("12");
    EXPECT_TRUE(SendCharacter(Field(), L'3'));
    EXPECT_EQ(m_notifications, 1);
    EXPECT_EQ(m_valueAtNotification, "123");
    EXPECT_EQ(m_shownAtNotification, "***");
}

TEST_F(SecureTextTyping, CharacterGoesInAtTheCaret) {
    OpenWith("1234");
    user::Press(WXK_LEFT);
    user::Press(WXK_LEFT);
    user::Type("x");
    ExpectHolds("12x34");
    EXPECT_EQ(Caret(), 3);
}

TEST_F(SecureTextTyping, TypedKeyReplacesTheSelection) {
    OpenWith("123456");
    Field().SetSelection(1, 3);
    user::Type("x");
    ExpectHolds("1x456");
    EXPECT_EQ(Caret(), 2);
}

TEST_F(SecureTextTyping, CharacterEventReplacesTheSelection) {
    OpenWith("123456");
    Field().SetSelection(1, 3);
    EXPECT_TRUE(SendCharacter(Field(), L'x'));
    ExpectHolds("1x456");
    EXPECT_EQ(m_notifications, 1);
}

TEST_F(SecureTextTyping, EveryPrintableAsciiCharacterIsAccepted) {
    Open();
    std::string all;
    for (wchar_t character = 32; character < 127; ++character) {
        EXPECT_TRUE(SendCharacter(Field(), character)) << static_cast<int>(character);
        all += static_cast<char>(character);
    }
    ExpectHolds(all);
    EXPECT_EQ(TakeBellCount(), 0);
}

TEST_F(SecureTextTyping, MaskCharacterItselfIsPartOfTheSecret) {
    Open();
    user::Type("1");
    user::Press('8', wxMOD_SHIFT);  // The key of * on the display's keyboard.
    user::Type("2");
    ExpectHolds("1*2");
}

TEST_F(SecureTextTyping, NonAsciiKeyRingsAndChangesNothing) {
    OpenWith("1234");
    user::PressSymbol(Field(), GDK_KEY_eacute);
    ExpectUntouched("1234");
    EXPECT_EQ(TakeBellCount(), 1);
    EXPECT_EQ(m_notifications, 0);
}

TEST_F(SecureTextTyping, RefusedKeyMovesTheCaretToTheEnd) {
    OpenWith("1234");
    Field().SetInsertionPoint(1);
    user::PressSymbol(Field(), GDK_KEY_eacute);
    ExpectUntouched("1234");
    EXPECT_EQ(Caret(), 4);
}

TEST_F(SecureTextTyping, RefusedKeyRedrawsADamagedMask) {
    OpenWith("1234");
    {
        // Damage that no event tells of.
        const wxEventBlocker quiet(&Field(), wxEVT_TEXT);
        Field().Remove(0, 2);
    }
    ASSERT_EQ(Shown(), "**");
    EXPECT_TRUE(SendCharacter(Field(), kEAcute));
    ExpectHolds("1234");
    EXPECT_EQ(Caret(), 4);
}

TEST_F(SecureTextTyping, NonAsciiKeyIsAcceptedWhereAllowed) {
    OpenWith("12", {.allowNonAscii = true});
    user::PressSymbol(Field(), GDK_KEY_eacute);
    ExpectHolds("12é");
    EXPECT_EQ(Field().GetValue().length(), 3U);
    EXPECT_EQ(TakeBellCount(), 0);
    EXPECT_EQ(m_notifications, 1);
}

TEST_F(SecureTextTyping, ComposedCharacterIsAcceptedWhereAllowed) {
    OpenWith("12", {.allowNonAscii = true});
    user::PressSymbol(Field(), GDK_KEY_dead_acute);
    user::PressSymbol(Field(), GDK_KEY_e);
    ExpectHolds("12é");
}

TEST_F(SecureTextTyping, CharacterBeyondTheBasicPlaneIsOneCharacter) {
    Open({.allowNonAscii = true});
    EXPECT_TRUE(SendCharacter(Field(), L'\U0001f511'));
    ExpectHolds("\U0001f511");
    EXPECT_EQ(Field().GetValue().length(), 1U);
}

TEST_F(SecureTextTyping, ControlCharactersAreRefused) {
    OpenWith("12", {.allowNonAscii = true});
    for (const wchar_t character : {L'\0', L'\x01', L'\x1f'}) {
        EXPECT_TRUE(SendCharacter(Field(), character));
        EXPECT_EQ(TakeBellCount(), 1) << static_cast<int>(character);
    }
    ExpectUntouched("12");
    EXPECT_EQ(m_notifications, 0);
}

TEST_F(SecureTextTyping, FirstCharacterPastAsciiIsRefusedUnlessAllowed) {
    OpenWith("12");
    wxKeyEvent event(wxEVT_CHAR);
    event.m_uniChar = 127;  // Not the Delete key: that has the key code 127.
    EXPECT_TRUE(Field().HandleWindowEvent(event));
    ExpectUntouched("12");
    EXPECT_EQ(TakeBellCount(), 1);
}

TEST_F(SecureTextTyping, AtTheLimitTheBellRingsAndTheCharacterIsInserted) {
    Open({.maxBytes = 4});
    user::Type("1234");
    EXPECT_EQ(TakeBellCount(), 0);
    user::Type("5");
    EXPECT_EQ(TakeBellCount(), 1);
    ExpectHolds("12345");
}

TEST_F(SecureTextTyping, LimitCountsBytesOfUtf8) {
    Open({.maxBytes = 4, .allowNonAscii = true});
    SendCharacter(Field(), kEAcute);
    SendCharacter(Field(), L'1');
    SendCharacter(Field(), L'2');
    EXPECT_EQ(TakeBellCount(), 0) << "three bytes were there before the last character";
    SendCharacter(Field(), L'3');
    EXPECT_EQ(TakeBellCount(), 1);
    ExpectHolds("é123");
}

TEST_F(SecureTextTyping, LimitIsCheckedAfterTheSelectionIsGone) {
    OpenWith("1234", {.maxBytes = 4});
    Field().SetSelection(0, 2);
    SendCharacter(Field(), L'5');
    EXPECT_EQ(TakeBellCount(), 0);
    ExpectHolds("534");
}

TEST_F(SecureTextTyping, WithoutALimitTheBellStaysSilent) {
    OpenWith(wxString('1', 300));
    SendCharacter(Field(), L'2');
    EXPECT_EQ(TakeBellCount(), 0);
    EXPECT_EQ(Field().GetValue().length(), 301U);
}

TEST_F(SecureTextTyping, FieldThatIsNotEditableTakesNothing) {
    OpenWith("12");
    Field().SetEditable(false);
    user::Type("3");
    EXPECT_TRUE(SendCharacter(Field(), L'3'));
    ExpectUntouched("12");
    EXPECT_EQ(TakeBellCount(), 0);
    EXPECT_EQ(m_notifications, 0);
}

TEST_F(SecureTextTyping, FieldThatIsNotEditableStillRingsForARefusedCharacter) {
    OpenWith("12");
    Field().SetEditable(false);
    EXPECT_TRUE(SendCharacter(Field(), kEAcute));
    ExpectUntouched("12");
    EXPECT_EQ(TakeBellCount(), 1);
}

TEST_F(SecureTextTyping, KeysHeldWithACommandModifierAreNotTyped) {
    OpenWith("12");
    for (const int modifier : {wxMOD_CONTROL, wxMOD_ALT, wxMOD_META}) {
        EXPECT_TRUE(SendCharacter(Field(), L'/', modifier));
        ExpectUntouched("12");
    }
    EXPECT_EQ(TakeBellCount(), 0);
    EXPECT_EQ(m_notifications, 0);
}

TEST_F(SecureTextTyping, ShiftedKeyIsTyped) {
    Open();
    user::Press('A', wxMOD_SHIFT);
    ExpectHolds("A");
}

TEST_F(SecureTextTyping, KeyPadTypesDigits) {
    Open();
    user::PressSymbol(Field(), GDK_KEY_KP_7);
    ExpectHolds("7");
}

TEST_F(SecureTextTyping, FunctionKeyIsRefused) {
    OpenWith("12");
    user::Press(WXK_F5);
    ExpectUntouched("12");
    EXPECT_EQ(TakeBellCount(), 1);
}

TEST_F(SecureTextTyping, InsertKeyDoesNotSwitchToOverwriting) {
    OpenWith("1234");
    user::Press(WXK_INSERT);
    user::Press(WXK_HOME);
    user::Type("5");
    ExpectHolds("51234");
}

TEST_F(SecureTextTyping, ModifierKeyAloneDoesNothing) {
    OpenWith("12");
    user::Press(WXK_SHIFT);
    user::Press(WXK_CONTROL);
    ExpectUntouched("12");
    EXPECT_EQ(TakeBellCount(), 0);
}

}  // namespace
}  // namespace zeldlg::test
