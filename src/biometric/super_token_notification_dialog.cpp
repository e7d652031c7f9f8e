#include "biometric/super_token_notification_dialog.h"

#include <wx/statbmp.h>

#include <algorithm>

#include "resources/pictures.h"
#include "resources/texts.h"
#include "widgets/accessible.h"
#include "widgets/dialog_window.h"
#include "widgets/layout.h"

namespace zeldlg {

namespace {

constexpr int kHeadlinePointSize = 12;

// No smaller than the text below.
wxFont HeadlineFont(wxFont font) {
    font.SetPointSize(std::max(font.GetPointSize(), kHeadlinePointSize));
    font.SetWeight(wxFONTWEIGHT_BOLD);
    return font;
}

const char* MainText(NotificationMode mode) {
    if (mode == NotificationMode::Authentication) {
        return CATALOGUE_KEY(
            "Authentication to the Lumora Bio Token is required for this operation.\n\n"
            "Please wait for the yellow light to start flashing. Then swipe your finger over the "
            "sensor of the Lumora Bio Token.\n\n"
            "This dialog will automatically disappear once the authentication has completed.");
    }
    return CATALOGUE_KEY(
        "You can now enrol a new fingerprint on the Lumora Bio Token.\n\n"
        "Please wait for the yellow light to start flashing. Then swipe your finger over the "
        "sensor of the Lumora Bio Token.\n\n"
        "This dialog will automatically disappear once the enrolment has completed.");
}

}  // namespace

NotificationTexts TextsOf(NotificationMode mode) {
    const wxString text = Translate(MainText(mode));
    const size_t end = std::min(text.find("\n\n"), text.length());
    return {.headline = text.Left(end),
            .explanation = text.Mid(end),
            .instruction = Translate("Please swipe your finger over the Lumora Bio Token sensor "
                                     "when the yellow light starts flashing")};
}

wxString ScanCounter::Number() const { return wxString::Format("%d", ShownNumber(m_scans)); }

wxString ScanCounter::Title() const {
    return FormatTranslated("Lumora Bio Token - enrolling finger (scan %d)", ShownNumber(m_scans));
}

CSuperTokenNotificationDialog::CSuperTokenNotificationDialog(NotificationMode mode)
    : wxDialog(nullptr, wxID_ANY, Translate("Lumora Bio Token"), wxDefaultPosition, wxDefaultSize,
               kModelessStyle),
      m_description(*this) {
    StayUntilHidden(*this);
    auto* const rows = new wxBoxSizer(wxVERTICAL);
    AddPicture(rows);
    AddTexts(rows, TextsOf(mode));
    if (mode == NotificationMode::Enrolment) {
        AddScanNumber(rows);
    }
    layout::Finish(*this, rows);
}

void CSuperTokenNotificationDialog::AddPicture(wxSizer* rows) {
    auto* const picture = new wxStaticBitmap(this, wxID_ANY, BundleOf(Picture::BioToken));
    SetAccessibleName(*picture, Translate("Lumora Bio Token"));
    rows->Add(picture, wxSizerFlags().CentreHorizontal());
}

void CSuperTokenNotificationDialog::AddTexts(wxSizer* rows, const NotificationTexts& texts) {
    const wxFont font = HeadlineFont(GetFont());
    const wxString headline =
        layout::WrapText(*this, font, texts.headline, layout::TextWidth(*this));
    wxStaticText* const main = NewCentredText(wxEmptyString);
    main->SetLabelText(headline + layout::WrapText(*this, texts.explanation));
    layout::MarkBeginning(*main, ToUtf8(headline).size(), font);
    SetAccessibleName(*main, texts.headline + texts.explanation);
    wxStaticText* const instruction = NewCentredText(layout::WrapText(*this, texts.instruction));
    SetAccessibleName(*instruction, texts.instruction);
    for (wxStaticText* const text : {main, instruction}) {
        rows->Add(text, wxSizerFlags().Expand().Border(wxTOP, layout::kMargin));
    }
}

wxStaticText* CSuperTokenNotificationDialog::NewCentredText(const wxString& text) {
    return new wxStaticText(this, wxID_ANY, wxControl::EscapeMnemonics(text), wxDefaultPosition,
                            wxDefaultSize, wxALIGN_CENTRE);
}

void CSuperTokenNotificationDialog::AddScanNumber(wxSizer* rows) {
    auto* const row = new wxBoxSizer(wxHORIZONTAL);
    wxStaticText* const caption = layout::NewText(this, Translate("Scan number:"));
    row->Add(caption);
    row->AddSpacer(layout::kLineGap);
    m_scanNumber = layout::NewText(this, m_scans.Number());
    SetCaptionFor(*caption, *m_scanNumber);
    row->Add(m_scanNumber);
    rows->Add(row, wxSizerFlags().CentreHorizontal().Border(wxTOP, layout::kMargin));
}

void CSuperTokenNotificationDialog::CountScan() {
    m_scans.Advance();
    SetTitle(m_scans.Title());
    Announce(*this, m_scans.Title());
    m_description.Tell({}, m_scans.Title());  // the whole is the window's name
    if (m_scanNumber != nullptr) {
        m_scanNumber->SetLabelText(m_scans.Number());
        Layout();
    }
}

}  // namespace zeldlg
