// Every way that a text comes into a PIN field: it goes in as far as the field takes it, or leaves
// text, caret and selection alone.
#include <gdk/gdkkeysyms.h>
#include <gtest/gtest.h>
#include <gtk/gtk.h>
#include <wx/dialog.h>
#include <wx/sizer.h>

#include <memory>
#include <string>
#include <vector>

#include "test_app.h"
#include "user.h"
#include "widgets/pin_field.h"

namespace zeldlg::test {

namespace {

constexpr Accepts kKinds[] = {Accepts::Everything, Accepts::AsciiOnly};
constexpr int kMiddleY = 12;

// What nothing of goes in, by kind of field.
std::vector<const char*> Refused(Accepts accepts) {
    std::vector<const char*> texts = {"\n", "\r\n", "\n\r\n\u2029"};
    if (accepts == Accepts::AsciiOnly) {
        texts.insert(texts.end(), {"\u00e9", "\u6f22\U0001f511", "\u00e9\n1"});
    }
    return texts;
}

struct Brought {
    const char* offered;
    const char* everything;
    const char* asciiOnly;
    const char* In(Accepts accepts) const {
        return accepts == Accepts::AsciiOnly ? asciiOnly : everything;
    }
};

constexpr Brought kBrought[] = {
    {"7", "7", "7"},
    {"abcd", "abcd", "abcd"},
    {"a\u00e9\u20acbc", "a\u00e9\u20acbc", "abc"},
    {"\u00e97", "\u00e97", "7"},
    {"ab\r\ncd\n", "ab", "ab"},
    {"\n1234", "1234", "1234"},
    {"\r\n1234\r\n5678", "1234", "1234"},
};

class PinFieldWaysIn : public testing::Test {
protected:
    // Shows a field with "123456", the two in the middle selected.
    void Open(Accepts accepts) {
        m_dialog = std::make_unique<wxDialog>(nullptr, wxID_ANY, wxString("PIN"));
        auto* const label = new wxStaticText(m_dialog.get(), wxID_ANY, "Enter PIN:");
        m_field = new PinField(m_dialog.get(), *label, accepts);
        m_source = new wxTextCtrl(m_dialog.get(), wxID_ANY, "999999");
        auto* const rows = new wxBoxSizer(wxVERTICAL);
        rows->Add(label);
        rows->Add(m_field);
        rows->Add(m_source);
        m_dialog->SetSizerAndFit(rows);
        m_dialog->Show();
        m_dialog->Raise();
        ASSERT_TRUE(PumpUntil([this] { return m_dialog->IsActive(); }));
        m_field->SetFocus();
        ASSERT_TRUE(PumpUntil([this] { return m_field->HasFocus(); }));
        m_field->Bind(wxEVT_TEXT, [this](wxCommandEvent&) { ++m_changes; });
        Select();
    }

    void Select() {
        m_field->ChangeValue("123456");
        gtk_editable_select_region(GTK_EDITABLE(m_field->GetHandle()), 2, 4);
        TakeBellCount();
        m_changes = 0;
    }

    void ExpectKept(int bells = 1) {
        EXPECT_EQ(Pin(), "123456");
        EXPECT_EQ(Selection(), std::pair(2L, 4L));
        EXPECT_EQ(Caret(), 4);
        EXPECT_EQ(m_changes, 0);
        EXPECT_EQ(TakeBellCount(), bells);
    }

    // The selection by default.
    void ExpectReplacedBy(const std::string& text, long from = 2, long to = 4) {
        const std::string before = "123456";
        EXPECT_EQ(Pin(), before.substr(0, from) + text + before.substr(to));
        EXPECT_EQ(Caret(), from + wxString::FromUTF8(text).length());
        EXPECT_FALSE(m_field->HasSelection());
        EXPECT_GT(m_changes, 0);
        EXPECT_EQ(TakeBellCount(), 0);
    }

    // What is asked of a clipboard of the same program is answered at once.
    static void Paste(const char* text) {
        gtk_clipboard_set_text(gtk_clipboard_get(GDK_SELECTION_CLIPBOARD), text, -1);
        user::Press('V', wxMOD_CONTROL);
    }

    void PasteWithMiddleButton(const char* text, int place) {
        gtk_clipboard_set_text(gtk_clipboard_get(GDK_SELECTION_PRIMARY), text, -1);
        user::Click(*m_field, PlaceOf(place), wxMOUSE_BTN_MIDDLE);
    }

