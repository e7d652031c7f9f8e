#include "widgets/button.h"

#include <gtk/gtk.h>

namespace zeldlg {

// In two steps: the label is set while the button is created, and must find the function below.
Button::Button(wxWindow* parent, wxWindowID id, const wxString& label) {
    Create(parent, id, label);
}

void Button::SetLabel(const wxString& label) {
    const wxWindowID id = GetId();
    SetId(wxID_ANY);  // the toolkit replaces texts by identifier
    wxButton::SetLabel(label);
    SetId(id);
}

void MakeDefault(wxButton& button, Emphasis emphasis) {
    button.SetDefault();
    gtk_style_context_add_class(gtk_widget_get_style_context(button.GetHandle()),
                                emphasis == Emphasis::Suggested
                                    ? GTK_STYLE_CLASS_SUGGESTED_ACTION
                                    : GTK_STYLE_CLASS_DESTRUCTIVE_ACTION);
}

}  // namespace zeldlg
