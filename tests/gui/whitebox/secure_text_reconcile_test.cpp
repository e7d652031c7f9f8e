// Changes of the field that did not come through the control: the native widget is changed
// directly, as input methods, assistive tools and GTK's own commands do it.

#include <gtk/gtk.h>

#include "secure_text_fixture.h"
#include "test_app.h"
#include "user.h"

namespace zeldlg::test {
namespace {

class SecureTextReconcile : public SecureText {
protected:
    void InsertNatively(const char* text, int position) {
        gtk_editable_insert_text(Editable(), text, -1, &position);
    }
};

TEST_F(SecureTextReconcile, NativeDeletionAtTheEndTakesTheSameCharacters) {
    OpenWith("123456");
    gtk_editable_delete_text(Editable(), 4, 6);
    ExpectHolds("1234");
}

TEST_F(SecureTextReconcile, NativeDeletionBehindTheCaretTakesTheSameCharacters) {
    OpenWith("123456");
    Field().SetInsertionPoint(1);
    gtk_editable_delete_text(Editable(), 1, 3);
    ExpectHolds("1456");
}

TEST_F(SecureTextReconcile, RemovalStartsAtTheCaretWhereverTheFieldLostText) {
    OpenWith("123456");
    Field().SetInsertionPoint(0);
    gtk_editable_delete_text(Editable(), 4, 6);
    ExpectHolds("3456");
}

TEST_F(SecureTextReconcile, NativeDeletionOfAllEmptiesTheSecret) {
    OpenWith("1234");
    gtk_entry_set_text(Entry(), "");
    ExpectHolds("");
}

TEST_F(SecureTextReconcile, InputMethodCommitIsThrownAway) {
    OpenWith("1234");
    InsertNatively("ab", 4);
    ExpectUntouched("1234");
    EXPECT_EQ(Caret(), 4);
}

TEST_F(SecureTextReconcile, CommitInTheMiddleKeepsTheCaret) {
    OpenWith("1234", {.allowNonAscii = true});
    Field().SetInsertionPoint(2);
    InsertNatively("é", 2);
    ExpectUntouched("1234");
    EXPECT_EQ(Caret(), 2);
}

TEST_F(SecureTextReconcile, CommitIntoTheEmptyFieldIsThrownAway) {
    Open();
    InsertNatively("secret", 0);
    ExpectHolds("");
}

TEST_F(SecureTextReconcile, InsertedMaskCharactersAreThrownAwayToo) {
    OpenWith("1234");
    InsertNatively("**", 4);
    ExpectUntouched("1234");
    user::Press(WXK_BACK);
    ExpectHolds("123");
}

TEST_F(SecureTextReconcile, LongerNativeTextIsReplacedByTheMask) {
    OpenWith("1234");
    gtk_entry_set_text(Entry(), "abcdefgh");
    ExpectHolds("1234");
}

TEST_F(SecureTextReconcile, ShorterNativeTextIsADeletionAndIsMasked) {
    OpenWith("1234");
    gtk_entry_set_text(Entry(), "ab");
    EXPECT_EQ(Secret().length(), 2U);
    EXPECT_EQ(Shown(), "**");
}

TEST_F(SecureTextReconcile, EventGoesOnToTheParent) {
    OpenWith("1234");
    gtk_editable_delete_text(Editable(), 3, 4);
    EXPECT_EQ(m_toolkitEvents, 1);
    EXPECT_EQ(m_notifications, 0) << "the control's own notification is for keys only";
}

TEST_F(SecureTextReconcile, RedrawingTheMaskSendsOneMoreEvent) {
    OpenWith("1234");
    InsertNatively("x", 4);
    EXPECT_EQ(m_toolkitEvents, 2) << "the native change and the mask in its place";
}

TEST_F(SecureTextReconcile, ControlsOwnWritingIsLeftAlone) {
    Open();
    for (const char* const text : {"1", "2", "3"}) {
        user::Type(text);
        EXPECT_EQ(Shown().length(), Field().GetValue().length());
    }
    ExpectHolds("123");
    EXPECT_EQ(m_toolkitEvents, 3);
}

TEST_F(SecureTextReconcile, FieldOfAClosedDialogIsGoneWithoutATrace) {
    OpenWith("1234");
    CSecureTextControl* const field = &Field();
    GtkWidget* const widget = Field().GetHandle();
    g_object_ref(widget);
    m_dialog->DestroyChildren();
    EXPECT_EQ(g_signal_handler_find(widget, G_SIGNAL_MATCH_DATA, 0, 0, nullptr, nullptr, field),
              0U);
    gtk_entry_set_text(GTK_ENTRY(widget), "later");
    EXPECT_STREQ(gtk_entry_get_text(GTK_ENTRY(widget)), "later");
    g_object_unref(widget);
}

}  // namespace
}  // namespace zeldlg::test
