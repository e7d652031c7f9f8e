#include "dialogs/message_dialog.h"

#include <gtk/gtk.h>
#include <wx/defs.h>
#include <wx/settings.h>
#include <wx/statbmp.h>
#include <wx/stattext.h>

#include <algorithm>
#include <iterator>

#include "resources/pictures.h"
#include "resources/texts.h"
#include "widgets/accessible.h"
#include "widgets/button.h"
#include "widgets/desktop.h"
#include "widgets/dialog_window.h"
#include "widgets/layout.h"
#include "widgets/screen_fit.h"

namespace zeldlg {

namespace {

struct IconRow {
    long flag;
    MessageIcon icon;
};

// The first whose flag is set decides.
constexpr IconRow kIcons[] = {
    {wxICON_EXCLAMATION, MessageIcon::Warning},
    {wxICON_HAND, MessageIcon::Error},
    {wxICON_QUESTION, MessageIcon::Question},
};
static_assert(wxICON_EXCLAMATION == 0x100 && wxICON_HAND == 0x200 && wxICON_QUESTION == 0x400);

// kept: the flags that ask for a Cancel button are the bits of its identifier. No box of the
// library sets them all, so a host never sees that button.
constexpr long kCancelFlags = wxID_CANCEL;
static_assert(kCancelFlags == 0x13ED);

}  // namespace

MessageIcon MessageIconOf(long style) {
    for (const IconRow& row : kIcons) {
        if ((style & row.flag) != 0) {
            return row.icon;
        }
    }
    return MessageIcon::Information;
}

MessageButtons MessageButtonsOf(long style) {
    if ((style & wxICON_QUESTION) != 0) {
        return MessageButtons::YesNo;
    }
    return (style & kCancelFlags) == kCancelFlags ? MessageButtons::OkCancel : MessageButtons::Ok;
}

namespace {

constexpr int kMinWidth = 320;
constexpr int kIconSize = 48;
constexpr int kBorder = 20;
constexpr int kButtonRowBorder = 15;
constexpr int kButtonBorder = 5;

constexpr int kTickMilliseconds = 1000;
// The longest count that the Yes button has room for from the start: almost three hours.
constexpr int64_t kWidestCount = -9999;

struct IconLook {
    MessageIcon icon;
    const char* name;
    const char* themeIcon;  // also that of the window
};

const IconLook& LookOf(MessageIcon icon) {
    static constexpr IconLook kLooks[] = {
        {MessageIcon::Information, CATALOGUE_KEY("Information"), "dialog-information"},
        {MessageIcon::Warning, CATALOGUE_KEY("Warning"), "dialog-warning"},
        {MessageIcon::Error, CATALOGUE_KEY("Error"), "dialog-error"},
        {MessageIcon::Question, CATALOGUE_KEY("Question"), "dialog-question"},
    };
    return *std::find_if(std::begin(kLooks), std::end(kLooks),
                         [icon](const IconLook& look) { return look.icon == icon; });
}

wxStaticBitmap* NewIcon(wxWindow* parent, long style) {
    const IconLook& look = LookOf(MessageIconOf(style));
    auto* const icon = new wxStaticBitmap(
        parent, wxID_ANY, ThemeIcon(look.themeIcon, kIconSize, parent->GetForegroundColour()));
    icon->SetBackgroundColour(parent->GetBackgroundColour());
    SetAccessibleName(*icon, Translate(look.name));
    return icon;
}

wxString YesLabel(int64_t seconds) { return FormatTranslated("&Yes (%ds)", ShownNumber(seconds)); }

}  // namespace

CMessageDialog::CMessageDialog(wxWindow* parent, const wxString& caption, const wxString& message,
                               long style, int64_t countDownSeconds, Emphasis emphasis)
    : wxDialog(parent, wxID_ANY, caption, wxDefaultPosition, wxDefaultSize, StyleForParent(parent)),
      m_timer(this),
      m_remainingSeconds(countDownSeconds),
      m_emphasis(emphasis) {
    auto* const rows = new wxBoxSizer(wxVERTICAL);
    rows->Add(NewMessageRow(message, style), wxSizerFlags().CentreHorizontal());
    AddButtons(*rows, style);
    // Of a window's texts some screen readers read those alone that have three words.
    if (wxSplit(message, ' ').size() < 3) {
        SetAccessibleDescription(*m_defaultButton, message);
        SetDescriptionFor(*m_message, *m_defaultButton);
    }
    if (MessageButtonsOf(style) == MessageButtons::YesNo && m_remainingSeconds != 0) {
        StartCountDown();
    }
    FinishLayout(rows);
    CancelOnEscapeAndClose(*this);
}

namespace {

// The first line is what it is about: it is bold.
void ShowMessage(wxStaticText& label, const wxString& message, int width) {
    const size_t end = std::min(message.find('\n'), message.length());
    const wxFont bold = label.GetFont().Bold();
    const wxString first = layout::WrapText(label, bold, message.Left(end), width);
    const wxString shown = first + layout::WrapText(label, message.Mid(end), width);
    label.SetLabelText(shown);
    layout::MarkBeginning(label, ToUtf8(first).size(), bold);
    if (shown != message) {
        SetAccessibleName(label, message);
    }
}

}  // namespace

wxSizer* CMessageDialog::NewMessageRow(const wxString& message, long style) {
    m_windowIcon = LookOf(MessageIconOf(style)).themeIcon;
    wxStaticBitmap* const icon = NewIcon(this, style);
    m_message = new wxStaticText(this, wxID_ANY, wxEmptyString);
    const int room = layout::RoomForContent(*this).x - icon->GetBestSize().x - 3 * kBorder -
                     wxSystemSettings::GetMetric(wxSYS_VSCROLL_X, this);
    ShowMessage(*m_message, message, room);
    auto* const row = new wxBoxSizer(wxHORIZONTAL);
    row->Add(icon, wxSizerFlags().Border(wxTOP | wxBOTTOM | wxLEFT, kBorder));
    row->Add(m_message, wxSizerFlags().CentreVertical().Border(wxALL, kBorder));
    return row;
}

// kept: Yes answers as OK does and No as Cancel does.
void CMessageDialog::AddButtons(wxSizer& rows, long style) {
    const MessageButtons buttons = MessageButtonsOf(style);
    MakeDefault(buttons == MessageButtons::YesNo ? NewYesButton()
                                                 : new Button(this, wxID_OK, Translate("OK")));
    switch (buttons) {
        case MessageButtons::YesNo:
            AddButtonPair(rows, m_defaultButton, Translate("&No"));
            break;
        case MessageButtons::OkCancel:
            AddButtonPair(rows, m_defaultButton, Translate("Cancel"));
            break;
        case MessageButtons::Ok:
            rows.Add(m_defaultButton, wxSizerFlags().CentreHorizontal().Border(wxALL, kBorder));
            break;
    }
}

void CMessageDialog::AddButtonPair(wxSizer& rows, wxButton* confirm, const wxString& cancelLabel) {
    const wxSizerFlags each = wxSizerFlags().CentreVertical().Border(wxALL, kButtonBorder);
    auto* const row = new wxBoxSizer(wxHORIZONTAL);
    row->Add(confirm, each);
    row->Add(new Button(this, wxID_CANCEL, cancelLabel), each);
    rows.Add(row, wxSizerFlags().CentreHorizontal().Border(wxALL, kButtonRowBorder));
}

// The box has a fixed size: the button is made wide enough for the count-down beforehand.
wxButton* CMessageDialog::NewYesButton() {
    auto* const yes = new Button(this, wxID_OK, Translate("&Yes"));
    if (m_remainingSeconds != 0) {
        wxSize size = yes->GetBestSize();
        for (const int64_t count : {m_remainingSeconds, kWidestCount}) {
            yes->SetLabel(YesLabel(count));
            size.IncTo(yes->GetBestSize());
        }
        yes->SetMinSize(size);
    }
    return yes;
}

void CMessageDialog::MakeDefault(wxButton* button) {
    m_defaultButton = button;
    zeldlg::MakeDefault(*button, m_emphasis);
}

void CMessageDialog::FinishLayout(wxSizer* rows) {
    layout::AlignLabels(*this);
    SetSizer(rows);
    rows->SetMinSize(kMinWidth, wxDefaultCoord);
    layout::FitScreen(*this, *rows);
    rows->Fit(this);
    SetMinSize(GetSize());
    SetMaxSize(GetSize());
    DescribeWindow(*this, WindowRole::Alert);
    SetWindowIcon(*this, m_windowIcon);
    Layout();
    CentreAtPointer(*this);
    m_defaultButton->SetFocus();
    // The toolkit's own way would put the window on the screen, before it is modal or, when it is
    // closed at once, for good.
    const auto raise =
        +[](GtkWidget* window, gpointer) { gdk_window_raise(gtk_widget_get_window(window)); };
    g_signal_connect(GetHandle(), "map", G_CALLBACK(raise), nullptr);
}

void CMessageDialog::StartCountDown() {
    // A screen reader speaks a name whenever it changes.
    SetAccessibleName(*m_defaultButton, wxControl::RemoveMnemonics(Translate("&Yes")));
    m_description = std::make_unique<LiveDescription>(*m_defaultButton);
    ShowSecondsLeft();
    Bind(wxEVT_TIMER, [this](wxTimerEvent&) {
        --m_remainingSeconds;
        ShowSecondsLeft();
    });
    m_timer.Start(kTickMilliseconds);
}

// kept: the count is a display only. At 0 nothing is pressed, and it goes on below 0 until the
// user answers.
void CMessageDialog::ShowSecondsLeft() {
    m_defaultButton->SetLabel(YesLabel(m_remainingSeconds));
    m_spokenCountDown.Update(m_remainingSeconds);
    m_description->Tell(m_spokenCountDown.Whole(), m_spokenCountDown.News());
}

}  // namespace zeldlg
