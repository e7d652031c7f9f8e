#include "dialogs/key_gen_progress_dialog.h"

#include <wx/sizer.h>

#include <utility>

#include "resources/pictures.h"
#include "resources/texts.h"
#include "widgets/accessible.h"
#include "widgets/desktop.h"
#include "widgets/dialog_window.h"
#include "widgets/layout.h"
#include "widgets/screen_fit.h"

namespace zeldlg {

namespace {

constexpr int kBorder = 25;

}  // namespace

size_t KeyGenAnimation::Tick() { return std::exchange(m_phase, (m_phase + 1) % kPictures); }

CKeyGenProgressDialog::CKeyGenProgressDialog(wxWindow* parent)
    : wxDialog(parent, wxID_ANY, Translate("Generating key-pair"), wxDefaultPosition, wxDefaultSize,
               kModelessStyle),
      m_timer(this),
      m_pictures{BundleOf(Picture::TokenRed), BundleOf(Picture::TokenNeutral),
                 BundleOf(Picture::TokenGreen)},
      m_parentBefore(parent) {
    StayUntilHidden(*this);
    m_picture = new wxStaticBitmap(this, wxID_ANY, m_pictures[KeyGenAnimation::kStartPicture]);
    MarkAsDecoration(*m_picture);
    const wxSizerFlags each = wxSizerFlags().CentreVertical().Border(wxALL, kBorder);
    auto* const row = new wxBoxSizer(wxHORIZONTAL);
    row->Add(m_picture, each);
    row->Add(layout::NewText(this, Translate("Generating key-pair, please wait...")), each);
    layout::AlignLabels(*this);
    auto* const rows = new wxBoxSizer(wxVERTICAL);
    rows->Add(row);
    SetSizer(rows);
    layout::FitScreen(*this, *rows);
    rows->Fit(this);
    DescribeWindow(*this, WindowRole::Dialog);
    SetWindowIcon(*this, "dialog-password");
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
