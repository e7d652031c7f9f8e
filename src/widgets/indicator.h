// A ball that shows whether a rule is met and can be chosen, with the mouse or the keyboard, to
// learn more about the rule.
#pragma once

#include <wx/bmpbuttn.h>

namespace zeldlg {

class Indicator : public wxBitmapButton {
public:
    /// Choosing it sends wxEVT_BUTTON.
    /// @param rule What it stands for, translated: tool tip and accessible name.
    Indicator(wxWindow* parent, const wxString& rule, bool met);

    /// Nothing is drawn again when it shows that already.
    void SetMet(bool met);

private:
    wxString m_rule;
    bool m_met;
};

}  // namespace zeldlg