    // Drags from the other field, and drops `text` whatever that has. Its selection takes the one
    // of this field away, which is there again when the drag has begun: others drag without one.
    void Drop(const char* text, int place) {
        const auto begin =
            +[](GtkWidget*, GdkDragContext*, PinFieldWaysIn* self) { self->Select(); };
        const auto give = +[](GtkWidget* source, GdkDragContext*, GtkSelectionData* data, guint,
                              guint, const char* dropped) {
            gtk_selection_data_set_text(data, dropped, -1);
            g_signal_stop_emission_by_name(source, "drag-data-get");
        };
        GtkWidget* const source = m_source->GetHandle();
        const gulong beginning = g_signal_connect(source, "drag-begin", G_CALLBACK(begin), this);
        const gulong giving =
            g_signal_connect(source, "drag-data-get", G_CALLBACK(give), const_cast<char*>(text));
        m_source->SelectAll();
        user::DragAndDrop(*m_source, wxPoint(20, kMiddleY), *m_field, PlaceOf(place));
        g_signal_handler_disconnect(source, beginning);
        g_signal_handler_disconnect(source, giving);
    }

    // In front of that character of the field.
    wxPoint PlaceOf(int character) const {
        GtkEntry* const entry = GTK_ENTRY(m_field->GetHandle());
        PangoLayout* const layout = gtk_entry_get_layout(entry);
        const char* const mask = pango_layout_get_text(layout);
        int left = 0;
        gtk_entry_get_layout_offsets(entry, &left, nullptr);
        PangoRectangle place;
        pango_layout_index_to_pos(
            layout, static_cast<int>(g_utf8_offset_to_pointer(mask, character) - mask), &place);
        return {left + PANGO_PIXELS(place.x) + 1, kMiddleY};
    }

    std::string Pin() const { return std::string(std::string_view(m_field->Pin())); }
    long Caret() const { return m_field->GetInsertionPoint(); }
    std::pair<long, long> Selection() const {
        std::pair<long, long> bounds;
        m_field->GetSelection(&bounds.first, &bounds.second);
        return bounds;
    }

