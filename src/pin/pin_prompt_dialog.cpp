#include "pin/pin_prompt_dialog.h"

#include <wx/button.h>
#include <wx/statline.h>

#include "resources/texts.h"
#include "widgets/accessible.h"
#include "widgets/banner.h"
#include "widgets/dialog_window.h"
#include "widgets/layout.h"
#include "widgets/secure_text_control.h"

namespace zeldlg {

namespace {

constexpr long kDialogStyle = wxCAPTION | wxSTAY_ON_TOP;
static_assert(kDialogStyle == 0x20008000);

// Room for the widest letters, and for all else on a screen of 768 lines.
constexpr size_t kHeadingLines = 18;

wxString WarningText(const PinFailureLines& lines) {
    wxString text = Translate(lines.warning);
    if (lines.triesLeft) {
        text += FormatTranslated("\nYou have %d tries remaining", ShownNumber(*lines.triesLeft));
    }
    return text;
}

}  // namespace

CPinPromptDialog::CPinPromptDialog(wxWindow* parent, const PinLengthRule& lengthRule)
    : wxDialog(parent, wxID_ANY, Translate("Enter PIN"), wxDefaultPosition, wxDefaultSize,
               kDialogStyle),
      m_rows(new wxBoxSizer(wxVERTICAL)),
      m_lengthRule(lengthRule) {
    CSecureTextControl::MeasureFieldWidth(this);
    Bind(wxEVT_TEXT, &CPinPromptDialog::OnText, this);
    ConsumeMouseButtons();
}

platform::SecretBytes CPinPromptDialog::GetPin() const { return m_pinField->Pin(); }

void CPinPromptDialog::AddHeading(const wxString& tokenLabel, size_t maxLines) {
    m_rows->Add(
        layout::NewHeading(this, FormatHostTexts("To log in to \"%s\"", tokenLabel), maxLines));
}

void CPinPromptDialog::AddFailureLines(const PinFailureLines& lines) {
    if (lines.failure == nullptr) {
        return;
    }
    auto* const warnings = new Banner(this);
    m_failure = Translate(lines.failure);
    m_failureText = warnings->AddText(m_failure);
    if (lines.warning != nullptr) {
        m_warningText = warnings->AddText(WarningText(lines));
        m_failure = Sentences({m_failure, WarningText(lines)});
    }
    m_rows->Add(warnings, wxSizerFlags().Expand().Border(wxTOP, layout::kSectionGap));
}

void CPinPromptDialog::AddPinField() {
    auto* const label = layout::NewText(this, Translate("Enter PIN:"));
    m_pinField = new PinField(this, *label);
    m_rows->Add(label, wxSizerFlags().Border(wxTOP, layout::kSectionGap));
    m_rows->Add(m_pinField, wxSizerFlags().Border(wxTOP, layout::kLineGap));
}

wxButton* CPinPromptDialog::AddButtons(const wxString& okLabel) {
    m_okButton = layout::AddButtonRow(this, m_rows, okLabel).ok;
    m_okButton->Disable();
    return m_okButton;
}

void CPinPromptDialog::AddRules() {
    m_rows->Add(new wxStaticLine(this),
                wxSizerFlags().Expand().Border(wxTOP | wxBOTTOM, layout::kSectionGap));
    // kept: the limits are counted in characters although the lines say bytes.
    m_minIcon = AddRuleLine(
        this, m_rows,
        FormatTranslated("Minimum PIN length %d bytes", ShownNumber(m_lengthRule.MinLength())),
        m_lengthRule.MinOk());
    m_maxIcon = AddRuleLine(
        this, m_rows,
        FormatTranslated("Maximum PIN length %d bytes", ShownNumber(m_lengthRule.MaxLength())),
        m_lengthRule.MaxOk());
}

void CPinPromptDialog::FinishLayout() {
    for (wxStaticText* const text : {m_failureText, m_warningText}) {
        if (text != nullptr) {
            SetDescriptionFor(*text, *m_pinField);
        }
    }
    TellRules();
    layout::Finish(*this, m_rows);
    CancelOnClose(*this);
    m_pinField->SetFocus();
}

void CPinPromptDialog::OnText(wxCommandEvent&) {
    if (!m_lengthRule.Update(static_cast<uint32_t>(m_pinField->Length()))) {
        return;
    }
    m_minIcon->SetMet(m_lengthRule.MinOk());
    m_maxIcon->SetMet(m_lengthRule.MaxOk());
    TellRules();
    m_okButton->Enable(m_lengthRule.Accepts());
    if (m_lengthRule.Accepts()) {
        m_okButton->SetDefault();
    }
}

void CPinPromptDialog::TellRules() {
    m_pinField->Tell(m_failure, m_spokenRules.Update({m_minIcon->Rule(), m_maxIcon->Rule()}));
}

// A press on the dialog's own surface has no meaning, so nothing behind it may act on one.
void CPinPromptDialog::ConsumeMouseButtons() {
    for (const auto& button :
         {wxEVT_LEFT_DOWN, wxEVT_LEFT_UP, wxEVT_LEFT_DCLICK, wxEVT_MIDDLE_DOWN, wxEVT_MIDDLE_UP,
          wxEVT_MIDDLE_DCLICK, wxEVT_RIGHT_DOWN, wxEVT_RIGHT_UP, wxEVT_RIGHT_DCLICK,
          wxEVT_AUX1_DOWN, wxEVT_AUX1_UP, wxEVT_AUX1_DCLICK, wxEVT_AUX2_DOWN, wxEVT_AUX2_UP,
          wxEVT_AUX2_DCLICK}) {
        Bind(button, [](wxMouseEvent&) {});
    }
}

CPinEntryDialog::CPinEntryDialog(wxWindow* parent, const wxString& tokenLabel,
                                 const PinLengthRule& lengthRule, const PinFailureLines& failure)
    : CPinPromptDialog(parent, lengthRule) {
    AddHeading(tokenLabel, kHeadingLines);
    AddFailureLines(failure);
    AddPinField();
    AddButtons(Translate("OK"));
    AddRules();
    FinishLayout();
}

}  // namespace zeldlg
