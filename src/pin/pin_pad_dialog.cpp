#include "pin/pin_pad_dialog.h"

#include <gtk/gtk.h>
#include <wx/dcclient.h>
#include <wx/statbox.h>

#include <algorithm>
#include <iterator>

#include "pin/legal_signature_dialog.h"
#include "pin/pin_pad.h"
#include "resources/texts.h"
#include "widgets/accessible.h"
#include "widgets/button.h"
#include "widgets/card.h"
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
wxColour LineColour() { return {222, 221, 218}; }

constexpr int kCardPadding = 12;

// Pixels between the places of the row, so that they can be counted.
constexpr int kPlaceGap = 4;

// Shown at the current step, in the direction of reading.
wxString Arrow(const wxWindow& window) {
    return window.GetLayoutDirection() == wxLayout_RightToLeft ? L"\u25C2" : L"\u25B8";
}

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
    AddCard(rows, look);
    if (look.allowAbort) {
        AddAbortButton(rows);
    }
    m_description = std::make_unique<LiveDescription>(*m_described);
    // Of a window with a description some screen readers read nothing else.
    if (m_display != nullptr && m_described != this) {
        SetDescriptionFor(*m_display, *m_described);
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

// The colours of the steps are fixed, so what they stand on is too: a dark theme must not swallow
// them.
void CPinPadDialog::AddCard(wxSizer* rows, const PinPadLook& look) {
    auto* const box = new wxStaticBoxSizer(wxVERTICAL, this, Translate("Action to perform"));
    gtk_frame_set_shadow_type(GTK_FRAME(box->GetStaticBox()->GetHandle()), GTK_SHADOW_NONE);
    m_card = new Card(box->GetStaticBox());
    auto* const card = new wxBoxSizer(wxVERTICAL);
    AddSteps(card, look.verification);
    if (look.withPinRow) {
        AddPinRow(card);
    }
    auto* const margin = new wxBoxSizer(wxVERTICAL);
    margin->Add(card, wxSizerFlags(1).Expand().Border(wxALL, kCardPadding));
    m_card->SetSizer(margin);
    box->Add(m_card, wxSizerFlags(1).Expand().Border(wxTOP, layout::kLineGap));
    rows->Add(box, wxSizerFlags().Expand());
}

void CPinPadDialog::AddSteps(wxSizer* card, bool verification) {
    m_card->SetFont(StepFont(GetFont()));
    auto* const lines = new wxFlexGridSizer(2, layout::kLineGap, layout::kLineGap * 2);
    m_stepEnterPin = AddStep(lines, CATALOGUE_KEY("Enter your PIN"));
    if (!verification) {
        m_stepNewPin = AddStep(lines, CATALOGUE_KEY("Enter the new PIN"));
        m_stepConfirmPin = AddStep(lines, CATALOGUE_KEY("Confirm the new PIN"));
    }
    card->Add(lines);
}

wxStaticText* CPinPadDialog::AddStep(wxSizer* lines, const char* english) {
    auto* const arrow = new wxStaticText(m_card, wxID_ANY, Arrow(*this), wxDefaultPosition,
                                         wxDefaultSize, wxST_NO_AUTORESIZE);
    arrow->SetForegroundColour(CurrentStepColour());
    layout::ReserveRoom(*arrow);
    arrow->SetLabelText({});
    MarkAsDecoration(*arrow);  // what it says is the card's name
    m_arrows.push_back(arrow);
    lines->Add(arrow, wxSizerFlags().CentreVertical());
    wxStaticText* const step = layout::NewText(m_card, Translate(english));
    step->SetForegroundColour(OtherStepColour());
    layout::ReserveRoom(*step);
    lines->Add(step, wxSizerFlags().CentreVertical());
    return step;
}

void CPinPadDialog::AddPinRow(wxSizer* card) {
    auto* const line = new wxWindow(m_card, wxID_ANY, wxDefaultPosition, wxSize(1, 1));
    line->SetBackgroundColour(LineColour());
    gtk_widget_set_can_focus(line->GetHandle(), FALSE);
    MarkAsDecoration(*line);
    card->Add(line, wxSizerFlags().Expand().Border(wxTOP, kCardPadding));
    auto* const box = new wxStaticBoxSizer(wxVERTICAL, m_card);
    gtk_frame_set_shadow_type(GTK_FRAME(box->GetStaticBox()->GetHandle()), GTK_SHADOW_NONE);
    m_display = new wxStaticText(box->GetStaticBox(), wxID_ANY, wxEmptyString, wxDefaultPosition,
                                 wxDefaultSize, wxALIGN_CENTRE_HORIZONTAL | wxST_NO_AUTORESIZE);
    m_display->SetFont(RowFont());
    m_display->SetForegroundColour(CurrentStepColour());
    PangoAttrList* const attributes = pango_attr_list_new();
    pango_attr_list_insert(attributes, pango_attr_letter_spacing_new(kPlaceGap * PANGO_SCALE));
    gtk_label_set_attributes(GTK_LABEL(m_display->GetHandle()), attributes);
    pango_attr_list_unref(attributes);
    m_display->SetLabelText(m_row.Text());
    SetAccessibleName(*m_display, DigitsText());
    ReserveRow();
    box->Add(m_display, wxSizerFlags().Expand());
    card->Add(box, wxSizerFlags().Expand().Border(wxTOP, layout::kLineGap));
}

// With what is between its places.
void CPinPadDialog::ReserveRow() {
    wxClientDC context(m_display);
    context.SetFont(m_display->GetFont());
    const wxSize text = context.GetTextExtent(m_row.Text());
    m_display->SetMinSize({text.x + kPlaceGap * static_cast<int>(PinPadRow::kWidth), text.y});
}

void CPinPadDialog::AddAbortButton(wxSizer* rows) {
    auto* const button = new Button(this, kAbortId, Translate("&Abort"));
    button->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { m_abortRequested = true; });
    rows->Add(button, wxSizerFlags().Right().Border(wxTOP, layout::kSectionGap));
    m_described = button;
}

