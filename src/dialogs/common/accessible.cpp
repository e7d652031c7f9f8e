#include "dialogs/common/accessible.h"

#include <gtk/gtk.h>

namespace zeldlg {

void SetAccessibleName(wxWindow& window, const wxString& name) {
    atk_object_set_name(gtk_widget_get_accessible(window.GetHandle()), name.utf8_str());
}

void SetLabelFor(wxStaticText& label, wxWindow& field) {
    gtk_label_set_mnemonic_widget(GTK_LABEL(label.GetHandle()), field.GetHandle());
    wxString name = label.GetLabelText();
    if (name.EndsWith(":")) {
        name.RemoveLast();
    }
    SetAccessibleName(field, name);
}

void MarkAsSecretField(wxTextCtrl& field) {
    gtk_entry_set_input_purpose(GTK_ENTRY(field.GetHandle()), GTK_INPUT_PURPOSE_PASSWORD);
}

}  // namespace zeldlg
