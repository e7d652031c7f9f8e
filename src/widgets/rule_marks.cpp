#include "widgets/rule_marks.h"

#include "resources/pictures.h"
#include "widgets/accessible.h"
#include "widgets/layout.h"

namespace zeldlg {

namespace {

const wxSize kIconSize(16, 16);

wxBitmapBundle IconFor(bool met) { return BundleOf(met ? Picture::Check : Picture::Cross); }

wxBitmapBundle BallFor(bool met) { return BundleOf(met ? Picture::BallMet : Picture::BallRed); }

}  // namespace

RuleIcon::RuleIcon(wxWindow* parent, const wxString& rule, bool met)
    : wxStaticBitmap(parent, wxID_ANY, IconFor(met), wxDefaultPosition, kIconSize),
      m_rule(rule),
      m_met(met) {
    SetAccessibleName(*this, RuleState(rule, met));
}

void RuleIcon::SetMet(bool met) {
    if (met == m_met) {
        return;
    }
    m_met = met;
    SetBitmap(IconFor(met));
    SetSize(kIconSize);
    TellRuleState(*this, m_rule, met);
}

RuleLine NewRuleLine(wxWindow* parent, const wxString& rule, bool met) {
    auto* const icon = new RuleIcon(parent, rule, met);
    auto* const line = new wxBoxSizer(wxHORIZONTAL);
    line->Add(icon, wxSizerFlags().CentreVertical());
    line->AddSpacer(layout::kLineGap * 2);
    line->Add(layout::NewText(parent, rule), wxSizerFlags().CentreVertical());
    return {icon, line};
}

RuleIcon* AddRuleLine(wxWindow* parent, wxSizer* sizer, const wxString& rule, bool met) {
    const RuleLine added = NewRuleLine(parent, rule, met);
    sizer->Add(added.line, wxSizerFlags().Border(wxTOP, layout::kLineGap));
    return added.icon;
}

Indicator::Indicator(wxWindow* parent, const wxString& rule, bool met)
    : wxBitmapButton(parent, wxID_ANY, BallFor(met), wxDefaultPosition, wxDefaultSize,
                     wxBORDER_NONE | wxBU_EXACTFIT),
      m_rule(rule),
      m_met(met) {
    SetToolTip(rule);
    SetAccessibleName(*this, RuleState(rule, met));
}

void Indicator::SetMet(bool met) {
    if (met == m_met) {
        return;
    }
    m_met = met;
    SetBitmap(BallFor(met));
    TellRuleState(*this, m_rule, met);
}

}  // namespace zeldlg
