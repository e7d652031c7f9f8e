// Ways in and out by clipboard, command and menu, all of them closed.

#include <gtk/gtk.h>

#include <string_view>

#include "secure_text_fixture.h"
#include "test_app.h"
#include "user.h"

namespace zeldlg::test {
namespace {

constexpr int kMenuCommands[] = {wxID_CUT,  wxID_COPY,  wxID_PASTE,    wxID_UNDO,
                                 wxID_REDO, wxID_CLEAR, wxID_SELECTALL};

class SecureTextClipboard : public SecureText {
protected:
    // Mask characters among it: those would not even look out of place.
    static constexpr const char* kClipboardText = "**99";

    SecureTextClipboard() {
        for (GdkAtom which : {GDK_SELECTION_CLIPBOARD, GDK_SELECTION_PRIMARY}) {
            gtk_clipboard_set_text(gtk_clipboard_get(which), kClipboardText, -1);
        }
    }

    // Waits for the clipboard to answer. What was asked of it before has been answered then too,
    // a paste for one.
    static std::string ReadClipboard(GdkAtom which) {
        gchar* const text = gtk_clipboard_wait_for_text(gtk_clipboard_get(which));
        std::string copy = text == nullptr ? "" : text;
        g_free(text);
        return copy;
    }

    void ExpectNothingWentInOrOut(const std::string& secret) {
        EXPECT_EQ(ReadClipboard(GDK_SELECTION_CLIPBOARD), kClipboardText);
        EXPECT_EQ(ReadClipboard(GDK_SELECTION_PRIMARY), kClipboardText);
        ExpectUntouched(secret);
    }
};

struct KeyCombination {
    const char* name;
    int key;
    int modifiers;
};

void PrintTo(const KeyCombination& combination, std::ostream* out) { *out << combination.name; }

class SecureTextCommandKey : public SecureTextClipboard,
                             public testing::WithParamInterface<KeyCombination> {};

// At every caret position: some of these keys also act on the character beside it.
TEST_P(SecureTextCommandKey, ChangesNothing) {
    OpenWith("1234");
    for (const long caret : {0L, 2L, 4L}) {
        Field().SetInsertionPoint(caret);
        user::Press(GetParam().key, GetParam().modifiers);
        ExpectNothingWentInOrOut("1234");
    }
    EXPECT_EQ(m_notifications, 0);
}

INSTANTIATE_TEST_SUITE_P(
    Clipboard, SecureTextCommandKey,
    testing::Values(KeyCombination{"CtrlC", 'C', wxMOD_CONTROL},
                    KeyCombination{"CtrlV", 'V', wxMOD_CONTROL},
                    KeyCombination{"CtrlX", 'X', wxMOD_CONTROL},
                    KeyCombination{"CtrlInsert", WXK_INSERT, wxMOD_CONTROL},
                    KeyCombination{"ShiftInsert", WXK_INSERT, wxMOD_SHIFT},
                    KeyCombination{"ShiftDelete", WXK_DELETE, wxMOD_SHIFT},
                    KeyCombination{"CtrlShiftC", 'C', wxMOD_CONTROL | wxMOD_SHIFT},
                    KeyCombination{"CtrlShiftV", 'V', wxMOD_CONTROL | wxMOD_SHIFT},
                    KeyCombination{"CtrlZ", 'Z', wxMOD_CONTROL},
                    KeyCombination{"CtrlA", 'A', wxMOD_CONTROL},
                    KeyCombination{"CtrlSlash", '/', wxMOD_CONTROL},
                    KeyCombination{"CtrlBackslash", '\\', wxMOD_CONTROL},
                    KeyCombination{"CtrlPeriod", '.', wxMOD_CONTROL},
                    KeyCombination{"CtrlDigit", '1', wxMOD_CONTROL},
                    KeyCombination{"AltLetter", 'B', wxMOD_ALT},
                    KeyCombination{"MenuKey", WXK_F10, wxMOD_SHIFT}),
    [](const auto& combination) { return combination.param.name; });

TEST_F(SecureTextClipboard, PlainFieldTakesPasteSoTheseTestsCanFail) {
    OpenWith("1234");
    m_plainField->SetFocus();
    ASSERT_TRUE(PumpUntil([this] { return m_plainField->HasFocus(); }));
    user::Press('V', wxMOD_CONTROL);
    EXPECT_EQ(ReadClipboard(GDK_SELECTION_CLIPBOARD), kClipboardText);
    EXPECT_EQ(m_plainField->GetValue(), kClipboardText);
}

TEST_F(SecureTextClipboard, KeyDownOfClipboardKeysIsConsumed) {
    OpenWith("1234");
    const auto consumes = [this](int key, int modifiers) {
        wxKeyEvent event(wxEVT_KEY_DOWN);
        event.m_keyCode = key;
        event.SetControlDown((modifiers & wxMOD_CONTROL) != 0);
        event.SetShiftDown((modifiers & wxMOD_SHIFT) != 0);
        event.SetAltDown((modifiers & wxMOD_ALT) != 0);
        event.SetMetaDown((modifiers & wxMOD_META) != 0);
        return Field().HandleWindowEvent(event);
    };
    for (const char32_t letter : std::u32string_view(U"CVXcvx")) {
        const auto key = static_cast<int>(letter);
        EXPECT_TRUE(consumes(key, wxMOD_CONTROL)) << key;
        EXPECT_FALSE(consumes(key, wxMOD_NONE)) << key;
        EXPECT_FALSE(consumes(key, wxMOD_SHIFT)) << key;
        EXPECT_FALSE(consumes(key, wxMOD_CONTROL | wxMOD_SHIFT)) << key;
        EXPECT_FALSE(consumes(key, wxMOD_CONTROL | wxMOD_ALT)) << key;
        EXPECT_FALSE(consumes(key, wxMOD_CONTROL | wxMOD_META)) << key;
    }
    EXPECT_FALSE(consumes('B', wxMOD_CONTROL));
    EXPECT_TRUE(consumes(WXK_INSERT, wxMOD_SHIFT));
    EXPECT_TRUE(consumes(WXK_DELETE, wxMOD_SHIFT));
    EXPECT_FALSE(consumes(WXK_INSERT, wxMOD_NONE));
    EXPECT_FALSE(consumes(WXK_INSERT, wxMOD_SHIFT | wxMOD_CONTROL));
    EXPECT_FALSE(consumes(WXK_INSERT, wxMOD_SHIFT | wxMOD_ALT));
    ExpectUntouched("1234");
}

TEST_F(SecureTextClipboard, MenuCommandsAreConsumed) {
    OpenWith("1234");
    for (const int command : kMenuCommands) {
        wxCommandEvent event(wxEVT_MENU, command);
        EXPECT_TRUE(Field().HandleWindowEvent(event)) << command;
        ExpectNothingWentInOrOut("1234");
    }
}

TEST_F(SecureTextClipboard, MenuCommandsWithASelectionAreConsumed) {
    OpenWith("1234");
    for (const int command : kMenuCommands) {
        Field().SetSelection(1, 3);
        wxCommandEvent event(wxEVT_MENU, command);
        EXPECT_TRUE(Field().HandleWindowEvent(event)) << command;
        ExpectHolds("1234");
        EXPECT_EQ(ReadClipboard(GDK_SELECTION_CLIPBOARD), kClipboardText);
    }
}

// Counts what the toolkit's own handlers of the menu commands would do.
class CommandCounter : public CSecureTextControl {
public:
    using CSecureTextControl::CSecureTextControl;
    void Cut() override { ++m_commands; }
    void Copy() override { ++m_commands; }
    void Paste() override { ++m_commands; }
    void Undo() override { ++m_commands; }
    void Redo() override { ++m_commands; }
    int m_commands = 0;
};

TEST_F(SecureTextClipboard, MenuCommandsDoNotReachTheToolkit) {
    MakeDialog();
    auto* const field = new CommandCounter(m_dialog, kFieldId, 0, 0, wxSize(200, 30), false, 0);
    Show(field);
    for (const int command : kMenuCommands) {
        wxCommandEvent event(wxEVT_MENU, command);
        field->HandleWindowEvent(event);
        EXPECT_EQ(field->m_commands, 0) << command;
    }
}

TEST_F(SecureTextClipboard, OtherMenuCommandsAreNot) {
    Open();
    wxCommandEvent event(wxEVT_MENU, wxID_ABOUT);
    EXPECT_FALSE(Field().HandleWindowEvent(event));
}

TEST_F(SecureTextClipboard, UpdatesOfMenuCommandsAreConsumed) {
    Open();
    for (const int command : kMenuCommands) {
        wxUpdateUIEvent event(command);
        EXPECT_TRUE(Field().HandleWindowEvent(event)) << command;
        EXPECT_FALSE(event.GetSetEnabled()) << command;
    }
    wxUpdateUIEvent other(wxID_ABOUT);
    EXPECT_FALSE(Field().HandleWindowEvent(other));
}

TEST_F(SecureTextClipboard, ClipboardEventsAreConsumedWhateverTheirId) {
    Open();
    const struct {
        wxEventType type;
        int id;
    } kEvents[] = {{wxEVT_TEXT_PASTE, wxID_PASTE}, {wxEVT_TEXT_PASTE, kFieldId},
                   {wxEVT_TEXT_CUT, wxID_CUT},     {wxEVT_TEXT_CUT, kFieldId},
                   {wxEVT_TEXT_COPY, wxID_COPY},   {wxEVT_TEXT_COPY, kFieldId}};
    for (const auto& [type, id] : kEvents) {
        wxClipboardTextEvent event(type, id);
        EXPECT_TRUE(Field().HandleWindowEvent(event)) << type << ' ' << id;
    }
}

TEST_F(SecureTextClipboard, NativeSignalsOfTheWidgetDoNothing) {
    OpenWith("1234");
    for (const char* const signal : {"paste-clipboard", "copy-clipboard", "cut-clipboard"}) {
        g_signal_emit_by_name(Entry(), signal);
        ExpectNothingWentInOrOut("1234");
    }
    EXPECT_EQ(m_toolkitEvents, 0);
}

TEST_F(SecureTextClipboard, ClipboardFunctionsOfTheControlDoNothing) {
    OpenWith("1234");
    Field().SetSelection(0, 4);
    Field().Copy();
    Field().Cut();
    Field().Paste();
    EXPECT_EQ(ReadClipboard(GDK_SELECTION_CLIPBOARD), kClipboardText);
    ExpectHolds("1234");
}

TEST_F(SecureTextClipboard, ContextMenuEventGoesOn) {
    Open();
    int reachedParent = 0;
    m_dialog->Bind(wxEVT_CONTEXT_MENU, [&](wxContextMenuEvent&) { ++reachedParent; });
    wxContextMenuEvent event(wxEVT_CONTEXT_MENU, kFieldId);
    Field().HandleWindowEvent(event);
    EXPECT_EQ(reachedParent, 1);
}

GtkWidget* FindOpenMenu() {
    GtkWidget* menu = nullptr;
    GList* const windows = gtk_window_list_toplevels();
    for (GList* link = windows; link != nullptr; link = link->next) {
        GtkWidget* const child = gtk_bin_get_child(GTK_BIN(link->data));
        if (GTK_IS_MENU(child) && gtk_widget_get_mapped(child)) {
            menu = child;
        }
    }
    g_list_free(windows);
    return menu;
}

// No key and no button opens it, but a long touch or an assistive tool does.
class SecureTextNativeMenu : public SecureTextClipboard {
protected:
    void OpenMenu() {
        gboolean handled = FALSE;
        g_signal_emit_by_name(Entry(), "popup-menu", &handled);
        ASSERT_TRUE(PumpUntil([] { return FindOpenMenu() != nullptr; }));
    }