void CPinPadDialog::NextStep() {
    ++m_step;
    ClearChars();
    HighlightCurrentStep();
    Update();
}

void CPinPadDialog::HighlightCurrentStep() {
    m_stepText.clear();
    uint64_t number = 0;
    for (wxStaticText* const step : {m_stepEnterPin, m_stepNewPin, m_stepConfirmPin}) {
        ++number;
        if (step == nullptr) {
            continue;
        }
        const bool isCurrent = number == m_step;
        m_arrows[number - 1]->SetLabelText(isCurrent ? Arrow(*this) : wxString());
        if (step->SetForegroundColour(isCurrent ? CurrentStepColour() : OtherStepColour())) {
            step->Refresh();
        }
        if (isCurrent) {
            m_stepText = step->GetLabelText();
        }
    }
    // Which step it is must not be told by colours alone.
    SetAccessibleName(*m_card, m_stepText);
    if (!m_stepText.empty()) {
        Announce(*m_card, m_stepText);
    }
    Tell(m_stepText);
}

void CPinPadDialog::AddChar() { ShowRow(m_row.AddChar()); }

void CPinPadDialog::DeleteChar() { ShowRow(m_row.DeleteChar()); }

void CPinPadDialog::ClearChars() { ShowRow(m_row.Clear()); }

void CPinPadDialog::ShowStatus(const wxString& words) {
    ShowRow(m_row.ShowStatus(words.ToStdWstring()));
    if (m_display != nullptr) {
        SetAccessibleName(*m_display, wxString(words).Trim().Trim(false));
    }
    Announce(*this, words);
    Tell(words);
}

void CPinPadDialog::ShowRow(bool changed) {
    if (!changed || m_display == nullptr) {
        return;
    }
    m_display->SetLabelText(m_row.Text());
    // Status words of some scripts are wider than the digits that the row was made for.
    const wxSize room = m_display->GetMinSize();
    ReserveRow();
    if (m_display->GetMinSize().x > room.x) {
        Fit();
    } else {
        m_display->SetMinSize(room);
    }
    SetAccessibleName(*m_display, DigitsText());
    Tell(DigitsText());
    Update();
}

wxString CPinPadDialog::DigitsText() const {
    return FormatTranslated("Digits entered: %d", ShownNumber(m_row.Digits()));
}

void CPinPadDialog::Tell(const wxString& news) {
    m_description->Tell(news == m_stepText ? news : Sentences({m_stepText, news}), news);
}

}  // namespace zeldlg
