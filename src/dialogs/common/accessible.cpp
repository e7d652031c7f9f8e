#include "dialogs/common/accessible.h"

#include <gtk/gtk.h>

#include "resources/catalogue_key.h"
#include "resources/texts.h"

namespace zeldlg {

namespace {

// What has the keyboard focus: of a control that scrolls or drops down, the widget inside.
GtkWidget* FocusedWidget(const wxWindow& window) {
    GtkWidget* const widget = window.GetHandle();
    return GTK_IS_SCROLLED_WINDOW(widget) || GTK_IS_COMBO_BOX(widget)
               ? gtk_bin_get_child(GTK_BIN(widget))
               : widget;
}

}  // namespace

void SetAccessibleName(wxWindow& window, const wxString& name) {
    atk_object_set_name(gtk_widget_get_accessible(FocusedWidget(window)), name.utf8_str());
}

wxString RuleState(const wxString& rule, bool met) {
    return met ? FormatTranslated(CATALOGUE_KEY("Met: %s"), rule)
               : FormatTranslated(CATALOGUE_KEY("Not met: %s"), rule);
}

void SetLabelFor(wxStaticText& label, wxWindow& field) {
    gtk_label_set_mnemonic_widget(GTK_LABEL(label.GetHandle()), field.GetHandle());
    wxString name = label.GetLabelText();
    name.Replace("\n", " ");  // from wrapping
    if (name.EndsWith(":")) {
        name.RemoveLast();
    }
    SetAccessibleName(field, name);
}

void MarkAsSecretField(wxTextCtrl& field) {
    gtk_entry_set_input_purpose(GTK_ENTRY(field.GetHandle()), GTK_INPUT_PURPOSE_PASSWORD);
}

}  // namespace zeldlg
