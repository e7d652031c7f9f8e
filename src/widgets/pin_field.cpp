#include "widgets/pin_field.h"

#include <gtk/gtk.h>
#include <wx/utils.h>
#include <wx/valtext.h>
#include <wx/weakref.h>

#include <algorithm>
#include <cstring>
#include <memory>

#include "registry/settings.h"
#include "resources/texts.h"
#include "widgets/accessible.h"
#include "widgets/secure_text_control.h"

namespace zeldlg {

using platform::SecretBytes;

namespace {

constexpr int kLeastHeight = 24;
constexpr int kAroundText = 6;  // pixels above and below it together
constexpr int kAtCaret = -1;

// The toolkit's filter for typed characters. Its validation at OK would open a box that quotes
// the text. There is nothing left to find then.
class AsciiValidator : public wxTextValidator {
public:
    AsciiValidator() : wxTextValidator(wxFILTER_ASCII) {}
    wxObject* Clone() const override { return new AsciiValidator; }
    bool Validate(wxWindow*) override { return true; }
    bool TransferToWindow() override { return true; }
    bool TransferFromWindow() override { return true; }
};

wxSize FieldSize(const wxWindow& parent) {
    return {CSecureTextControl::GetFieldWidth(),
            std::max(kLeastHeight, parent.GetCharHeight() + kAroundText)};
}

// Where in its text a field shows what is at `x`, in characters. `x` is in pixels of the widget.
int PlaceAt(GtkEntry* entry, int x) {
    int left = 0;
    gtk_entry_get_layout_offsets(entry, &left, nullptr);
    PangoLayout* const layout = gtk_entry_get_layout(entry);
    int index = 0;
    int trailing = 0;
    pango_layout_line_x_to_index(pango_layout_get_line_readonly(layout, 0),
                                 (x - left) * PANGO_SCALE, &index, &trailing);
    const char* const mask = pango_layout_get_text(layout);
    return static_cast<int>(g_utf8_pointer_to_offset(mask, mask + index)) + trailing;
}

// A screen reader says that the key is pressed, but not that it was pressed before.
GdkKeymap* Keymap() { return gdk_keymap_get_for_display(gdk_display_get_default()); }

wxString CapsLockState() {
    return gdk_keymap_get_caps_lock_state(Keymap()) != FALSE ? Translate("Caps Lock is on")
                                                             : wxString();
}

int XIn(GtkWidget* widget, const GdkEventButton& event) {
    int left = 0;
    gdk_window_get_origin(gtk_widget_get_window(widget), &left, nullptr);
    GtkAllocation allocation;
    gtk_widget_get_allocation(widget, &allocation);
    return static_cast<int>(event.x_root) - left - allocation.x;
}

}  // namespace

// GTK and the toolkit delete the selection before anything of ours hears of the text that is to
// replace it. So each way in is met where the text comes from.
struct WaysIn {
    static void Guard(PinField& field) {
        GtkWidget* const entry = field.GetHandle();
        field.m_commitHook = g_signal_add_emission_hook(
            g_signal_lookup("commit", GTK_TYPE_IM_CONTEXT), 0, OnCommit, &field, nullptr);
        // Before the toolkit's filter, which in newer versions pastes what it leaves of a text.
        wxEvtHandler& first = field.GetValidator() != nullptr ? *field.GetValidator()
                                                              : static_cast<wxEvtHandler&>(field);
        first.Bind(wxEVT_TEXT_PASTE, [&field](wxClipboardTextEvent&) {
            Paste(field, GDK_SELECTION_CLIPBOARD, kAtCaret);
        });
        g_signal_connect(entry, "button-press-event", G_CALLBACK(OnButtonPress), &field);
        g_signal_connect(entry, "drag-data-received", G_CALLBACK(OnDrop), &field);
        g_signal_connect(entry, "insert-text", G_CALLBACK(OnInsert), &field);
    }

    static void Unguard(PinField& field) {
        g_signal_remove_emission_hook(g_signal_lookup("commit", GTK_TYPE_IM_CONTEXT),
                                      field.m_commitHook);
        g_signal_handlers_disconnect_by_data(field.GetHandle(), &field);
    }

