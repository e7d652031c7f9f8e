#include "pin/pin_pad_dialog.h"

#include <wx/statbox.h>

#include <algorithm>
#include <iterator>

#include "pin/legal_signature_dialog.h"
#include "pin/pin_pad.h"
#include "resources/texts.h"
#include "widgets/accessible.h"
#include "widgets/banner.h"
#include "widgets/button.h"
#include "widgets/desktop.h"
#include "widgets/dialog_window.h"
#include "widgets/layout.h"

namespace zeldlg {

namespace {

constexpr int kAbortId = 6228;

constexpr int kStepPointSize = 18;
constexpr int kRowPointSize = 24;

wxColour OtherStepColour() { return {143, 143, 143}; }
wxColour CurrentStepColour() { return {0, 0, 0}; }
// The colours of the steps are fixed, so what they stand on is too: a dark theme must not swallow
// them.
wxColour StepBackground() { return {255, 255, 255}; }

wxFont StepFont(wxFont font) {
    font.SetPointSize(kStepPointSize);
    return font;
}

wxFont RowFont() {
    return {kRowPointSize, wxFONTFAMILY_TELETYPE, wxFONTSTYLE_NORMAL, wxFONTWEIGHT_BOLD,
            false,         wxEmptyString};
}

}  // namespace

CPinPadDialog::CPinPadDialog(const PinPadLook& look)
    : wxDialog(nullptr, wxID_ANY, Translate("PinPad"), wxDefaultPosition, wxDefaultSize,
               kModelessStyle) {
    StayUntilHidden(*this);
    auto* const rows = new wxBoxSizer(wxVERTICAL);
    if (look.legal) {
        rows->Add(NewLegalNotice(this), wxSizerFlags().Border(wxBOTTOM, layout::kSectionGap));
    }
    AddSteps(rows, look.verification);
    if (look.withPinRow) {
        AddPinRow(rows);
    }
    if (look.allowAbort) {
        AddAbortButton(rows);
    }
    layout::Finish(*this, rows);
    LeaveKeyboard(*this);
}

void CPinPadDialog::StandBeside(const std::vector<CPinPadDialog*>& others) {
    std::vector<wxRect> taken;
    std::transform(others.begin(), others.end(), std::back_inserter(taken),
                   [](const CPinPadDialog* other) { return other->GetRect(); });
    Move(FirstFreePinPadPlace(GetRect(), RoomAtPointer(), taken));
}

void CPinPadDialog::AddSteps(wxSizer* rows, bool verification) {
    auto* const box = new wxStaticBoxSizer(wxVERTICAL, this, Translate("Action to perform"));
    m_stepList = new Surface(box->GetStaticBox());
    m_stepList->SetBackgroundColour(StepBackground());
    m_stepList->SetFont(StepFont(GetFont()));
    auto* const lines = new wxBoxSizer(wxVERTICAL);
    m_stepEnterPin = AddStep(lines, CATALOGUE_KEY("Enter your PIN"));
    if (!verification) {
        m_stepNewPin = AddStep(lines, CATALOGUE_KEY("Enter the new PIN"));
        m_stepConfirmPin = AddStep(lines, CATALOGUE_KEY("Confirm the new PIN"));
    }
    auto* const margin = new wxBoxSizer(wxVERTICAL);
    margin->Add(lines, wxSizerFlags(1).Expand().Border(wxALL, layout::kLineGap * 2));
    m_stepList->SetSizer(margin);
    box->Add(m_stepList, wxSizerFlags(1).Expand().Border(wxALL, layout::kLineGap));
    rows->Add(box, wxSizerFlags().Expand());
}

wxStaticText* CPinPadDialog::AddStep(wxSizer* lines, const char* english) {
    wxStaticText* const step = layout::NewText(m_stepList, Translate(english));
    step->SetForegroundColour(OtherStepColour());
    layout::ReserveRoom(*step);
    lines->Add(step, wxSizerFlags().Border(wxTOP | wxBOTTOM, layout::kLineGap));
    return step;
}

void CPinPadDialog::AddPinRow(wxSizer* rows) {
    auto* const box = new wxStaticBoxSizer(wxVERTICAL, this);
    m_display = new wxStaticText(box->GetStaticBox(), wxID_ANY, wxEmptyString, wxDefaultPosition,
                                 wxDefaultSize, wxALIGN_CENTRE_HORIZONTAL | wxST_NO_AUTORESIZE);
    m_display->SetFont(RowFont());
    m_display->SetLabelText(m_row.Text());
    layout::ReserveRoom(*m_display);
    box->Add(m_display, wxSizerFlags().Expand().Border(wxALL, layout::kLineGap * 2));
    rows->Add(box, wxSizerFlags().Expand().Border(wxTOP, layout::kLineGap));
}

void CPinPadDialog::AddAbortButton(wxSizer* rows) {
    auto* const button = new Button(this, kAbortId, Translate("&Abort"));
    button->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { m_abortRequested = true; });
    rows->Add(button, wxSizerFlags().Right().Border(wxTOP, layout::kSectionGap));
}

void CPinPadDialog::NextStep() {
    ++m_step;
    HighlightCurrentStep();
    ClearChars();
    Update();
}

void CPinPadDialog::HighlightCurrentStep() {
    wxString current;
    uint64_t number = 0;
    for (wxStaticText* const step : {m_stepEnterPin, m_stepNewPin, m_stepConfirmPin}) {
        ++number;
        if (step == nullptr) {
            continue;
        }
        const bool isCurrent = number == m_step;
        if (step->SetForegroundColour(isCurrent ? CurrentStepColour() : OtherStepColour())) {
            step->Refresh();
        }
        if (isCurrent) {
            current = step->GetLabelText();
        }
    }
    // Which step it is must not be told by colours alone.
    SetAccessibleName(*m_stepList, current);
    if (!current.empty()) {
        Announce(*m_stepList, current);
    }
}

void CPinPadDialog::AddChar() { ShowRow(m_row.AddChar()); }

void CPinPadDialog::DeleteChar() { ShowRow(m_row.DeleteChar()); }

void CPinPadDialog::ClearChars() { ShowRow(m_row.Clear()); }

void CPinPadDialog::ShowStatus(const wxString& words) {
    ShowRow(m_row.ShowStatus(words.ToStdWstring()));
    Announce(*this, words);
}

void CPinPadDialog::ShowRow(bool changed) {
    if (!changed || m_display == nullptr) {
        return;
    }
    m_display->SetLabelText(m_row.Text());
    // Status words of some scripts are wider than the digits that the row was made for.
    if (m_display->GetTextExtent(m_row.Text()).x > m_display->GetSize().x) {
        layout::ReserveRoom(*m_display);
        Fit();
    }
    Update();
}

}  // namespace zeldlg
