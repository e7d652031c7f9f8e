#include "pin/pin_field.h"

#include <gtk/gtk.h>

#include <cstring>
#include <string_view>

#include "dialogs/common/accessible.h"
#include "pin/ascii_filter.h"
#include "pin/secure_text_control.h"
#include "registry/settings.h"

namespace zeldlg {

namespace {

constexpr int kFieldHeight = 24;

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

}  // namespace

PinField::PinField(wxWindow* parent, wxStaticText& label, Accepts accepts)
    : wxTextCtrl(parent, wxID_ANY, wxEmptyString, wxDefaultPosition,
                 wxSize(CSecureTextControl::GetFieldWidth(), kFieldHeight), wxTE_PASSWORD) {
    SetLabelFor(label, *this);
    MarkAsSecretField(*this);
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
}

PinField::Accepts AcceptedInNewPin() {
    return registry::ReadDword(registry::kSettingsKey, L"LimitPinToAscii", 1) != 0
               ? PinField::Accepts::AsciiOnly
               : PinField::Accepts::Everything;
}

}  // namespace zeldlg
