#include "dialogs/token_dialog.h"

#include "dialogs/selection.h"
#include "resources/texts.h"
#include "widgets/accessible.h"
#include "widgets/button.h"
#include "widgets/desktop.h"
#include "widgets/dialog_window.h"
#include "widgets/layout.h"
#include "widgets/screen_fit.h"

namespace zeldlg {

namespace {

constexpr int kBorder = 5;

}  // namespace

CTokenDialog::CTokenDialog(wxWindow* parent)
    : wxDialog(parent, wxID_ANY, Translate("Select a token"), wxDefaultPosition, wxDefaultSize,
               StyleForParent(parent)) {
    wxStaticText* const label = layout::NewText(this, Translate("Please select a token:"));
    m_list = new ChoiceList(this, *label);
    m_list->LetSearch();
    m_okButton = new Button(this, wxID_OK, Translate("OK"));
    MakeDefault(*m_okButton);
    m_okButton->Disable();
    m_rows = new wxBoxSizer(wxVERTICAL);
    const wxSizerFlags each = wxSizerFlags().CentreHorizontal().Border(wxALL, kBorder);
    m_rows->Add(label, each);
    m_rows->Add(m_list, wxSizerFlags(each).Proportion(1));
    m_rows->Add(m_okButton, each);
    auto* const margin = new wxBoxSizer(wxVERTICAL);
    margin->Add(m_rows, wxSizerFlags(1).Expand().Border(wxALL, layout::kMargin - kBorder));
    SetSizer(margin);
    CancelOnEscapeAndClose(*this);
    m_list->Bind(wxEVT_LISTBOX_DCLICK, [this](wxCommandEvent&) { EndModal(wxID_OK); });
}

void CTokenDialog::AddItem(const wxString& name, const wxString& detail, uint64_t identifier) {
    AddItem(TokenRowText(name, detail), identifier);
}

void CTokenDialog::AddItem(const wxString& text, uint64_t identifier) {
    m_list->Add(wxString(text).Trim(), identifier);
    m_okButton->Enable();
}

void CTokenDialog::FinishLayout() {
    layout::FitScreen(*this, *m_rows);
    GetSizer()->SetSizeHints(this);
    DescribeWindow(*this, WindowRole::Dialog);
    SetWindowIcon(*this, "dialog-password");
    CentreAtPointer(*this);
    m_list->SetFocus();
}

}  // namespace zeldlg
