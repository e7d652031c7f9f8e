#include "widgets/button.h"

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

}  // namespace zeldlg