    // Of keys and input methods: the entry keeps its context to itself, but only a hook comes
    // before the entry's own handler anyway. That one gets to hear what is accepted.
    static gboolean OnCommit(GSignalInvocationHint* signal, guint, const GValue* values,
                             gpointer data) {
        PinField& field = *static_cast<PinField*>(data);
        gpointer const context = g_value_get_object(&values[0]);
        constexpr auto kOurs =
            static_cast<GSignalMatchType>(G_SIGNAL_MATCH_ID | G_SIGNAL_MATCH_DATA);
        GtkWidget* const entry = field.GetHandle();
        if (g_signal_handler_find(context, kOurs, signal->signal_id, 0, nullptr, nullptr, entry) ==
            0) {
            return TRUE;  // another field's
        }
        const std::string_view offered = g_value_get_string(&values[1]);
        const SecretBytes accepted = AcceptedText(offered, field.m_accepts);
        const bool isWhole = accepted.Size() == offered.size() && !offered.empty();
        if (!isWhole && accepted.Size() != 0) {
            // In place of the first. By hand, as g_signal_emit() makes a copy of the text.
            GValue less[] = {values[0], G_VALUE_INIT};
            g_value_init(&less[1], G_TYPE_STRING);
            g_value_set_static_string(&less[1], accepted.CString());
            g_signal_emitv(less, signal->signal_id, 0, nullptr);
        } else if (!isWhole && !offered.empty()) {
            wxBell();
        }
        if (isWhole == field.m_isDeafToCommit) {
            (isWhole ? g_signal_handlers_unblock_matched : g_signal_handlers_block_matched)(
                context, kOurs, signal->signal_id, 0, nullptr, nullptr, entry);
            field.m_isDeafToCommit = !isWhole;
        }
        return TRUE;
    }

    // The middle button pastes what is selected somewhere.
    static gboolean OnButtonPress(GtkWidget* entry, GdkEventButton* event, PinField* field) {
        gboolean pastes = FALSE;
        g_object_get(gtk_widget_get_settings(entry), "gtk-enable-primary-paste", &pastes, nullptr);
        if (event->button != GDK_BUTTON_MIDDLE || !pastes) {
            return FALSE;
        }
        gtk_entry_grab_focus_without_selecting(GTK_ENTRY(entry));
        Paste(*field, GDK_SELECTION_PRIMARY, PlaceAt(GTK_ENTRY(entry), XIn(entry, *event)));
        return TRUE;
    }

    static void Paste(PinField& field, GdkAtom source, int place) {
        GtkClipboard* const clipboard = gtk_widget_get_clipboard(field.GetHandle(), source);
        GObject* const owner = gtk_clipboard_get_owner(clipboard);
        if (GTK_IS_ENTRY(owner) && !gtk_entry_get_visibility(GTK_ENTRY(owner))) {
            wxBell();  // All that a secret's field gives away is mask characters.
            return;
        }
        struct Question {
            wxWeakRef<PinField> asker;  // The answer may come when the dialog is gone.
            int place;
        };
        const auto onAnswer = +[](GtkClipboard*, const char* utf8, gpointer data) {
            const std::unique_ptr<Question> question(static_cast<Question*>(data));
            if (question->asker) {
                question->asker->Insert(utf8 != nullptr ? utf8 : "", question->place);
            }
        };
        gtk_clipboard_request_text(clipboard, onAnswer, new Question{&field, place});
    }

    static void OnDrop(GtkWidget* entry, GdkDragContext* drag, int x, int, GtkSelectionData* data,
                       guint, guint time, PinField* field) {
        g_signal_stop_emission_by_name(entry, "drag-data-received");
        char* const utf8 = reinterpret_cast<char*>(gtk_selection_data_get_text(data));
        const std::string_view offered = utf8 != nullptr ? utf8 : "";
        const bool isIn = field->Insert(offered, PlaceAt(GTK_ENTRY(entry), x));
        platform::ForgetSecret(utf8, offered.size());
        g_free(utf8);
        const bool isMove = gdk_drag_context_get_selected_action(drag) == GDK_ACTION_MOVE;
        gtk_drag_finish(drag, isIn, isIn && isMove, time);
    }

