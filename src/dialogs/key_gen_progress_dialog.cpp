#include "dialogs/key_gen_progress_dialog.h"

#include <wx/sizer.h>

#include "resources/catalogue_key.h"
#include "resources/key_gen_pictures.h"
#include "resources/texts.h"
#include "widgets/accessible.h"
#include "widgets/desktop.h"
#include "widgets/layout.h"
#include "widgets/modeless.h"

namespace zeldlg {

namespace {

constexpr int kBorder = 25;

}  // namespace

CKeyGenProgressDialog::CKeyGenProgressDialog(wxWindow* parent)
    : wxDialog(parent, wxID_ANY, Translate(CATALOGUE_KEY("Generating key-pair")), wxDefaultPosition,
               wxDefaultSize, kModelessStyle),
      m_timer(this),
      m_pictures(KeyGenPictures()),
      m_parentBefore(parent) {
    StayUntilHidden(*this);
    m_picture = new wxStaticBitmap(this, wxID_ANY, m_pictures[KeyGenAnimation::kStartPicture]);
    MarkAsDecoration(*m_picture);
    const wxSizerFlags each = wxSizerFlags().CentreVertical().Border(wxALL, kBorder);
    auto* const row = new wxBoxSizer(wxHORIZONTAL);
    row->Add(m_picture, each);
    row->Add(layout::NewText(this, Translate(CATALOGUE_KEY("Generating key-pair, please wait..."))),
             each);
    layout::AlignLabels(*this);
    SetSizerAndFit(row);
    DescribeWindow(*this, WindowRole::Dialog);
    CentreAtPointer(*this);
    Bind(wxEVT_TIMER, [this](wxTimerEvent&) { ShowNextPicture(); });
    m_timer.Start(KeyGenAnimation::kTickMilliseconds);
}

bool CKeyGenProgressDialog::Destroy() {
    m_timer.Stop();
    return wxDialog::Destroy();
}

void CKeyGenProgressDialog::ShowNextPicture() {
    m_picture->SetBitmap(m_pictures[m_animation.Tick()]);
}

}  // namespace zeldlg