    static void CloseMenu() {
        if (GtkWidget* const menu = FindOpenMenu()) {
            gtk_menu_shell_deactivate(GTK_MENU_SHELL(menu));
        }
        ASSERT_TRUE(PumpUntil([] { return FindOpenMenu() == nullptr; }));
    }
};

TEST_F(SecureTextNativeMenu, HasNothingToChoose) {
    OpenWith("1234");
    OpenMenu();
    GList* const items = gtk_container_get_children(GTK_CONTAINER(FindOpenMenu()));
    EXPECT_NE(items, nullptr);
    for (GList* link = items; link != nullptr; link = link->next) {
        GtkWidget* const item = GTK_WIDGET(link->data);
        EXPECT_FALSE(gtk_widget_get_sensitive(item))
            << gtk_menu_item_get_label(GTK_MENU_ITEM(item));
    }
    g_list_free(items);
    CloseMenu();
    ExpectNothingWentInOrOut("1234");
}

TEST_F(SecureTextNativeMenu, CommandsDoNothingEvenIfActivated) {
    OpenWith("1234");
    OpenMenu();
    GList* const items = gtk_container_get_children(GTK_CONTAINER(FindOpenMenu()));
    for (GList* link = items; link != nullptr; link = link->next) {
        if (gtk_menu_item_get_submenu(GTK_MENU_ITEM(link->data)) == nullptr) {
            g_signal_emit_by_name(link->data, "activate");
            ExpectNothingWentInOrOut("1234");
        }
    }
    g_list_free(items);
    CloseMenu();
}

}  // namespace
}  // namespace zeldlg::test
