// The icon beside a rule: shows, and tells assistive technology, whether the rule is met.
#pragma once

#include <wx/sizer.h>
#include <wx/statbmp.h>

namespace zeldlg {

class RuleIcon : public wxStaticBitmap {
public:
    /// @param rule The rule in words, translated.
    RuleIcon(wxWindow* parent, const wxString& rule, bool met);

    /// Nothing is drawn again when it shows that already.
    void SetMet(bool met);

private:
    wxString m_rule;
    bool m_met;
};

struct RuleLine {
    RuleIcon* icon;
    wxSizer* line;
};

/// Makes a line of the icon and the rule in words.
RuleLine NewRuleLine(wxWindow* parent, const wxString& rule, bool met);

/// Adds such a line below what `sizer` holds. @return The icon.
RuleIcon* AddRuleLine(wxWindow* parent, wxSizer* sizer, const wxString& rule, bool met);

}  // namespace zeldlg
