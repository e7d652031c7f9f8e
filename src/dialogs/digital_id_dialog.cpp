#include "dialogs/digital_id_dialog.h"

#include "dialogs/selection.h"
#include "resources/texts.h"
#include "widgets/accessible.h"
#include "widgets/dialog_window.h"
#include "widgets/layout.h"

namespace zeldlg {

namespace {

constexpr int kBorder = 5;
constexpr size_t kDirectoryLines = 3;

// Room for a date with its time.
constexpr const wchar_t* kSizingText = L"XXXXXXXX-XXXX-XXXX XX:XX:XX";

wxString OkLabel() { return Translate("OK"); }

wxSizerFlags Bordered() { return wxSizerFlags().Border(wxALL, kBorder); }

}  // namespace

CDigitalIDSelectionDialog::CDigitalIDSelectionDialog(const DigitalIdPrompt& prompt)
    : wxDialog(nullptr, wxID_ANY, Translate("Select Digital ID"), wxDefaultPosition, wxDefaultSize,
               StyleForParent(nullptr)),
      m_prompt(prompt),
      m_timer(this) {
    // With nothing to select there is nothing to confirm.
    if (prompt.timeout && prompt.count > 0) {
        m_countDown.emplace(*prompt.timeout);
    }
    auto* const rows = new wxBoxSizer(wxVERTICAL);
    AddList(rows);
    AddDetails(rows);
    AddDirectory(rows);
    AddAlwaysUse(rows);
    AddButtons(rows);
    FillList();
    ShowDetails();
    layout::Finish(*this, rows);
    TellDetailsThatAreCut();
    CancelOnClose(*this);
    m_list->SetFocus();
    if (m_countDown) {
        StartCountDown();
    }
}

void CDigitalIDSelectionDialog::AddList(wxSizer* rows) {
    wxStaticText* const heading =
        layout::NewText(this, Translate("Multiple Digital IDs found; please select an appropriate "
                                        "Digital ID from the list below:"));
    m_list = new ChoiceList(this, *heading);
    m_list->ReportTouches([this] { StopCountDown(); });
    m_list->Bind(wxEVT_LISTBOX_DCLICK, [this](wxCommandEvent&) { EndModal(wxID_OK); });
    rows->Add(heading, Bordered());
    rows->Add(m_list, Bordered().Proportion(1).Expand());
}

void CDigitalIDSelectionDialog::AddDetails(wxSizer* rows) {
    auto* const grid = new wxFlexGridSizer(2, 0, 0);
    grid->AddGrowableCol(1);
    m_validFrom = AddDetail(grid, CaptionText(Translate("Valid From")));
    m_validTo = AddDetail(grid, CaptionText(Translate("Valid To")));
    rows->Add(grid, wxSizerFlags().Expand());
}

// What is longer than the window is wide is cut with an ellipsis there.
wxStaticText* CDigitalIDSelectionDialog::AddDetail(wxSizer* grid, const wxString& caption) {
    wxStaticText* const label = layout::NewText(this, caption);
    auto* const value = new wxStaticText(this, wxID_ANY, kSizingText, wxDefaultPosition,
                                         wxDefaultSize, wxST_ELLIPSIZE_END | wxST_NO_AUTORESIZE);
    value->SetMinSize(value->GetBestSize());
    SetCaptionFor(*label, *value);
    grid->Add(label, Bordered());
    grid->Add(value, wxSizerFlags().Expand().CentreVertical().Border(wxRIGHT, kBorder));
    return value;
}

void CDigitalIDSelectionDialog::AddDirectory(wxSizer* rows) {
    if (m_prompt.directory.empty()) {
        return;
    }
    rows->Add(layout::NewText(this, Translate("This computer is a member of the "
                                              "following Active Directory:")),
              Bordered());
    rows->Add(layout::NewLimitedText(this, m_prompt.directory, kDirectoryLines), Bordered());
    auto* const grid = new wxFlexGridSizer(2, 0, 0);
    grid->AddGrowableCol(1);
    m_userName = AddDetail(grid, Translate("User Principal Name (UPN)"));
    rows->Add(grid, wxSizerFlags().Expand());
}

void CDigitalIDSelectionDialog::AddAlwaysUse(wxSizer* rows) {
    m_alwaysUse = layout::NewCheckBox(
        this, wxID_ANY,
        Translate("Always use this Digital ID (this dialog will not be displayed again)"));
    m_alwaysUse->SetValue(m_prompt.alwaysUse);
    rows->Add(m_alwaysUse, Bordered());
}

void CDigitalIDSelectionDialog::AddButtons(wxSizer* rows) {
    auto* const row = new wxBoxSizer(wxVERTICAL);
    m_okButton = layout::AddButtonRow(this, row, OkLabel()).ok;
    rows->Add(row, Bordered().Expand());
    m_okButton->Enable(m_prompt.count > 0);
    if (m_countDown) {
        // Wide enough from the start: a button that shrinks while it counts would draw the eye.
        m_okButton->SetLabel(CountDownLabel(OkLabel(), m_countDown->Remaining()));
        m_okButton->SetMinSize(m_okButton->GetBestSize());
    }
}

// kept: every row shows the same name and carries the same value.
void CDigitalIDSelectionDialog::FillList() {
    for (uint32_t row = 0; row < m_prompt.count; ++row) {
        m_list->Add(m_prompt.name, m_prompt.value);
    }
    if (m_prompt.defaultIndex < m_prompt.count) {
        m_list->Choose(m_prompt.defaultIndex);
    }
}

// Every row has the same details: they are shown once, whatever is selected later.
void CDigitalIDSelectionDialog::ShowDetails() {
    m_validFrom->SetLabelText(m_prompt.validFrom);
    m_validTo->SetLabelText(m_prompt.validTo);
    if (m_userName != nullptr) {
        m_userName->SetLabelText(m_prompt.count > 0 ? m_prompt.name : wxString());
    }
}

void CDigitalIDSelectionDialog::TellDetailsThatAreCut() {
    for (wxStaticText* const detail : {m_validFrom, m_validTo, m_userName}) {
        if (detail != nullptr) {
            layout::TellWholeIfCut(*detail);
        }
    }
}

void CDigitalIDSelectionDialog::StartCountDown() {
    Bind(wxEVT_TIMER, &CDigitalIDSelectionDialog::OnTick, this);
    m_timer.Start(m_countDown->PeriodMilliseconds());
}

void CDigitalIDSelectionDialog::StopCountDown() {
    if (m_timer.IsRunning()) {
        m_timer.Stop();
        m_okButton->SetLabel(OkLabel());
    }
}

void CDigitalIDSelectionDialog::OnTick(wxTimerEvent&) {
    const bool isOver = m_countDown->Tick();
    m_okButton->SetLabel(CountDownLabel(OkLabel(), m_countDown->Remaining()));
    if (isOver) {
        m_timer.Stop();
        wxQueueEvent(this, new wxCommandEvent(wxEVT_BUTTON, wxID_OK));
    }
}

}  // namespace zeldlg
