// Signs of whether a rule is met: an icon beside its words, and a ball.
#pragma once

#include <wx/button.h>
#include <wx/sizer.h>
#include <wx/statbmp.h>

#include "widgets/spoken_state.h"

namespace zeldlg {

/// The icon beside a rule: shows, and tells assistive technology, whether the rule is met.
class RuleIcon : public wxStaticBitmap {
public:
    /// @param rule The rule in words, translated.
    RuleIcon(wxWindow* parent, const wxString& rule, bool met);

    /// Nothing is drawn again when it shows that already.
    void SetMet(bool met);

    SpokenRule Rule() const { return {m_rule, m_met}; }

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

/// A ball with the rule in words that shows whether it is met and can be chosen, with the mouse or
/// the keyboard, to learn more about it.
class Indicator : public wxButton {
public:
    /// Choosing it sends wxEVT_BUTTON.
    /// @param rule What it stands for, translated: text, tool tip and accessible name.
    Indicator(wxWindow* parent, const wxString& rule, bool met);

    /// Nothing is drawn again when it shows that already.
    void SetMet(bool met);

    /// Of a group of which one is chosen: it looks pressed.
    void MarkChosen(bool chosen);

private:
    wxString m_rule;
    bool m_met;
};

}  // namespace zeldlg
