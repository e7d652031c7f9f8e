#include "dialogs/unlock_with_cr_dialog.h"

#include <gtk/gtk.h>

#include <algorithm>
#include <utility>

#include "resources/texts.h"
#include "widgets/accessible.h"
#include "widgets/dialog_window.h"
#include "widgets/layout.h"
#include "widgets/screen_fit.h"
#include "widgets/secure_text_control.h"
#include "widgets/text_panel.h"

namespace zeldlg {

namespace {

constexpr long kDialogStyle = wxDEFAULT_DIALOG_STYLE | wxSTAY_ON_TOP;
constexpr size_t kHeadingLines = 4;
constexpr size_t kSerialNumberLines = 4;
constexpr int kChallengeLines = 4;
// Challenge and response are read out and typed digit by digit: they are shown larger.
constexpr double kCodeFontScale = 1.2;
constexpr int kFewestDigits = 16;
constexpr int kMostDigits = 40;  // eight groups with what is between them, and a hyphen
constexpr int kDigitsInGroup = 4;
// What a group takes with the space to the next one, at most, in places of a digit.
constexpr double kGroupPlaces = 4.8;
// A share of the width at which texts are broken: labels and fields take no more together.
constexpr double kWidthOfAll = 1.6;
constexpr int kCodePadding = 6;
// What the border of a field and a bar that scrolls it may take besides.
constexpr int kFieldFrame = 20;

constexpr const char* kLabels[] = {
    CATALOGUE_KEY("Challenge:"), CATALOGUE_KEY("Token serial number:"), CATALOGUE_KEY("Response:"),
    CATALOGUE_KEY("Enter new PIN:"), CATALOGUE_KEY("Confirm new PIN:")};
enum Label { kChallenge, kSerialNumber, kResponse, kNewPin, kConfirmation };

int WidthOf(const wxWindow& field, int places) {
    return field.GetTextExtent(wxString('0', static_cast<size_t>(places))).x;
}

// What a field takes to show so many lines of a code, each with so many places.
wxSize CodeSize(const wxWindow& field, int places, int lines) {
    return {WidthOf(field, places) + 2 * kCodePadding + kFieldFrame,
            lines * field.GetCharHeight() + 2 * kCodePadding + 2};
}

// Long challenges are wrapped, very long ones scroll. A line that ends with a letter has room for a
// hyphen, which the toolkit adds there.
int ChallengeLines(int digits, int places) {
    if (digits * kGroupPlaces <= places * kDigitsInGroup) {
        return 1;
    }
    const int groups = std::max(1, static_cast<int>((places - 1) / kGroupPlaces));
    const int inLine = kDigitsInGroup * groups;
    return std::clamp((digits + inLine - 1) / inLine, 1, kChallengeLines);
}

// Without a character that a copy would have as well. The toolkit adds half of a spacing on either
// side of a digit: where two of them meet, there is all of it.
void SpaceGroups(const wxTextCtrl& field) {
    GtkTextBuffer* const text =
        gtk_text_view_get_buffer(GTK_TEXT_VIEW(gtk_bin_get_child(GTK_BIN(field.GetHandle()))));
    const int spacing = 2 * WidthOf(field, 1) / 5 * PANGO_SCALE;
    GtkTextTag* const tag =
        gtk_text_buffer_create_tag(text, nullptr, "letter-spacing", spacing, nullptr);
    for (int next = kDigitsInGroup; next < field.GetLastPosition(); next += kDigitsInGroup) {
        GtkTextIter from;
        GtkTextIter to;
        gtk_text_buffer_get_iter_at_offset(text, &from, next - 1);
        gtk_text_buffer_get_iter_at_offset(text, &to, next + 1);
        gtk_text_buffer_apply_tag(text, tag, &from, &to);
    }
}

}  // namespace

// The toolkit's event comes when a text is in already, and an input method moves the caret after
// it: only here can both be left as they were.
ResponseField::ResponseField(wxWindow* parent) : wxTextCtrl(parent, wxID_ANY) {
    g_signal_connect(GetHandle(), "insert-text", G_CALLBACK(&ResponseField::OnInsert), this);
    Bind(wxEVT_TEXT, [this](wxCommandEvent& event) {
        m_accepted = GetValue();
        event.Skip();
    });
}

void ResponseField::OnInsert(GtkEditable* editable, const char* text, int bytes, int* position,
                             ResponseField* field) {
    const wxString inserted =
        bytes < 0 ? wxString::FromUTF8(text) : wxString::FromUTF8(text, static_cast<size_t>(bytes));
    if (!IsResponseText(inserted.ToStdWstring())) {
        g_signal_stop_emission_by_name(editable, "insert-text");
        field->TakeBack(*position);
    }
}

// A selection that the refused text was to replace is gone by now.
void ResponseField::TakeBack(int& position) {
    const wxString shown = GetValue();
    if (shown != m_accepted) {
        position += static_cast<int>(m_accepted.length()) - static_cast<int>(shown.length());
        ChangeValue(m_accepted);
    }
}

CUnlockWithCRDialog::CUnlockWithCRDialog(UnlockWithCRPrompt prompt)
    : wxDialog(nullptr, wxID_ANY, Translate("Unlock PIN"), wxDefaultPosition, wxDefaultSize,
               StyleForParent(nullptr, kDialogStyle)),
      m_prompt(std::move(prompt)),
      m_accepts(AcceptedInNewPin()),
      m_rows(new wxBoxSizer(wxVERTICAL)),
      m_grid(new wxFlexGridSizer(2, layout::kLineGap * 2, layout::kSectionGap)) {
    CSecureTextControl::MeasureFieldWidth(this);
    AddHeading();
    m_rows->Add(m_grid, wxSizerFlags().Border(wxTOP, layout::kSectionGap));
    AddChallenge();
    AddSerialNumber();
    AddResponse();
    if (m_prompt.askNewPin) {
        AddNewPin();
    }
    AddButtons();
    Revalidate();
    Bind(wxEVT_TEXT, [this](wxCommandEvent&) { Revalidate(); });
    layout::Finish(*this, m_rows);
    CancelOnClose(*this);
    m_responseField->SetFocus();
}

std::string CUnlockWithCRDialog::Response() const {
    return DecodeResponse(m_responseField->GetValue().ToStdWstring());
}

platform::SecretBytes CUnlockWithCRDialog::NewPin() const {
    return m_prompt.askNewPin ? m_pinField->Pin() : platform::SecretBytes();
}

void CUnlockWithCRDialog::AddHeading() {
    const wxString text = FormatHostTexts("Unlocking the PIN for \"%s\":", m_prompt.tokenLabel);
    const wxFont font = layout::HeadingFont(*this);
    const layout::ElidedText elided =
        layout::ElideText(*this, font, text, kHeadingLines, layout::TextWidth(*this));
    auto* const heading = new CTextPanel(this, elided.shown, font);
    heading->SpeakAs(text);
    if (elided.isCut) {
        layout::TellWhole(*heading, text);
    }
    m_rows->Add(heading);
}

// How many places of a line a code of so many digits is to have: in groups, and as there is room.
int CUnlockWithCRDialog::PlacesOf(const wxWindow& field, size_t digits) const {
    const int places = static_cast<int>(
        std::clamp<size_t>(digits + digits / size_t{kDigitsInGroup}, kFewestDigits, kMostDigits));
    const int room = RoomForFields() - CodeSize(field, 0, 1).x;
    return std::clamp(room / WidthOf(field, 1), 1, places);
}

void CUnlockWithCRDialog::AddChallenge() {
    wxStaticText* const label = NewLabel(kLabels[Label::kChallenge]);
    auto* const field =
        new wxTextCtrl(this, wxID_ANY, ChallengeText(m_prompt.challenge), wxDefaultPosition,
                       wxDefaultSize, wxTE_MULTILINE | wxTE_READONLY | wxTE_CHARWRAP);
    field->SetFont(CodeFont());
    layout::PadText(*field, kCodePadding);
    field->SetBackgroundColour(GetBackgroundColour());  // it looks as little editable as it is
    SpaceGroups(*field);
    const auto digits = static_cast<int>(field->GetLastPosition());
    const int places = PlacesOf(*field, static_cast<size_t>(digits));
    field->SetMinSize(CodeSize(*field, places, ChallengeLines(digits, places)));
    field->ShowPosition(0);
    // A bar that only shows when the mouse is near would leave the rest unnoticed.
    gtk_scrolled_window_set_overlay_scrolling(GTK_SCROLLED_WINDOW(field->GetHandle()), FALSE);
    SetLabelFor(*label, *field);
    AddRow(label, field);
}

void CUnlockWithCRDialog::AddSerialNumber() {
    wxStaticText* const label = NewLabel(kLabels[Label::kSerialNumber]);
    wxStaticText* const number =
        layout::NewLimitedText(this, m_prompt.serialNumber, kSerialNumberLines);
    SetCaptionFor(*label, *number);
    AddRow(label, number);
}

void CUnlockWithCRDialog::AddResponse() {
    wxStaticText* const label = NewLabel(kLabels[Label::kResponse]);
    m_responseField = new ResponseField(this);
    KeepDirection(*m_responseField);
    m_responseField->SetFont(CodeFont());
    const auto digits = 2 * static_cast<size_t>(std::max(m_prompt.responseLength, 0));
    wxSize size = CodeSize(*m_responseField, PlacesOf(*m_responseField, digits), 1);
    size.IncTo({wxDefaultCoord, m_responseField->GetBestSize().y});
    m_responseField->SetMinSize(size);
    SetLabelFor(*label, *m_responseField);
    m_responseDescription = std::make_unique<LiveDescription>(*m_responseField);
    const RuleLine rule = NewRuleLine(
        this, FormatTranslated("Response is %d bytes long", m_prompt.responseLength), m_responseOk);
    m_responseIcon = rule.icon;
    AddResponseRow(label, rule.line);
}

// Pixels that are left beside the widest label.
int CUnlockWithCRDialog::RoomForFields() const {
    int widest = 0;
    for (const char* const label : kLabels) {
        widest = std::max(widest, GetTextExtent(Translate(label)).x);
    }
    return std::min(static_cast<int>(kWidthOfAll * layout::TextWidth(*this)),
                    layout::RoomForLine(*this)) -
           widest - layout::kSectionGap;
}

// The rule stands below its field where there is no room beside it.
void CUnlockWithCRDialog::AddResponseRow(wxStaticText* label, wxSizer* rule) {
    const int width = m_responseField->GetMinSize().x + layout::kSectionGap + rule->GetMinSize().x;
    if (width > RoomForFields()) {
        AddRow(label, m_responseField);
        m_grid->AddSpacer(0);
        m_grid->Add(rule);
        return;
    }
    auto* const row = new wxBoxSizer(wxHORIZONTAL);
    row->Add(m_responseField, wxSizerFlags().CentreVertical());
    row->AddSpacer(layout::kSectionGap);
    row->Add(rule, wxSizerFlags().CentreVertical());
    m_grid->Add(label, wxSizerFlags().CentreVertical());
    m_grid->Add(row);
}

void CUnlockWithCRDialog::AddNewPin() {
    m_grid->AddSpacer(layout::kLineGap);
    m_grid->AddSpacer(layout::kLineGap);
    m_pinField = AddPinField(kLabels[Label::kNewPin]);
    m_confirmField = AddPinField(kLabels[Label::kConfirmation]);
    AddPinRules();
}

PinField* CUnlockWithCRDialog::AddPinField(const char* label) {
    wxStaticText* const text = NewLabel(label);
    auto* const field = new PinField(this, *text, m_accepts);
    AddRow(text, field);
    return field;
}

void CUnlockWithCRDialog::AddPinRules() {
    auto* const rules = new wxBoxSizer(wxVERTICAL);
    const NewPinBounds& bounds = m_prompt.newPinBounds;
    m_minIcon = AddRuleLine(this, rules,
                            FormatTranslated("Minimum PIN length %d bytes", bounds.min), false);
    m_maxIcon = AddRuleLine(this, rules,
                            FormatTranslated("Maximum PIN length %d bytes", bounds.max), false);
    m_equalIcon = AddRuleLine(this, rules, Translate("PIN equal to Confirmed PIN"), false);
    m_grid->AddSpacer(0);
    m_grid->Add(rules);
}

void CUnlockWithCRDialog::AddButtons() {
    m_okButton = layout::AddButtonRow(this, m_rows, Translate("OK")).ok;
}

void CUnlockWithCRDialog::AddRow(wxStaticText* label, wxWindow* field) {
    m_grid->Add(label, wxSizerFlags().CentreVertical());
    m_grid->Add(field, wxSizerFlags().CentreVertical());
}

wxStaticText* CUnlockWithCRDialog::NewLabel(const char* text) {
    return layout::NewText(this, Translate(text));
}

wxFont CUnlockWithCRDialog::CodeFont() const {
    const double size = GetFont().GetFractionalPointSize() * kCodeFontScale;
    return wxFontInfo(size).Family(wxFONTFAMILY_TELETYPE);
}

void CUnlockWithCRDialog::Revalidate() {
    if (m_prompt.askNewPin) {
        CheckPins();
    }
    CheckResponse();
    m_okButton->Enable(m_responseOk && m_pinLengthOk && m_pinsEqual);
    TellRules();
}

void CUnlockWithCRDialog::TellRules() {
    m_responseDescription->Tell(m_responseRules.Update({m_responseIcon->Rule()}));
    if (m_prompt.askNewPin) {
        // Its own length: the icons show that of the confirmation once it is in order.
        const NewPinRules own =
            CheckNewPin(m_prompt.newPinBounds, m_pinField->Pin(), m_pinField->Pin());
        m_pinField->Tell({}, m_lengthRules.Update({{m_minIcon->Rule().rule, own.minOk},
                                                   {m_maxIcon->Rule().rule, own.maxOk}}));
        m_confirmField->Tell({}, m_equalityRules.Update({m_equalIcon->Rule()}));
    }
}

void CUnlockWithCRDialog::CheckPins() {
    const NewPinRules rules =
        CheckNewPin(m_prompt.newPinBounds, m_pinField->Pin(), m_confirmField->Pin());
    m_pinLengthOk = rules.LengthOk();
    m_pinsEqual = rules.equal;
    m_minIcon->SetMet(rules.minOk);
    m_maxIcon->SetMet(rules.maxOk);
    m_equalIcon->SetMet(rules.equal);
}

void CUnlockWithCRDialog::CheckResponse() {
    m_responseOk = std::cmp_equal(Response().size(), m_prompt.responseLength);
    m_responseIcon->SetMet(m_responseOk);
}

}  // namespace zeldlg
