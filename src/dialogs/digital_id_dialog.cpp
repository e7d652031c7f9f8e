#include "dialogs/digital_id_dialog.h"

#include <gtk/gtk.h>

#include "dialogs/selection.h"
#include "resources/texts.h"
#include "widgets/accessible.h"
#include "widgets/banner.h"
#include "widgets/dialog_window.h"
#include "widgets/layout.h"

namespace zeldlg {

namespace {

constexpr int kBorder = 5;
constexpr size_t kDirectoryLines = 3;

// Room for a date with its time.
constexpr const wchar_t* kSizingText = L"XXXXXXXX-XXXX-XXXX XX:XX:XX";

wxString OkLabel() { return Translate("OK"); }

// Paler than what it stands for.
wxStaticText* NewCaption(wxWindow* parent, const wxString& text) {
    wxStaticText* const caption = layout::NewText(parent, text);
    const int share =
        PaleShare(RgbOf(caption->GetForegroundColour()), RgbOf(parent->GetBackgroundColour()));
    PangoAttrList* const attributes = pango_attr_list_new();
    pango_attr_list_insert(attributes, pango_attr_foreground_alpha_new(
                                           static_cast<guint16>(G_MAXUINT16 * share / 100)));
    gtk_label_set_attributes(GTK_LABEL(caption->GetHandle()), attributes);
    pango_attr_list_unref(attributes);
    return caption;
}

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
    AddAlwaysUse(rows);
    AddButtons(rows);
    FillList();
    ShowDetails();
    layout::Finish(*this, rows);
    TellDetailsThatAreCut();
    CancelOnClose(*this);
    if (m_countDown) {
        StartCountDown();
    }
    TellChoice();
    m_list->SetFocus();
}

void CDigitalIDSelectionDialog::AddList(wxSizer* rows) {
    wxStaticText* const heading =
        layout::NewText(this, Translate("Multiple Digital IDs found; please select an appropriate "
                                        "Digital ID from the list below:"));
    m_list = new ChoiceList(this, *heading);
    m_description.emplace(*m_list);
    m_list->ReportTouches([this] { StopCountDown(); });
    m_list->Bind(wxEVT_LISTBOX, [this](wxCommandEvent& event) {
        m_description->MoveToRow();
        event.Skip();
    });
    m_list->Bind(wxEVT_LISTBOX_DCLICK, [this](wxCommandEvent&) { EndModal(wxID_OK); });
    rows->Add(heading, Bordered());
    rows->Add(m_list, Bordered().Proportion(1).Expand());
}

// All values begin at one edge.
void CDigitalIDSelectionDialog::AddDetails(wxSizer* rows) {
    auto* const grid = new wxGridBagSizer(kBorder, kBorder);
    m_validFrom = AddDetail(*grid, CaptionText(Translate("Valid From")));
    m_validTo = AddDetail(*grid, CaptionText(Translate("Valid To")));
    AddDirectory(*grid);
    grid->AddGrowableCol(1);
    rows->Add(grid, Bordered().Expand());
}

// What is longer than the window is wide is cut with an ellipsis there.
wxStaticText* CDigitalIDSelectionDialog::AddDetail(wxGridBagSizer& grid, const wxString& caption) {
    wxStaticText* const label = NewCaption(this, caption);
    auto* const value = new wxStaticText(this, wxID_ANY, kSizingText, wxDefaultPosition,
                                         wxDefaultSize, wxST_ELLIPSIZE_END | wxST_NO_AUTORESIZE);
    value->SetMinSize(value->GetBestSize());
    SetCaptionFor(*label, *value);
    const int row = grid.GetRows();
    grid.Add(label, {row, 0}, wxDefaultSpan, wxALIGN_CENTRE_VERTICAL);
    grid.Add(value, {row, 1}, wxDefaultSpan, wxEXPAND);
    return value;
}

void CDigitalIDSelectionDialog::AddDirectory(wxGridBagSizer& grid) {
    if (m_prompt.directory.empty()) {
        return;
    }
    wxStaticText* const caption =
        NewCaption(this, Translate("This computer is a member of the following Active Directory:"));
    grid.Add(caption, {grid.GetRows(), 0}, {1, 2});
    grid.Add(layout::NewLimitedText(this, m_prompt.directory, kDirectoryLines), {grid.GetRows(), 0},
             {1, 2}, wxEXPAND);
    m_userName = AddDetail(grid, Translate("User Principal Name (UPN)"));
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
        // A screen reader speaks a name whenever it changes.
        SetAccessibleName(*m_okButton, OkLabel());
        m_okDescription.emplace(*m_okButton);
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
        TellChoice();
    }
}

void CDigitalIDSelectionDialog::TellChoice() {
    const auto captioned = [](const wxString& caption, const wxString& value) {
        return value.empty() ? value : CaptionText(caption) + value;
    };
    std::vector<wxString> whole = {captioned(Translate("Valid From"), m_prompt.validFrom),
                                   captioned(Translate("Valid To"), m_prompt.validTo)};
    wxString left;
    wxString news;
    if (m_timer.IsRunning()) {
        m_spokenCountDown.Update(m_countDown->Remaining());
        left = m_spokenCountDown.Whole();
        news = m_spokenCountDown.News();
        whole.push_back(Translate("The selected Digital ID is confirmed automatically"));
        whole.push_back(left);
    }
    m_description->Tell(Sentences(whole), news);
    if (m_okDescription) {
        m_okDescription->Tell(left, news);
    }
}

void CDigitalIDSelectionDialog::OnTick(wxTimerEvent&) {
    const bool isOver = m_countDown->Tick();
    m_okButton->SetLabel(CountDownLabel(OkLabel(), m_countDown->Remaining()));
    TellChoice();
    if (isOver) {
        m_timer.Stop();
        wxQueueEvent(this, new wxCommandEvent(wxEVT_BUTTON, wxID_OK));
    }
}

}  // namespace zeldlg