    std::unique_ptr<wxDialog> m_dialog;
    PinField* m_field = nullptr;
    wxTextCtrl* m_source = nullptr;
    int m_changes = 0;
};

TEST_F(PinFieldWaysIn, AKeyThatIsRefusedLeavesTheSelection) {
    Open(Accepts::AsciiOnly);
    for (const unsigned key : {GDK_KEY_eacute, GDK_KEY_EuroSign, GDK_KEY_Cyrillic_a}) {
        user::PressSymbol(*m_field, key);
        ExpectKept();
    }
}

TEST_F(PinFieldWaysIn, AKeyThatIsTakenReplacesTheSelection) {
    Open(Accepts::AsciiOnly);
    user::PressSymbol(*m_field, GDK_KEY_7);
    ExpectReplacedBy("7");
    Open(Accepts::Everything);
    user::PressSymbol(*m_field, GDK_KEY_eacute);
    ExpectReplacedBy("\u00e9");
}

// No key of these is a character by itself.
TEST_F(PinFieldWaysIn, ADeadKeyThatIsRefusedLeavesTheSelection) {
    Open(Accepts::AsciiOnly);
    for (int time = 0; time < 2; ++time) {
        user::PressSymbol(*m_field, GDK_KEY_dead_acute);
        user::PressSymbol(*m_field, GDK_KEY_e);
        ExpectKept();
    }
    for (const unsigned key : {GDK_KEY_Multi_key, GDK_KEY_o, GDK_KEY_e}) {
        user::PressSymbol(*m_field, key);
    }
    ExpectKept();
}

TEST_F(PinFieldWaysIn, ADeadKeyThatIsTakenReplacesTheSelection) {
    for (const Accepts accepts : kKinds) {
        Open(accepts);
        user::PressSymbol(*m_field, GDK_KEY_dead_circumflex);
        user::PressSymbol(*m_field, GDK_KEY_space);
        ExpectReplacedBy("^");
    }
    user::PressSymbol(*m_field, GDK_KEY_dead_acute);
    user::PressSymbol(*m_field, GDK_KEY_e);
    EXPECT_EQ(Pin(), "12^56");
    EXPECT_EQ(TakeBellCount(), 1);
}

// The entry is deaf to a refused text only.
TEST_F(PinFieldWaysIn, AfterARefusalTheNextKeyIsTaken) {
    Open(Accepts::AsciiOnly);
    user::PressSymbol(*m_field, GDK_KEY_eacute);
    ExpectKept();
    user::PressSymbol(*m_field, GDK_KEY_7);
    ExpectReplacedBy("7");
    user::PressSymbol(*m_field, GDK_KEY_eacute);
    user::PressSymbol(*m_field, GDK_KEY_8);
    EXPECT_EQ(Pin(), "127856");
    user::Press(WXK_BACK);
    EXPECT_EQ(Pin(), "12756");
}

TEST_F(PinFieldWaysIn, WhatAnInputMethodBringsReplacesTheSelectionOrLeavesIt) {
    for (const Accepts accepts : kKinds) {
        Open(accepts);
        for (const char* const text : Refused(accepts)) {
            user::Commit(*m_field, text);
            ExpectKept();
        }
        user::Commit(*m_field, "");
        ExpectKept(0);
        for (const Brought& each : kBrought) {
            Select();
            user::Commit(*m_field, each.offered);
            ExpectReplacedBy(each.In(accepts));
        }
    }
}

TEST_F(PinFieldWaysIn, WhatAnInputMethodBringsInTheMiddleLeavesTheCaretBehindIt) {
    for (const Accepts accepts : kKinds) {
        Open(accepts);
        for (const long caret : {0L, 3L, 6L}) {
            for (const char* const text : Refused(accepts)) {
                Select();
                m_field->SetInsertionPoint(caret);
                user::Commit(*m_field, text);
                EXPECT_EQ(Pin(), "123456");
                EXPECT_EQ(Caret(), caret);
                EXPECT_EQ(m_changes, 0);
            }
            for (const Brought& each : kBrought) {
                Select();
                m_field->SetInsertionPoint(caret);
                user::Commit(*m_field, each.offered);
                ExpectReplacedBy(each.In(accepts), caret, caret);
                EXPECT_EQ(m_changes, 1);
            }
        }
    }
}

TEST_F(PinFieldWaysIn, WhatAnInputMethodBringsStaysInOrder) {
    Open(Accepts::AsciiOnly);
    for (const char* const text : {"\u00e9", "a", "\u6f22", "b\u00e9", "\u00e9", "\u00e9c", "d"}) {
        user::Commit(*m_field, text);
    }
    EXPECT_EQ(Pin(), "12abcd56");
    EXPECT_EQ(Caret(), 6);
}

// Each of them hears of the texts of all.
TEST_F(PinFieldWaysIn, WhatAnInputMethodBringsGoesIntoItsFieldOnly) {
    Open(Accepts::AsciiOnly);
    auto* const label = new wxStaticText(m_dialog.get(), wxID_ANY, "PIN:");
    const auto* const other = new PinField(m_dialog.get(), *label, Accepts::Everything);
    user::Commit(*m_source, "\u00e9\n");
    EXPECT_EQ(m_source->GetValue().utf8_string(), "\u00e9\n999999");
    user::Commit(*other, "\u00e9a");
    EXPECT_EQ(std::string_view(other->Pin()), "\u00e9a");
    user::Commit(*other, "\n");
    EXPECT_EQ(std::string_view(other->Pin()), "\u00e9a");
    TakeBellCount();
    ExpectKept(0);
}

TEST_F(PinFieldWaysIn, APasteReplacesTheSelectionOrLeavesIt) {
    for (const Accepts accepts : kKinds) {
        Open(accepts);
        for (const char* const text : Refused(accepts)) {
            Paste(text);
            ExpectKept();
        }
        Paste("");
        ExpectKept();
        for (const Brought& each : kBrought) {
            Select();
            Paste(each.offered);
            ExpectReplacedBy(each.In(accepts));
            // Not one event for the selection and one for the text.
            EXPECT_EQ(m_changes, 1);
        }
    }
}

TEST_F(PinFieldWaysIn, APasteGoesInWhereTheCaretIs) {
    for (const Accepts accepts : kKinds) {
        Open(accepts);
        m_field->SetInsertionPoint(1);
        Paste("ab\u00e9c");
        ExpectReplacedBy(accepts == Accepts::AsciiOnly ? "abc" : "ab\u00e9c", 1, 1);
        Paste("\n\nd\n");
        EXPECT_EQ(Pin(), accepts == Accepts::AsciiOnly ? "1abcd23456" : "1ab\u00e9cd23456");
    }
}

// What is selected elsewhere takes the selection away, so there is none to be replaced.
TEST_F(PinFieldWaysIn, APasteOfTheMiddleButtonGoesInWhereThePointerIs) {
    for (const Accepts accepts : kKinds) {
        Open(accepts);
        for (const char* const text : Refused(accepts)) {
            Select();
            PasteWithMiddleButton(text, 1);
            EXPECT_EQ(Pin(), "123456");
            EXPECT_EQ(Caret(), 4);
            EXPECT_EQ(m_changes, 0);
            EXPECT_EQ(TakeBellCount(), 1);
        }
        for (const Brought& each : kBrought) {
            for (const long place : {0L, 1L, 5L, 6L}) {
                Select();
                PasteWithMiddleButton(each.offered, static_cast<int>(place));
                ExpectReplacedBy(each.In(accepts), place, place);
                EXPECT_EQ(m_changes, 1);
            }
        }
    }
}

// It would be one of mask characters.
TEST_F(PinFieldWaysIn, ItsOwnSelectionIsNotPasted) {
    for (const Accepts accepts : kKinds) {
        Open(accepts);
        for (const int place : {1, 3}) {
            Select();
            user::Click(*m_field, PlaceOf(place), wxMOUSE_BTN_MIDDLE);
            ExpectKept();
        }
    }
}

TEST_F(PinFieldWaysIn, APasteOfTheMiddleButtonBringsTheKeyboardAlong) {
    Open(Accepts::AsciiOnly);
    m_source->SetFocus();
    ASSERT_TRUE(PumpUntil([this] { return m_source->HasFocus(); }));
    PasteWithMiddleButton("7", 6);
    EXPECT_EQ(Pin(), "1234567");
    EXPECT_TRUE(m_field->HasFocus());
}

TEST_F(PinFieldWaysIn, TheMiddleButtonPastesNothingWhereThatIsSwitchedOff) {
    Open(Accepts::AsciiOnly);
    GtkSettings* const settings = gtk_settings_get_default();
    g_object_set(settings, "gtk-enable-primary-paste", FALSE, nullptr);
    PasteWithMiddleButton("7", 6);
    g_object_set(settings, "gtk-enable-primary-paste", TRUE, nullptr);
    EXPECT_EQ(Pin(), "123456");
}

TEST_F(PinFieldWaysIn, ADropReplacesTheSelectionItComesInto) {
    for (const Accepts accepts : kKinds) {
        Open(accepts);
        for (const char* const text : Refused(accepts)) {
            Drop(text, 3);
            ExpectKept();
        }
        Drop("\n", 0);
        ExpectKept();
        for (const char* const text : {"7", "\na\u00e9b\nc"}) {
            const std::string goesIn(std::string_view(AcceptedText(text, accepts)));
            Drop(text, 3);
            ExpectReplacedBy(goesIn);
            EXPECT_EQ(m_changes, 1);
            Drop(text, 1);
            ExpectReplacedBy(goesIn, 1, 1);
        }
        EXPECT_EQ(m_source->GetValue(), "999999");
    }
}

// By this it is done: at the caret, whatever is selected.
TEST_F(PinFieldWaysIn, WhatAssistiveTechnologyBringsIsFilteredToo) {
    for (const Accepts accepts : kKinds) {
        Open(accepts);
        for (const Brought& each : kBrought) {
            Select();
            m_field->SetInsertionPoint(3);
            g_signal_emit_by_name(m_field->GetHandle(), "insert-at-cursor", each.offered);
            ExpectReplacedBy(each.In(accepts), 3, 3);
        }
    }
}

TEST_F(PinFieldWaysIn, AFieldThatIsGoneHearsNoMore) {
    Open(Accepts::AsciiOnly);
    auto* const label = new wxStaticText(m_dialog.get(), wxID_ANY, "PIN:");
    auto* const gone = new PinField(m_dialog.get(), *label, Accepts::AsciiOnly);
    delete gone;
    user::Commit(*m_field, "7");
    ExpectReplacedBy("7");
}

}  // namespace

}  // namespace zeldlg::test
