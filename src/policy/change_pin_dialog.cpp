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
// Room for the explanations.
constexpr int kPageLines = 8;
constexpr int kRuleLines = 2;
constexpr size_t kHeadingLines = 4;
// Some languages take a line more in each text.
constexpr size_t kPolicedHeadingLines = 2;
constexpr int kPolicedSectionGap = 8;
constexpr int kTextPadding = 6;

constexpr const char* kRequirementsMissing = CATALOGUE_KEY(
    "Warning ! Click on the red ball to check what are the password requirements missing !");
constexpr const char* kRequirementsMet = CATALOGUE_KEY(
    "The informed password is correct and fullfilled all the password policy requirements !");

wxString WarningText(const ChangePinFailure& failure) {
    wxString text;
    if (failure.triesLeft) {
        text = FormatTranslated("\nYou have %d tries remaining", ShownNumber(*failure.triesLeft)) +
               "\n";
    }
    text += Translate(failure.warning);
    return text.Trim(false);  // the line break before the tries: the header stands by itself
}

}  // namespace

CChangePinDialog::CChangePinDialog(wxWindow* parent, const ChangePinPrompt& prompt)
    : wxDialog(parent, wxID_ANY, Translate(TextsOf(prompt.mode).title), wxDefaultPosition,
               wxDefaultSize, kDialogStyle),
      m_prompt(prompt),
      m_texts(TextsOf(prompt.mode)),
      m_checks(prompt.mode, prompt.bounds, prompt.policed, prompt.policy),
      m_accepts(AcceptedInNewPin()),
      m_rows(new wxBoxSizer(wxVERTICAL)),
      m_chosen(prompt.policed ? ChangePinChecks::kRuleCount : 0) {
    CSecureTextControl::MeasureFieldWidth(this);
    wxToolTip::SetDelay(kToolTipDelayMs);  // where the toolkit heeds it: GTK 3 has its own delay
    AddHeading(prompt.tokenLabel);
    AddFailure(prompt.attempts);
    AddFields();
    AddRules();
    AddPages();
    AddExplanation();
    AddSummary();
    AddButtons();
    TieDescriptions();
    Revalidate();
    layout::Finish(*this, m_rows);
    CancelOnClose(*this);
    m_oldField->SetFocus();
}

SecretBytes CChangePinDialog::OldValue() const { return m_oldField->Pin(); }

SecretBytes CChangePinDialog::NewValue() const { return m_confirmField->Pin(); }

void CChangePinDialog::AddHeading(const wxString& tokenLabel) {
    m_rows->Add(layout::NewHeading(this, FormatHostTexts(m_texts.heading, tokenLabel),
                                   m_prompt.policed ? kPolicedHeadingLines : kHeadingLines));
}

int CChangePinDialog::SectionGap() const {
    return m_prompt.policed ? kPolicedSectionGap : layout::kSectionGap;
}

void CChangePinDialog::AddFailure(const ChangePinAttempts& attempts) {
    const ChangePinFailure failure = DescribeFailure(m_prompt.mode, attempts);
    if (failure.header == nullptr) {
        return;
    }
    m_failure = Sentences({Translate(failure.header), WarningText(failure)});
    auto* const warnings = new Banner(this);
    m_failureTexts = {warnings->AddText(Translate(failure.header)),
                      warnings->AddText(WarningText(failure))};
    m_rows->Add(warnings, wxSizerFlags().Expand().Border(wxTOP, SectionGap()));
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
    m_rows->Add(NewChecks(ChangePinChecks::kRuleCount), wxSizerFlags().Border(wxTOP, SectionGap()));
}

void CChangePinDialog::AddPages() {
    m_rows->Add(new wxStaticLine(this),
                wxSizerFlags().Expand().Border(wxTOP | wxBOTTOM, SectionGap()));
    m_pageArea = new wxBoxSizer(wxHORIZONTAL);
    m_rows->Add(m_pageArea, wxSizerFlags().Expand());
    if (m_prompt.policed) {
        m_pageArea->Add(NewChecks(m_checks.List().size()),
                        wxSizerFlags().Border(wxRIGHT, layout::kSectionGap));
    }
}

// Those of the list that have no ball yet, up to `end`.
wxSizer* CChangePinDialog::NewChecks(size_t end) {
    auto* const column = new wxBoxSizer(wxVERTICAL);
    for (size_t place = m_indicators.size(); place < end; ++place) {
        const ChangePinCheck& check = m_checks.List()[place];
        m_indicators.push_back(new Indicator(this, check.title, check.met));
        m_explanations.push_back(std::make_unique<LiveDescription>(*m_indicators.back()));
        m_indicators.back()->Bind(wxEVT_BUTTON, [this, place](wxCommandEvent&) { Choose(place); });
        if (place >= ChangePinChecks::kRuleCount) {
            m_indicators.back()->Bind(
                wxEVT_KEY_DOWN, [this, place](wxKeyEvent& event) { OnPageKey(event, place); });
        }
        column->Add(m_indicators.back(), wxSizerFlags().Expand());
    }
    return column;
}