    // The last door of all of them, and the only one of assistive technology.
    static void OnInsert(GtkEditable* editable, const char* utf8, int bytes, int* position,
                         PinField* field) {
        const std::string_view offered(utf8, bytes < 0 ? strlen(utf8) : static_cast<size_t>(bytes));
        const SecretBytes accepted = AcceptedText(offered, field->m_accepts);
        if (accepted.Size() == offered.size()) {
            return;
        }
        g_signal_stop_emission_by_name(editable, "insert-text");
        if (accepted.Size() != 0) {
            gtk_editable_insert_text(editable, accepted.CString(),
                                     static_cast<int>(accepted.Size()), position);
        }
    }
};

PinField::PinField(wxWindow* parent, wxStaticText& label, Accepts accepts)
    : wxTextCtrl(parent, wxID_ANY, wxEmptyString, wxDefaultPosition, FieldSize(*parent),
                 wxTE_PASSWORD),
      m_accepts(accepts),
      m_description(*this) {
    SetLabelFor(label, *this);
    MarkAsSecretField(*this);
    if (accepts == Accepts::AsciiOnly) {
        SetValidator(AsciiValidator());
    }
    KeepDirection(*this);
    WaysIn::Guard(*this);
    g_signal_connect_swapped(Keymap(), "state-changed", G_CALLBACK(&PinField::OnLockKeys), this);
}

PinField::~PinField() {
    g_signal_handlers_disconnect_by_data(Keymap(), this);
    WaysIn::Unguard(*this);
}

SecretBytes PinField::Pin() const {
    return SecretBytes(gtk_entry_get_text(GTK_ENTRY(GetHandle())));
}

size_t PinField::Length() const { return gtk_entry_get_text_length(GTK_ENTRY(GetHandle())); }

void PinField::Tell(const wxString& lasting, const wxString& state) {
    m_lasting = lasting;
    m_state = state;
    TellAgain();
}

void PinField::TellAgain() {
    m_description.Tell(Sentences({CapsLockState(), m_lasting, m_state}), m_state);
}

void PinField::OnLockKeys(PinField* field) { field->TellAgain(); }

// As GTK does it: what comes into the selection replaces it, what comes beside it leaves its text.
// @param place In characters, or kAtCaret. @return Whether anything went in.
bool PinField::Insert(std::string_view offered, int place) {
    const SecretBytes accepted = AcceptedText(offered, m_accepts);
    if (accepted.Size() == 0) {
        wxBell();
        return false;
    }
    GtkEditable* const editable = GTK_EDITABLE(GetHandle());
    int from = 0;
    int to = 0;
    gtk_editable_get_selection_bounds(editable, &from, &to);
    if (place == kAtCaret || (from <= place && place <= to)) {
        const EventsSuppressor quiet(this);  // One event for both steps is enough.
        gtk_editable_delete_selection(editable);
        place = gtk_editable_get_position(editable);
    }
    gtk_editable_insert_text(editable, accepted.CString(), static_cast<int>(accepted.Size()),
                             &place);
    gtk_editable_set_position(editable, place);
    return true;
}

void KeepDirection(wxTextCtrl& field) {
    const auto follow = +[](GtkWidget* entry) {
        const bool fromRight = gdk_keymap_get_direction(Keymap()) == PANGO_DIRECTION_RTL;
        gtk_widget_set_direction(entry, fromRight ? GTK_TEXT_DIR_RTL : GTK_TEXT_DIR_LTR);
    };
    GtkWidget* const entry = field.GetHandle();
    g_signal_connect_object(Keymap(), "direction-changed", G_CALLBACK(follow), entry,
                            G_CONNECT_SWAPPED);
    follow(entry);
}

Accepts AcceptedInNewPin() {
    return registry::ReadDword(registry::kSettingsKey, L"LimitPinToAscii", 1) != 0
               ? Accepts::AsciiOnly
               : Accepts::Everything;
}

namespace {

constexpr std::string_view kLineEnds[] = {"\n", "\r", "\u2028", "\u2029"};

// In UTF-8 all bytes of a character from U+0080 on are above 0x7F.
bool IsAsciiByte(char byte) { return static_cast<unsigned char>(byte) < 0x80; }

// Of the line end that `text` begins with, in bytes; 0 when it begins with a line.
size_t LineEndLength(std::string_view text) {
    for (const std::string_view end : kLineEnds) {
        if (text.starts_with(end)) {
            return end.size();
        }
    }
    return 0;
}

std::string_view FirstLine(std::string_view text) {
    while (const size_t length = LineEndLength(text)) {
        text.remove_prefix(length);
    }
    size_t length = 0;
    while (length < text.size() && LineEndLength(text.substr(length)) == 0) {
        ++length;
    }
    return text.substr(0, length);
}

}  // namespace

platform::SecretBytes AcceptedText(std::string_view offered, Accepts accepts) {
    const std::string_view line = FirstLine(offered);
    return accepts == Accepts::AsciiOnly ? platform::SecretBytes(line, IsAsciiByte)
                                         : platform::SecretBytes(line);
}

}  // namespace zeldlg
