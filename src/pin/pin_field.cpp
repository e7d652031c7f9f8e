#include "pin/pin_field.h"

#include <gtk/gtk.h>
#include <wx/utils.h>
#include <wx/weakref.h>

#include <cstring>
#include <memory>
#include <string_view>

#include "dialogs/common/accessible.h"
#include "pin/ascii_filter.h"
#include "pin/secure_text_control.h"
#include "registry/settings.h"

namespace zeldlg {

namespace {

constexpr int kFieldHeight = 24;
constexpr wxChar kLastAscii = 0x7F;

// The toolkit's event comes when a text is in already, and an input method moves the caret after
// it: only here does all else stay as it is.
void KeepAsciiOnly(GtkEditable* editable, const char* utf8, int bytes, int* position, gpointer) {
    const std::string_view inserted(utf8, bytes < 0 ? strlen(utf8) : static_cast<size_t>(bytes));
    if (IsAscii(inserted)) {
        return;
    }
    g_signal_stop_emission_by_name(editable, "insert-text");
    const platform::SecretBytes kept = KeepAscii(inserted);
    if (kept.Size() == 0) {
        return;
    }
    const std::string_view text = kept;
    gtk_editable_insert_text(editable, text.data(), static_cast<int>(text.size()), position);
}

// As much of a text as GTK pastes into these fields. In bytes.
size_t LineLength(const char* utf8) {
    int end = 0;
    int next = 0;
    pango_find_paragraph_boundary(utf8, -1, &end, &next);
    return static_cast<size_t>(end);
}

}  // namespace

PinField::PinField(wxWindow* parent, wxStaticText& label, Accepts accepts)
    : wxTextCtrl(parent, wxID_ANY, wxEmptyString, wxDefaultPosition,
                 wxSize(CSecureTextControl::GetFieldWidth(), kFieldHeight), wxTE_PASSWORD) {
    SetLabelFor(label, *this);
    MarkAsSecretField(*this);
    // A PIN copied from a file or a table brings a line break along, unseen behind the mask.
    g_object_set(GetHandle(), "truncate-multiline", TRUE, nullptr);
    if (accepts == Accepts::AsciiOnly) {
        LimitToAscii();
    }
}

platform::SecretBytes PinField::Pin() const {
    return platform::SecretBytes(gtk_entry_get_text(GTK_ENTRY(GetHandle())));
}

size_t PinField::Length() const { return gtk_entry_get_text_length(GTK_ENTRY(GetHandle())); }

void PinField::LimitToAscii() {
    SetValidator(AsciiValidator());
    g_signal_connect(GetHandle(), "insert-text", G_CALLBACK(KeepAsciiOnly), nullptr);
    Bind(wxEVT_KEY_DOWN, &PinField::OnKeyDown, this);
    Bind(wxEVT_TEXT_PASTE, &PinField::OnPaste, this);
}

// The validator learns of a typed character when the selection that it replaces is deleted already.
void PinField::OnKeyDown(wxKeyEvent& event) {
    const bool isRefused = event.GetUnicodeKey() > kLastAscii && !event.HasModifiers();
    if (isRefused && HasSelection()) {
        wxBell();
    } else {
        event.Skip();
    }
}

// In place of the toolkit's own paste, which deletes the selection before it looks at the text.
void PinField::OnPaste(wxClipboardTextEvent&) {
    using Asker = wxWeakRef<PinField>;  // The answer may come when the dialog is gone.
    const auto onAnswer = +[](GtkClipboard*, const char* utf8, gpointer data) {
        const std::unique_ptr<Asker> asker(static_cast<Asker*>(data));
        if (*asker) {
            (*asker)->PasteAscii(utf8 != nullptr ? utf8 : "");
        }
    };
    gtk_clipboard_request_text(gtk_widget_get_clipboard(GetHandle(), GDK_SELECTION_CLIPBOARD),
                               onAnswer, std::make_unique<Asker>(this).release());
}

void PinField::PasteAscii(const char* utf8) {
    const std::string_view line(utf8, LineLength(utf8));
    if (!ContainsAscii(line)) {
        wxBell();
        return;
    }
    GtkEditable* const editable = GTK_EDITABLE(GetHandle());
    {
        const EventsSuppressor quiet(this);  // One event for both steps is enough.
        gtk_editable_delete_selection(editable);
    }
    int position = gtk_editable_get_position(editable);
    gtk_editable_insert_text(editable, line.data(), static_cast<int>(line.size()), &position);
    gtk_editable_set_position(editable, position);
}

PinField::Accepts AcceptedInNewPin() {
    return registry::ReadDword(registry::kSettingsKey, L"LimitPinToAscii", 1) != 0
               ? PinField::Accepts::AsciiOnly
               : PinField::Accepts::Everything;
}

}  // namespace zeldlg
