#include "biometric/super_token_notification_dialog.h"

#include <gtk/gtk.h>
#include <wx/statbmp.h>

#include "resources/catalogue_key.h"
#include "resources/pictures.h"
#include "resources/texts.h"
#include "widgets/accessible.h"
#include "widgets/layout.h"
#include "widgets/modeless.h"

namespace zeldlg {

namespace {

constexpr int kHeadlinePointSize = 12;

wxFont HeadlineFont(wxFont font) {
    font.SetPointSize(kHeadlinePointSize);
    font.SetWeight(wxFONTWEIGHT_BOLD);
    return font;
}

// Shows the beginning of a label, so many bytes of UTF-8, in the font of headlines.
void MarkHeadline(const wxStaticText& label, size_t bytes) {
    PangoAttrList* const attributes = pango_attr_list_new();
    for (PangoAttribute* const each : {pango_attr_weight_new(PANGO_WEIGHT_BOLD),
                                       pango_attr_size_new(kHeadlinePointSize * PANGO_SCALE)}) {
        each->end_index = static_cast<guint>(bytes);
        pango_attr_list_insert(attributes, each);
    }
    gtk_label_set_attributes(GTK_LABEL(label.GetHandle()), attributes);
    pango_attr_list_unref(attributes);
}

}  // namespace

CSuperTokenNotificationDialog::CSuperTokenNotificationDialog(NotificationMode mode)
    : wxDialog(nullptr, wxID_ANY, Translate(CATALOGUE_KEY("Lumora Bio Token")), wxDefaultPosition,
               wxDefaultSize, kModelessStyle) {
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
    auto* const picture = new wxStaticBitmap(this, wxID_ANY, BioTokenPicture());
    SetAccessibleName(*picture, Translate(CATALOGUE_KEY("Lumora Bio Token")));
    rows->Add(picture, wxSizerFlags().CentreHorizontal());
}

void CSuperTokenNotificationDialog::AddTexts(wxSizer* rows, const NotificationTexts& texts) {
    const wxString headline = layout::WrapText(*this, HeadlineFont(GetFont()), texts.headline);
    wxStaticText* const main = NewCentredText(wxEmptyString);
    MarkHeadline(*main, ToUtf8(headline).size());
    main->SetLabelText(headline + layout::WrapText(*this, texts.explanation));
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
    wxStaticText* const caption = layout::NewText(this, Translate(CATALOGUE_KEY("Scan number:")));
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
    if (m_scanNumber != nullptr) {
        m_scanNumber->SetLabelText(m_scans.Number());
        Layout();
    }
}

}  // namespace zeldlg
