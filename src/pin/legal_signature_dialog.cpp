#include "pin/legal_signature_dialog.h"

#include <wx/statbmp.h>

#include "pin/legal_notice.h"
#include "resources/catalogue_key.h"
#include "resources/pictures.h"
#include "resources/texts.h"
#include "widgets/accessible.h"
#include "widgets/layout.h"

namespace zeldlg {

namespace {

// The picture leaves less room than there is for the heading of the PIN dialog.
constexpr size_t kHeadingLines = 4;

}  // namespace

CLegalSignatureDialog::CLegalSignatureDialog(wxWindow* parent, const wxString& tokenLabel,
                                             const PinLengthRule& lengthRule,
                                             const PinFailureLines& failure)
    : CPinPromptDialog(parent, lengthRule) {
    AddPicture();
    AddNotice();
    AddHeading(tokenLabel, kHeadingLines);
    AddFailureLines(failure);
    AddPinField();
    AddSignButton();
    AddRules();
    FinishLayout();
}

void CLegalSignatureDialog::AddPicture() {
    auto* const picture = new wxStaticBitmap(this, wxID_ANY, SignaturePicture());
    MarkAsDecoration(*picture);
    Rows()->Add(picture, wxSizerFlags().CentreHorizontal());
}

void CLegalSignatureDialog::AddNotice() {
    Rows()->Add(NewLegalNotice(this), wxSizerFlags().Border(wxTOP | wxBOTTOM, layout::kSectionGap));
}

void CLegalSignatureDialog::AddSignButton() {
    wxButton* const button = AddButtons(Translate(CATALOGUE_KEY("&Sign")));
    button->SetFont(button->GetFont().Bold());
}

}  // namespace zeldlg
