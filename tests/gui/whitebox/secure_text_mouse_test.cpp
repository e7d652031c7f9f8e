// The mouse: what the filter lets through, and what real buttons do to the field.

#include <gtk/gtk.h>
#include <wx/sizer.h>

#include "secure_text_fixture.h"
#include "test_app.h"
#include "user.h"

namespace zeldlg::test {
namespace {

constexpr int kMiddleY = 15;

class SecureTextMouse : public SecureText {
protected:
    // Where a character of the mask is drawn, in pixels from the left edge of the field.
    int XOfCharacter(int index) const {
        GtkEntry* const entry = Entry();
        int layoutX = 0;
        gtk_entry_get_layout_offsets(entry, &layoutX, nullptr);
        PangoRectangle place;
        pango_layout_index_to_pos(gtk_entry_get_layout(entry), index, &place);
        return layoutX + PANGO_PIXELS(place.x) + 1;
    }

    bool Consumes(wxMouseEvent& event) const { return Field().HandleWindowEvent(event); }
    bool Consumes(wxEventType type, wxPoint place = wxPoint(20, kMiddleY)) const {
        wxMouseEvent event(type);
        event.SetPosition(place);
        return Consumes(event);
    }
    bool ConsumesMotionWith(void (wxMouseState::*press)(bool)) const {
        wxMouseEvent event(wxEVT_MOTION);
        event.SetPosition(wxPoint(20, kMiddleY));
        (event.*press)(true);
        return Consumes(event);
    }
};

TEST_F(SecureTextMouse, MotionWithAnyButtonIsConsumed) {
    Open();
    EXPECT_TRUE(ConsumesMotionWith(&wxMouseState::SetLeftDown));
    EXPECT_TRUE(ConsumesMotionWith(&wxMouseState::SetMiddleDown));
    EXPECT_TRUE(ConsumesMotionWith(&wxMouseState::SetRightDown));
    EXPECT_TRUE(ConsumesMotionWith(&wxMouseState::SetAux1Down));
    EXPECT_TRUE(ConsumesMotionWith(&wxMouseState::SetAux2Down));
}

TEST_F(SecureTextMouse, DoubleClickOfAnyButtonIsConsumed) {
    Open();
    for (const auto& type : {wxEVT_LEFT_DCLICK, wxEVT_MIDDLE_DCLICK, wxEVT_RIGHT_DCLICK,
                             wxEVT_AUX1_DCLICK, wxEVT_AUX2_DCLICK}) {
        EXPECT_TRUE(Consumes(type)) << type;
    }
}

TEST_F(SecureTextMouse, RightAndMiddleButtonAreConsumed) {
    Open();
    for (const auto& type :
         {wxEVT_RIGHT_DOWN, wxEVT_RIGHT_UP, wxEVT_MIDDLE_DOWN, wxEVT_MIDDLE_UP}) {
        EXPECT_TRUE(Consumes(type)) << type;
    }
}

TEST_F(SecureTextMouse, LeftDownIsConsumedOnlyInTheLeftmostColumn) {
    Open();
    for (const int y : {-3, 0, 29, 500}) {
        EXPECT_TRUE(Consumes(wxEVT_LEFT_DOWN, wxPoint(0, y))) << y;
    }
    for (const int x : {-1, 1, 199}) {
        EXPECT_FALSE(Consumes(wxEVT_LEFT_DOWN, wxPoint(x, 0))) << x;
    }
    EXPECT_FALSE(Consumes(wxEVT_LEFT_UP, wxPoint(0, kMiddleY)));
}

TEST_F(SecureTextMouse, EverythingElseGoesToTheToolkit) {
    Open();
    for (const auto& type :
         {wxEVT_LEFT_DOWN, wxEVT_LEFT_UP, wxEVT_MOTION, wxEVT_ENTER_WINDOW, wxEVT_LEAVE_WINDOW,
          wxEVT_MOUSEWHEEL, wxEVT_AUX1_DOWN, wxEVT_AUX1_UP, wxEVT_AUX2_DOWN, wxEVT_AUX2_UP}) {
        EXPECT_FALSE(Consumes(type)) << type;
    }
}

TEST_F(SecureTextMouse, LeftClickMovesTheCaret) {
    OpenWith("123456");
    user::Click(Field(), wxPoint(XOfCharacter(2), kMiddleY));
    EXPECT_EQ(Caret(), 2);
    user::Click(Field(), wxPoint(XOfCharacter(4), kMiddleY));
    EXPECT_EQ(Caret(), 4);
    ExpectUntouched("123456");
}

TEST_F(SecureTextMouse, LeftClickAtXZeroIsIgnored) {
    OpenWith("123456");
    Field().SetInsertionPoint(3);
    int pressedAtZero = 0;
    Field().Bind(wxEVT_LEFT_DOWN, [&](wxMouseEvent& event) {
        pressedAtZero += event.GetX() == 0 ? 1 : 0;
        event.Skip();
    });
    user::Click(Field(), wxPoint(0, kMiddleY));
    EXPECT_EQ(pressedAtZero, 1);
    EXPECT_EQ(Caret(), 3);
    ExpectUntouched("123456");
}

TEST_F(SecureTextMouse, DoubleClickSelectsNothing) {
    OpenWith("123456");
    user::ClickTwice(Field(), wxPoint(XOfCharacter(2), kMiddleY));
    ExpectUntouched("123456");
}

TEST_F(SecureTextMouse, TripleClickSelectsNothing) {
    OpenWith("123456");
    user::ClickThreeTimes(Field(), wxPoint(XOfCharacter(2), kMiddleY));
    ExpectUntouched("123456");
}

TEST_F(SecureTextMouse, DraggingSelectsNothing) {
    OpenWith("123456");
    user::Drag(Field(), wxPoint(XOfCharacter(1), kMiddleY), wxPoint(XOfCharacter(5), kMiddleY));
    ExpectUntouched("123456");
}

TEST_F(SecureTextMouse, PlainFieldSelectsSoTheseTestsCanFail) {
    OpenWith("123456");
    m_plainField->SetValue("123456");
    user::Drag(*m_plainField, wxPoint(XOfCharacter(1), kMiddleY),
               wxPoint(XOfCharacter(5), kMiddleY));
    EXPECT_TRUE(m_plainField->HasSelection());
    user::Click(*m_plainField, wxPoint(XOfCharacter(1), kMiddleY));
    ASSERT_FALSE(m_plainField->HasSelection());
    user::ClickTwice(*m_plainField, wxPoint(XOfCharacter(2), kMiddleY));
    EXPECT_TRUE(m_plainField->HasSelection());
}

TEST_F(SecureTextMouse, NativeSelectionIsUndone) {
    OpenWith("1234");
    gtk_editable_select_region(Editable(), 0, -1);
    ExpectUntouched("1234");
    gtk_editable_select_region(Editable(), 3, 1);
    ExpectUntouched("1234");
    user::Press(WXK_BACK);
    ExpectHolds("234");  // The caret was left at 1.
}

TEST_F(SecureTextMouse, NativeExtensionOfTheSelectionIsUndone) {
    OpenWith("1234");
    g_signal_emit_by_name(Entry(), "move-cursor", GTK_MOVEMENT_VISUAL_POSITIONS, -2, TRUE);
    ExpectUntouched("1234");
    EXPECT_EQ(Caret(), 2);
}

TEST_F(SecureTextMouse, MiddleClickDoesNotPaste) {
    OpenWith("1234");
    GtkClipboard* const primary = gtk_clipboard_get(GDK_SELECTION_PRIMARY);
    gtk_clipboard_set_text(primary, "**99", -1);
    user::Click(Field(), wxPoint(XOfCharacter(2), kMiddleY), wxMOUSE_BTN_MIDDLE);
    g_free(gtk_clipboard_wait_for_text(primary));  // A paste would be through before this.
    ExpectUntouched("1234");
    user::Click(*m_plainField, wxPoint(XOfCharacter(2), kMiddleY), wxMOUSE_BTN_MIDDLE);
    EXPECT_TRUE(PumpUntil([this] { return m_plainField->GetValue() == "**99"; }))
        << "a plain field takes it";
}

TEST_F(SecureTextMouse, RightClickOpensNoMenu) {
    OpenWith("1234");
    int menus = 0;
    Field().Bind(wxEVT_CONTEXT_MENU, [&](wxContextMenuEvent&) { ++menus; });
    user::Click(Field(), wxPoint(XOfCharacter(2), kMiddleY), wxMOUSE_BTN_RIGHT);
    EXPECT_EQ(menus, 0);
    ExpectUntouched("1234");
}

TEST_F(SecureTextMouse, DroppedTextHasNoEffect) {
    OpenWith("1234");
    const wxPoint place(XOfCharacter(2), kMiddleY);
    m_plainField->SetValue("999999");
    m_plainField->SetSelection(0, 6);
    user::DragAndDrop(*m_plainField, place, Field(), place);
    ExpectUntouched("1234");
    EXPECT_EQ(m_plainField->GetValue(), "999999");
}

TEST_F(SecureTextMouse, PlainFieldTakesADropSoTheTestBeforeCanFail) {
    Open();
    auto* const target =
        new wxTextCtrl(m_dialog, wxID_ANY, wxString(), wxDefaultPosition, wxSize(200, 30));
    m_dialog->GetSizer()->Add(target);
    m_dialog->Fit();
    m_dialog->Layout();
    const wxPoint place(20, kMiddleY);
    m_plainField->SetValue("999999");
    m_plainField->SetSelection(0, 6);
    user::DragAndDrop(*m_plainField, place, *target, place);
    EXPECT_EQ(target->GetValue(), "999999");
}

}  // namespace
}  // namespace zeldlg::test
