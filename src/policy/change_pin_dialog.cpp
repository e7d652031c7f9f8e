#include "policy/change_pin_dialog.h"

#include <wx/button.h>
#include <wx/statline.h>
#include <wx/tooltip.h>

#include <utility>

#include "resources/texts.h"
#include "widgets/accessible.h"
#include "widgets/dialog_window.h"
#include "widgets/layout.h"
#include "widgets/secure_text_control.h"

namespace zeldlg {

using platform::SecretBytes;

namespace {

constexpr long kDialogStyle = wxCAPTION | wxCLOSE_BOX | wxSYSTEM_MENU | wxSTAY_ON_TOP;
constexpr long kToolTipDelayMs = 257;
// Room for the explanations: the policed dialog must fit a screen of 768 lines with all else.
constexpr int kExplanationWidth = 400;
constexpr int kPolicedMessageWidth = 520;
constexpr int kPageTextHeight = 150;
constexpr int kRuleTextHeight = 44;
constexpr size_t kHeadingLines = 4;
// Some languages take a line more in each text.
constexpr size_t kPolicedHeadingLines = 2;
constexpr int kPolicedSectionGap = 8;
constexpr int kTextPadding = 6;

wxColour ForestGreen() { return {34, 139, 34}; }

constexpr const char* kRequirementsMissing = CATALOGUE_KEY(
    "Warning ! Click on the red ball to check what are the password requirements missing !");
constexpr const char* kRequirementsMet = CATALOGUE_KEY(
    "The informed password is correct and fullfilled all the password policy requirements !");

wxString WarningText(const ChangePinFailure& failure) {
    wxString text;
    if (failure.triesLeft) {
        text = FormatTranslated(CATALOGUE_KEY("\nYou have %d tries remaining"),
                                ShownNumber(*failure.triesLeft)) +
               "\n";
    }
    text += Translate(failure.warning);
    return text.Trim(false);  // the line break before the tries: the header stands by itself
}

wxString FormatBound(const char* format, uint32_t bound) {
    return FormatTranslated(format, ShownNumber(bound));
}

}  // namespace

CChangePinDialog::CChangePinDialog(wxWindow* parent, const ChangePinPrompt& prompt)
    : wxDialog(parent, wxID_ANY, Translate(TextsOf(prompt.mode).title), wxDefaultPosition,
               wxDefaultSize, kDialogStyle),
      m_prompt(prompt),
      m_texts(TextsOf(prompt.mode)),
      m_accepts(AcceptedInNewPin()),
      m_rows(new wxBoxSizer(wxVERTICAL)) {
    if (prompt.policed) {
        m_pages.emplace(prompt.policy);
    }
    CSecureTextControl::MeasureFieldWidth(this);
    wxToolTip::SetDelay(kToolTipDelayMs);  // where the toolkit heeds it: GTK 3 has its own delay
    AddHeading(prompt.tokenLabel);
    AddFailure(prompt.attempts);
    AddFields();
    AddRules();
    AddPolicyPages();
    AddExplanation();
    AddSummary();
    AddButtons();
    Revalidate();
    Choose(prompt.policed ? m_states.size() - kPolicyPageCount - 2 : 0);
    layout::Finish(*this, m_rows);
    CancelOnClose(*this);
    m_oldField->SetFocus();
}

SecretBytes CChangePinDialog::OldValue() const { return m_oldField->Pin(); }

SecretBytes CChangePinDialog::NewValue() const { return m_confirmField->Pin(); }

void CChangePinDialog::AddHeading(const wxString& tokenLabel) {
    m_rows->Add(layout::NewHeading(this, FormatHostTexts(m_texts.heading, tokenLabel),
                                   m_pages ? kPolicedHeadingLines : kHeadingLines));
}

int CChangePinDialog::SectionGap() const {
    return m_pages ? kPolicedSectionGap : layout::kSectionGap;
}

int CChangePinDialog::MessageWidth() const {
    return m_pages ? kPolicedMessageWidth : layout::kTextWidth;
}

void CChangePinDialog::AddFailure(const ChangePinAttempts& attempts) {
    const ChangePinFailure failure = DescribeFailure(m_prompt.mode, attempts);
    if (failure.header == nullptr) {
        return;
    }
    wxStaticText* const header = layout::NewText(this, Translate(failure.header));
    header->SetFont(header->GetFont().Bold());
    m_rows->Add(header, wxSizerFlags().Border(wxTOP, SectionGap()));
    auto* const warning = new ColouredTexts(this, {layout::WarningColour()},
                                            ColouredTexts::Icon::Warning, MessageWidth());
    warning->AddText(WarningText(failure), layout::WarningColour());
    m_rows->Add(warning, wxSizerFlags().Expand().Border(wxTOP, layout::kLineGap));
}

void CChangePinDialog::AddFields() {
    auto* const grid = new wxFlexGridSizer(2, layout::kLineGap * 2, layout::kSectionGap);
    m_oldField = AddField(grid, m_texts.oldLabel);
    m_newField = AddField(grid, m_texts.newLabel);
    m_confirmField = AddField(grid, m_texts.confirmLabel);
    m_rows->Add(grid, wxSizerFlags().Border(wxTOP, SectionGap()));
}

PinField* CChangePinDialog::AddField(wxFlexGridSizer* grid, const char* label) {
    wxStaticText* const text = layout::NewText(this, Translate(label));
    auto* const field = new PinField(this, *text, m_accepts);
    field->Bind(wxEVT_TEXT, [this](wxCommandEvent&) { Revalidate(); });
    grid->Add(text, wxSizerFlags().CentreVertical());
    grid->Add(field, wxSizerFlags().CentreVertical());
    return field;
}

void CChangePinDialog::AddRules() {
    auto* const rules = new wxBoxSizer(wxVERTICAL);
    for (const auto flag : {&ChangePinRules::oldOk, &ChangePinRules::minOk, &ChangePinRules::maxOk,
                            &ChangePinRules::equal}) {
        AddRule(rules, RuleText(flag), flag);
    }
    m_rows->Add(rules, wxSizerFlags().Border(wxTOP, SectionGap()));
}

void CChangePinDialog::AddRule(wxSizer* sizer, const wxString& rule, bool ChangePinRules::*flag) {
    m_states.push_back(NewRow(
        rule, [this, flag] { return m_rules.*flag; }, [rule] { return rule; }));
    auto* const line = new wxBoxSizer(wxHORIZONTAL);
    line->Add(m_states.back().indicator, wxSizerFlags().CentreVertical());
    line->AddSpacer(layout::kLineGap);
    line->Add(layout::NewText(this, rule), wxSizerFlags().CentreVertical());
    sizer->Add(line);
}

CChangePinDialog::Row CChangePinDialog::NewRow(const wxString& rule, std::function<bool()> isMet,
                                               std::function<wxString()> explain) {
    auto* const indicator = new Indicator(this, rule, isMet());
    indicator->Bind(wxEVT_BUTTON, [this, row = m_states.size()](wxCommandEvent&) { Choose(row); });
    return {indicator, std::move(isMet), std::move(explain)};
}

wxString CChangePinDialog::RuleText(bool ChangePinRules::*flag) const {
    const ChangePinBounds& bounds = m_prompt.bounds;
    if (flag == &ChangePinRules::oldOk) {
        return FormatTranslated(m_texts.oldRule, ShownNumber(bounds.oldValue.min),
                                ShownNumber(bounds.oldValue.max));
    }
    if (flag == &ChangePinRules::minOk) {
        return FormatBound(m_texts.minRule, bounds.newValue.min);
    }
    return flag == &ChangePinRules::maxOk ? FormatBound(m_texts.maxRule, bounds.newValue.max)
                                          : Translate(m_texts.equalRule);
}

wxString CChangePinDialog::LengthPageText() const {
    return RuleText(&ChangePinRules::oldOk) + "\n" + RuleText(&ChangePinRules::minOk) + "\n" +
           RuleText(&ChangePinRules::maxOk);
}

void CChangePinDialog::AddPolicyPages() {
    m_rows->Add(new wxStaticLine(this),
                wxSizerFlags().Expand().Border(wxTOP | wxBOTTOM, SectionGap()));
    m_pageArea = new wxBoxSizer(wxHORIZONTAL);
    m_rows->Add(m_pageArea, wxSizerFlags().Expand());
    if (!m_pages) {
        return;
    }
    auto* const grid = new wxFlexGridSizer(2, 0, layout::kLineGap);
    AddPolicyPage(grid, CATALOGUE_KEY("Length"),
                  {nullptr, [this] { return m_rules.oldOk && m_rules.minOk && m_rules.maxOk; },
                   [this] { return LengthPageText(); }});
    AddPolicyPage(grid, CATALOGUE_KEY("Equality"),
                  {nullptr, [this] { return m_rules.equal; },
                   [this] { return RuleText(&ChangePinRules::equal); }});
    static constexpr std::pair<const char*, PolicyPage> kPages[] = {
        {CATALOGUE_KEY("Distance"), PolicyPage::Distance},
        {CATALOGUE_KEY("Diversification"), PolicyPage::Diversification},
        {CATALOGUE_KEY("Similarity"), PolicyPage::Similarity},
        {CATALOGUE_KEY("Restriction"), PolicyPage::Restriction}};
    for (const auto& [title, page] : kPages) {
        AddPolicyPage(grid, title,
                      {nullptr, [this, page = page] { return m_pages->IsMet(page); },
                       [this, page = page] { return m_pages->TextOf(page); }});
    }
    m_pageArea->Add(grid, wxSizerFlags().Border(wxRIGHT, layout::kSectionGap));
}

void CChangePinDialog::AddPolicyPage(wxFlexGridSizer* grid, const char* title, Row row) {
    const wxString text = Translate(title);
    m_states.push_back(NewRow(text, std::move(row.isMet), std::move(row.explain)));
    grid->Add(m_states.back().indicator, wxSizerFlags().CentreVertical());
    grid->Add(layout::NewText(this, text), wxSizerFlags().CentreVertical());
}

void CChangePinDialog::AddExplanation() {
    m_explanation =
        new wxTextCtrl(this, wxID_ANY, wxEmptyString, wxDefaultPosition,
                       wxSize(kExplanationWidth, m_pages ? kPageTextHeight : kRuleTextHeight),
                       wxTE_MULTILINE | wxTE_READONLY | wxTE_WORDWRAP);
    layout::PadText(*m_explanation, kTextPadding);
    SetAccessibleName(*m_explanation, Translate(CATALOGUE_KEY("Explanation")));
    m_pageArea->Add(m_explanation, wxSizerFlags(1).Expand());
}

// Both texts find their room from the start: the window must not jump while somebody types.
void CChangePinDialog::AddSummary() {
    m_summaryBox = new ColouredTexts(this, {layout::WarningColour(), ForestGreen()},
                                     ColouredTexts::Icon::None, MessageWidth());
    m_summary = m_summaryBox->AddText(Translate(kRequirementsMissing), layout::WarningColour());
    wxSize room = m_summary->GetMinSize();
    m_summaryBox->ChangeText(*m_summary, Translate(kRequirementsMet), ForestGreen());
    layout::ReserveRoom(*m_summary);
    room.IncTo(m_summary->GetMinSize());
    m_summary->SetMinSize(room);
    m_rows->Add(m_summaryBox, wxSizerFlags().Expand().Border(wxTOP, SectionGap()));
}

void CChangePinDialog::AddButtons() {
    m_okButton = layout::AddButtonRow(this, m_rows, Translate(CATALOGUE_KEY("OK"))).ok;
}

void CChangePinDialog::Revalidate() {
    const SecretBytes oldValue = m_oldField->Pin();
    const SecretBytes newValue = m_newField->Pin();
    const SecretBytes confirmation = m_confirmField->Pin();
    m_rules =
        CheckRules(m_prompt.bounds,
                   {.oldValue = oldValue, .newValue = newValue, .confirmation = confirmation});
    if (m_pages) {
        m_pages->Update(newValue);
    }
    ShowStates();
}

void CChangePinDialog::ShowStates() {
    for (const Row& row : m_states) {
        row.indicator->SetMet(row.isMet());
    }
    ShowExplanation();
    ShowSummary(m_rules.AllMet() && (!m_pages || m_pages->AllMet()));
}

void CChangePinDialog::ShowSummary(bool allMet) {
    if (m_shownSummary == allMet) {
        return;
    }
    m_shownSummary = allMet;
    m_summaryBox->ChangeText(*m_summary,
                             Translate(allMet ? kRequirementsMet : kRequirementsMissing),
                             allMet ? ForestGreen() : layout::WarningColour());
    m_okButton->Enable(allMet);
    if (allMet) {
        Announce(*m_summary, Translate(kRequirementsMet));
    }
}

void CChangePinDialog::Choose(size_t row) {
    m_chosen = row;
    ShowExplanation();
}

void CChangePinDialog::ShowExplanation() {
    const wxString text = m_states[m_chosen].explain();
    if (text == m_explanation->GetValue()) {
        return;
    }
    m_explanation->ChangeValue(text);
    // What is wrong stands behind what is asked for.
    m_explanation->ShowPosition(m_states[m_chosen].isMet() ? 0 : m_explanation->GetLastPosition());
}

}  // namespace zeldlg
