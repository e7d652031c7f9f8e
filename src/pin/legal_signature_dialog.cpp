#include "pin/legal_signature_dialog.h"

#include <wx/statbmp.h>

#include <algorithm>

#include "resources/pictures.h"
#include "resources/texts.h"
#include "widgets/accessible.h"
#include "widgets/layout.h"

namespace zeldlg {

namespace {

// The picture leaves less room than there is for the heading of the PIN dialog.
constexpr size_t kHeadingLines = 4;

// Pixels, so that the notice widens neither the picture nor the PIN row that it stands at; where
// the font is large it has a share of what other texts have.
constexpr int kLeastNoticeWidth = 300;
constexpr double kNoticeShare = 0.75;

}  // namespace

wxStaticText* NewLegalNotice(wxWindow* parent) {
    auto* const notice = new wxStaticText(parent, wxID_ANY, wxEmptyString);
    notice->SetFont(parent->GetFont().Bold());
    layout::ShowWrapped(
        *notice, Translate("You are about to create a legally binding digital signature!"),
        std::max(kLeastNoticeWidth, static_cast<int>(kNoticeShare * layout::TextWidth(*parent))));
    layout::ReserveRoom(*notice);
    return notice;
}

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
    auto* const picture = new wxStaticBitmap(this, wxID_ANY, BundleOf(Picture::Signature));
    MarkAsDecoration(*picture);
    Rows()->Add(picture, wxSizerFlags().CentreHorizontal());
}

void CLegalSignatureDialog::AddNotice() {
    Rows()->Add(NewLegalNotice(this), wxSizerFlags().Border(wxTOP | wxBOTTOM, layout::kSectionGap));
}

void CLegalSignatureDialog::AddSignButton() {
    wxButton* const button = AddButtons(Translate("&Sign"));
    button->SetFont(button->GetFont().Bold());
}

}  // namespace zeldlg