void CChangePinDialog::AddExplanation() {
    m_explanation = new wxTextCtrl(
        this, wxID_ANY, wxEmptyString, wxDefaultPosition,
        wxSize(layout::TextWidth(*this), kRuleLines * GetCharHeight() + 2 * kTextPadding),
        wxTE_MULTILINE | wxTE_READONLY | wxTE_WORDWRAP);
    if (m_prompt.policed) {
        layout::ScrollByLines(*m_explanation, kPageLines, kTextPadding);
    } else {
        layout::LookReadOnly(*m_explanation);
    }
    SetAccessibleName(*m_explanation, Translate("Explanation"));
    m_pageArea->Add(m_explanation, wxSizerFlags(1).Expand());
}

// Both texts find their room from the start: the window must not jump while somebody types.
void CChangePinDialog::AddSummary() {
    m_summaryBox = new Banner(this);
    m_summary = m_summaryBox->AddText(Translate(kRequirementsMissing), Translate(kRequirementsMet));
    m_rows->Add(m_summaryBox, wxSizerFlags().Expand().Border(wxTOP, SectionGap()));
}

void CChangePinDialog::AddButtons() {
    m_okButton = layout::AddButtonRow(this, m_rows, Translate("OK")).ok;
}

// What is spoken with a control need not be read with the window's texts.
void CChangePinDialog::TieDescriptions() {
    for (wxStaticText* const text : m_failureTexts) {
        SetDescriptionFor(*text, *m_oldField);
    }
    SetDescriptionFor(*m_summary, *m_okButton);
}

void CChangePinDialog::Revalidate() {
    const SecretBytes oldValue = m_oldField->Pin();
    const SecretBytes newValue = m_newField->Pin();
    const SecretBytes confirmation = m_confirmField->Pin();
    m_checks.Update({.oldValue = oldValue, .newValue = newValue, .confirmation = confirmation});
    for (size_t i = 0; i < m_indicators.size(); ++i) {
        m_indicators[i]->SetMet(m_checks.List()[i].met);
    }
    if (m_prompt.policed && !m_userChose) {
        m_chosen = m_checks.PageToShow();
    }
    ShowExplanation();
    ShowSummary(m_checks.AllMet());
    TellState(m_checks.AllMet());
}

// What the summary says is of no use to who does not see the balls; their names are.
void CChangePinDialog::TellState(bool allMet) {
    using Entry = ChangePinChecks::Entry;
    const std::pair<Entry, PinField*> fields[] = {{Entry::OldValue, m_oldField},
                                                  {Entry::NewValue, m_newField},
                                                  {Entry::Confirmation, m_confirmField}};
    for (size_t i = 0; i < std::size(fields); ++i) {
        const auto& [entry, field] = fields[i];
        std::vector<SpokenRule> rules;
        for (const ChangePinCheck& check : m_checks.Of(entry)) {
            rules.push_back({check.title, check.met});
        }
        const wxString state = m_spokenRules[i].Update(rules);
        field->Tell(entry == Entry::OldValue ? m_failure : wxString(),
                    allMet ? Translate(kRequirementsMet) : state);
    }
}

void CChangePinDialog::ShowSummary(bool allMet) {
    if (m_shownSummary == allMet) {
        return;
    }
    m_shownSummary = allMet;
    m_summaryBox->ChangeText(*m_summary,
                             Translate(allMet ? kRequirementsMet : kRequirementsMissing),
                             allMet ? Banner::Mood::Reassurance : Banner::Mood::Warning);
    m_okButton->Enable(allMet);
    if (allMet) {
        Announce(*m_summary, Translate(kRequirementsMet));
    }
}

void CChangePinDialog::Choose(size_t place) {
    m_chosen = place;
    m_userChose = true;
    ShowExplanation();
}

// The pages are one stop for the Tab key.
void CChangePinDialog::OnPageKey(wxKeyEvent& event, size_t place) {
    const size_t first = ChangePinChecks::kRuleCount;
    const size_t last = m_indicators.size() - 1;
    switch (event.GetKeyCode()) {
        case WXK_DOWN:
        case WXK_RIGHT:
            place = place < last ? place + 1 : first;
            break;
        case WXK_UP:
        case WXK_LEFT:
            place = place > first ? place - 1 : last;
            break;
        case WXK_HOME:
            place = first;
            break;
        case WXK_END:
            place = last;
            break;
        default:
            event.Skip();
            return;
    }
    Choose(place);
    m_indicators[place]->SetFocus();
}

void CChangePinDialog::ShowExplanation() {
    const ChangePinCheck& chosen = m_checks.List()[m_chosen];
    if (m_chosen >= ChangePinChecks::kRuleCount) {
        m_page = m_chosen;
    }
    for (size_t i = 0; i < m_explanations.size(); ++i) {
        m_explanations[i]->Tell(i == m_chosen ? chosen.spoken : wxString());
        if (i >= ChangePinChecks::kRuleCount) {
            m_indicators[i]->MarkChosen(i == m_chosen);
            m_indicators[i]->SetCanFocus(i == m_page);
        }
    }
    if (chosen.text == m_explanation->GetValue()) {
        return;
    }
    m_explanation->ChangeValue(chosen.text);
    m_explanation->ShowPosition(0);  // with the headline in view
}

}  // namespace zeldlg
