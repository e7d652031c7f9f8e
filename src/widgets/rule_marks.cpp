#include "widgets/rule_marks.h"

#include <gtk/gtk.h>

#include "resources/pictures.h"
#include "widgets/accessible.h"
#include "widgets/layout.h"

namespace zeldlg {

namespace {

const wxSize kIconSize(16, 16);
// Pixels between a sign and its text, and those that a button has there anyway.
constexpr int kSignGap = 8;
constexpr int kOwnGap = 2;

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
    line->AddSpacer(kSignGap);
    line->Add(layout::NewText(parent, rule), wxSizerFlags().CentreVertical());
    return {icon, line};
}

RuleIcon* AddRuleLine(wxWindow* parent, wxSizer* sizer, const wxString& rule, bool met) {
    const RuleLine added = NewRuleLine(parent, rule, met);
    sizer->Add(added.line, wxSizerFlags().Border(wxTOP, layout::kLineGap));
    return added.icon;
}

namespace {

constexpr const char* kChosenClass = "zeldlg-chosen";
// As little around a ball and its text as leaves 24 pixels to point at.
constexpr const char* kFlat =
    "* { padding: 1px 6px 1px 2px; min-height: 22px; min-width: 0; }"
    "*.zeldlg-chosen { background-image: none; color: @theme_fg_color;"
    " background-color: alpha(@theme_fg_color, 0.1);"
    " box-shadow: inset 0 0 0 1px alpha(@theme_fg_color, 0.4); }";

// One for all; it lives as long as the process.
GtkStyleProvider* FlatLook() {
    static GtkCssProvider* const look = [] {
        GtkCssProvider* const made = gtk_css_provider_new();
        gtk_css_provider_load_from_data(made, kFlat, -1, nullptr);
        return made;
    }();
    return GTK_STYLE_PROVIDER(look);
}

}  // namespace

Indicator::Indicator(wxWindow* parent, const wxString& rule, bool met) : m_rule(rule), m_met(met) {
    Create(parent, wxID_ANY, wxControl::EscapeMnemonics(layout::WrapText(*parent, rule)),
           wxDefaultPosition, wxDefaultSize, wxBORDER_NONE | wxBU_LEFT | wxBU_EXACTFIT);
    SetBitmap(BallFor(met));
    gtk_widget_set_margin_end(gtk_button_get_image(GTK_BUTTON(GetHandle())), kSignGap - kOwnGap);
    gtk_style_context_add_provider(gtk_widget_get_style_context(GetHandle()), FlatLook(),
                                   GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
    g_signal_emit_by_name(GetHandle(), "style-updated");  // now, not when it is shown
    InvalidateBestSize();
    SetToolTip(rule);
    SetAccessibleName(*this, RuleState(rule, met));
}

void Indicator::MarkChosen(bool chosen) {
    const auto change = chosen ? gtk_style_context_add_class : gtk_style_context_remove_class;
    change(gtk_widget_get_style_context(GetHandle()), kChosenClass);
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
