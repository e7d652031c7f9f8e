#include "biometric/enrolment_hint_dialog.h"

#include <wx/checkbox.h>

#include "registry/settings.h"
#include "resources/texts.h"
#include "widgets/button.h"
#include "widgets/dialog_window.h"
#include "widgets/layout.h"

namespace zeldlg {

namespace {

constexpr long kDialogStyle = wxCAPTION | wxSTAY_ON_TOP;
constexpr int kCheckBoxId = 13568;
constexpr int kButtonBorder = 5;

constexpr const wchar_t* kWishedValue = L"ShowEnrolmentHint";

const char* const kExplanation = CATALOGUE_KEY(
    "You are about to enrol a (new) finger on the Lumora Bio Token. This enrolment process is "
    "carried out in 3 scans. The title bar of the window prompting you to swipe your finger over "
    "the sensor and the number in the window indicates which scan is being made. The process "
    "automatically terminates when you have made the three scans. It is important that you use "
    "exactly the same finger in all three scans.");

}  // namespace

bool IsEnrolmentHintWanted() {
    return registry::ReadDword(registry::kSettingsKey, kWishedValue, 1) != 0;
}

void StoreEnrolmentHintWanted(bool wanted) {
    static_cast<void>(registry::WriteDword(registry::kSettingsKey, kWishedValue, wanted ? 1 : 0));
}

CEnrolmentHintDialog::CEnrolmentHintDialog(wxWindow* parent)
    : wxDialog(parent, wxID_ANY, Translate("Fingerprint enrolment information"), wxDefaultPosition,
               wxDefaultSize, kDialogStyle) {
    auto* const rows = new wxBoxSizer(wxVERTICAL);
    rows->Add(layout::NewText(this, Translate(kExplanation)));
    AddCheckBox(rows);
    AddOkButton(rows);
    layout::Finish(*this, rows);
    CancelOnEscapeAndClose(*this);
}

void CEnrolmentHintDialog::AddCheckBox(wxSizer* rows) {
    wxCheckBox* const box = layout::NewCheckBox(
        this, kCheckBoxId, Translate("Show this window during the next enrolment procedure"));
    box->SetValue(true);
    box->Bind(wxEVT_CHECKBOX,
              [](wxCommandEvent& event) { StoreEnrolmentHintWanted(event.IsChecked()); });
    rows->Add(box, wxSizerFlags().Border(wxTOP, layout::kSectionGap));
}

void CEnrolmentHintDialog::AddOkButton(wxSizer* rows) {
    auto* const button = new Button(this, wxID_OK, Translate("OK"));
    MakeDefault(*button);
    button->SetFocus();
    rows->Add(button, wxSizerFlags().CentreHorizontal().Border(wxALL, kButtonBorder));
}

}  // namespace zeldlg
