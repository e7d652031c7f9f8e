#include "widgets/indicator.h"

#include "resources/rule_icons.h"
#include "widgets/accessible.h"

namespace zeldlg {

Indicator::Indicator(wxWindow* parent, const wxString& rule, bool met)
    : wxBitmapButton(parent, wxID_ANY, met ? MetBall() : RedBall(), wxDefaultPosition,
                     wxDefaultSize, wxBORDER_NONE | wxBU_EXACTFIT),
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
    SetBitmap(met ? MetBall() : RedBall());
    TellRuleState(*this, m_rule, met);
}

}  // namespace zeldlg
