#include "pin/legal_notice.h"

#include "resources/catalogue_key.h"
#include "resources/texts.h"
#include "widgets/layout.h"

namespace zeldlg {

namespace {

// Pixels, so that the notice widens neither the picture nor the PIN row that it stands at.
constexpr int kNoticeWidth = 300;

}  // namespace

wxStaticText* NewLegalNotice(wxWindow* parent) {
    auto* const notice = new wxStaticText(parent, wxID_ANY, wxEmptyString);
    notice->SetFont(parent->GetFont().Bold());
    layout::ShowWrapped(
        *notice,
        Translate(CATALOGUE_KEY("You are about to create a legally binding digital signature!")),
        kNoticeWidth);
    layout::ReserveRoom(*notice);
    return notice;
}

}  // namespace zeldlg
