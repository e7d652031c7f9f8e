#include "pin/ascii_filter.h"

#include <wx/valtext.h>

namespace zeldlg {

namespace {

// The toolkit's own validation at OK would open a box that quotes the text. There is nothing
// left to find then.
class AsciiValidator : public wxTextValidator {
public:
    AsciiValidator() : wxTextValidator(wxFILTER_ASCII) {}
    wxObject* Clone() const override { return new AsciiValidator; }
    bool Validate(wxWindow*) override { return true; }
    bool TransferToWindow() override { return true; }
    bool TransferFromWindow() override { return true; }
};

}  // namespace

wxString KeepAscii(const wxString& text) {
    wxString kept;
    for (const wxUniChar character : text) {
        if (character.IsAscii()) {
            kept += character;
        }
    }
    return kept;
}

void SetAsciiFilter(wxTextCtrl& field) { field.SetValidator(AsciiValidator()); }

bool RemoveNonAscii(wxTextCtrl& field) {
    const wxString text = field.GetValue();
    const wxString kept = KeepAscii(text);
    if (kept == text) {
        return false;
    }
    const auto before = static_cast<size_t>(field.GetInsertionPoint());
    field.ChangeValue(kept);
    field.SetInsertionPoint(static_cast<long>(KeepAscii(text.Left(before)).length()));
    return true;
}

}  // namespace zeldlg
