#include "dialogs/select_unblock_method_dialog.h"

#include <gtk/gtk.h>
#include <wx/button.h>
#include <wx/statline.h>

#include <algorithm>
#include <iterator>
#include <memory>

#include "resources/texts.h"
#include "widgets/accessible.h"
#include "widgets/dialog_window.h"
#include "widgets/layout.h"

namespace zeldlg {

namespace {

constexpr long kDialogStyle = wxDEFAULT_DIALOG_STYLE | wxSTAY_ON_TOP;

constexpr wxWindowID kPukId = 6402;
constexpr wxWindowID kOfflineId = 6403;

constexpr const char* kExplanation = CATALOGUE_KEY(
    "Please select the unlocking algorithm from the drop-down box below. Your helpdesk can tell "
    "you which algorithm you should select.");

struct Unref {
    void operator()(gpointer object) const { g_object_unref(object); }
};

// What belongs to a choice stands below its text.
constexpr int kIndent = 24;

// The arrow of the list is no stop of its own for the Tab key: assistive technology does not know
// of it, and keys open the list from its text.
void SkipArrow(const wxComboBox& list) {
    GtkWidget* const text = gtk_bin_get_child(GTK_BIN(list.GetHandle()));
    const auto skip = +[](GtkWidget* part, gpointer) {
        if (GTK_IS_BUTTON(part)) {
            gtk_widget_set_can_focus(part, FALSE);
        }
    };
    gtk_container_forall(GTK_CONTAINER(gtk_widget_get_parent(text)), skip, nullptr);
}

// Its text cannot be changed: what a user does to it is to open the list.
void OpenFromText(wxComboBox& list) {
    GtkWidget* const text = gtk_bin_get_child(GTK_BIN(list.GetHandle()));
    const auto open = +[](GtkWidget*, GdkEventButton* event, wxComboBox* combo) -> gboolean {
        if (event->type != GDK_BUTTON_PRESS || event->button != GDK_BUTTON_PRIMARY) {
            return FALSE;
        }
        combo->SetFocus();
        combo->Popup();
        return TRUE;
    };
    g_signal_connect(text, "button-press-event", G_CALLBACK(open), &list);
    list.Bind(wxEVT_KEY_DOWN, [&list](wxKeyEvent& event) {
        const int key = event.GetKeyCode();
        if (key == WXK_SPACE || key == WXK_NUMPAD_SPACE || key == WXK_DOWN ||
            key == WXK_NUMPAD_DOWN) {
            list.Popup();
        } else {
            event.Skip();
        }
    });
}

// A menu takes the square of its rows to build: seconds for a thousand of them.
constexpr size_t kLongestMenu = 100;

// Has the rows drop down as a list instead. To be called before there are any.
void DropDownAsList(const wxComboBox& list) {
    const std::unique_ptr<GtkCssProvider, Unref> look(gtk_css_provider_new());
    gtk_css_provider_load_from_data(look.get(), "* { -GtkComboBox-appears-as-list: true; }", -1,
                                    nullptr);
    gtk_style_context_add_provider(gtk_widget_get_style_context(list.GetHandle()),
                                   GTK_STYLE_PROVIDER(look.get()),
                                   GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
    g_signal_emit_by_name(list.GetHandle(), "style-updated");  // now, not when it is shown
}

}  // namespace

CSelectUnblockMethodDialog::CSelectUnblockMethodDialog(bool pukOffered,
                                                       const std::vector<uint32_t>& algorithms)
    : wxDialog(nullptr, wxID_ANY, Translate("Unlock PIN"), wxDefaultPosition, wxDefaultSize,
               StyleForParent(nullptr, kDialogStyle)),
      m_rows(new wxBoxSizer(wxVERTICAL)) {
    AddPukChoice(pukOffered);
    AddOfflineChoice(!algorithms.empty());
    AddExplanation();
    AddAlgorithms(algorithms);
    AddButtons(pukOffered || !algorithms.empty());
    (pukOffered || algorithms.empty() ? m_puk : m_offline)->SetValue(true);
    ShowWhetherOffline();
    Bind(wxEVT_RADIOBUTTON, [this](wxCommandEvent&) { ShowWhetherOffline(); });
    layout::Finish(*this, m_rows);
    CancelOnClose(*this);
}

uint32_t CSelectUnblockMethodDialog::Method() const {
    return UnblockMethodOf(m_puk->GetValue(), m_offline->GetValue());
}

uint32_t CSelectUnblockMethodDialog::AlgorithmIndex() const {
    return AlgorithmIndexOf(m_algorithms->GetSelection());
}

// The toolkit wants one button of a group to be set: where nothing is offered it is this one,
// unseen.
void CSelectUnblockMethodDialog::AddPukChoice(bool offered) {
    m_puk = new wxRadioButton(this, kPukId, Translate("Unlock PIN using the PUK"),
                              wxDefaultPosition, wxDefaultSize, wxRB_GROUP);
    m_puk->Show(offered);
    if (offered) {
        m_rows->Add(m_puk);
        m_rows->Add(new wxStaticLine(this),
                    wxSizerFlags().Expand().Border(wxTOP | wxBOTTOM, layout::kSectionGap));
    }
}

void CSelectUnblockMethodDialog::AddOfflineChoice(bool offered) {
    m_offline =
        new wxRadioButton(this, kOfflineId, Translate("Unlock PIN via off-line PIN unlock"));
    m_offline->Enable(offered);
    m_rows->Add(m_offline);
}

void CSelectUnblockMethodDialog::AddExplanation() {
    m_explanation =
        new CTextPanel(this, layout::WrapText(*this, Translate(kExplanation)), GetFont());
    m_explanation->SpeakAs(Translate(kExplanation));
    m_rows->AddSpacer(layout::kSectionGap);
    m_rows->Add(m_explanation, wxSizerFlags().Border(wxLEFT, kIndent));
}

void CSelectUnblockMethodDialog::AddAlgorithms(const std::vector<uint32_t>& algorithms) {
    wxArrayString names;
    for (const uint32_t code : algorithms) {
        names.Add(AlgorithmName(code));
    }
    m_algorithms = new wxComboBox(this, wxID_ANY, wxEmptyString, wxDefaultPosition, wxDefaultSize,
                                  wxArrayString(), wxCB_READONLY);
    if (names.size() > kLongestMenu) {
        DropDownAsList(*m_algorithms);
    }
    if (!names.empty()) {
        m_algorithms->Append(names);
        m_algorithms->SetSelection(0);
    }
    SkipArrow(*m_algorithms);
    OpenFromText(*m_algorithms);
    SetAccessibleName(*m_algorithms, Translate("Unlocking algorithm"));
    m_description.emplace(*m_algorithms);
    const auto tell = [this] {
        m_description->Tell(Translate(kExplanation), m_algorithms->GetValue());
    };
    tell();
    m_algorithms->Bind(wxEVT_COMBOBOX, [tell](wxCommandEvent&) { tell(); });
    m_rows->AddSpacer(layout::kLineGap * 2);
    m_rows->Add(m_algorithms, wxSizerFlags().Expand().Border(wxLEFT, kIndent));
}

void CSelectUnblockMethodDialog::AddButtons(bool anyOffered) {
    const layout::ButtonRow buttons = layout::AddButtonRow(this, m_rows, Translate("OK"));
    buttons.ok->Enable(anyOffered);
}

void CSelectUnblockMethodDialog::ShowWhetherOffline() {
    m_explanation->Enable(m_offline->GetValue());
    m_algorithms->Enable(m_offline->GetValue());
}

namespace {

struct Algorithm {
    uint32_t code;
    const char* name;
};

constexpr Algorithm kAlgorithms[] = {
    {0, CATALOGUE_KEY("3DES ECB Challenge/Response")},
    {1, CATALOGUE_KEY("3DES ECB Witness/Challenge/Response")},
};

}  // namespace

wxString AlgorithmName(uint32_t code) {
    const auto* const known =
        std::find_if(std::begin(kAlgorithms), std::end(kAlgorithms),
                     [code](const Algorithm& algorithm) { return algorithm.code == code; });
    return known != std::end(kAlgorithms) ? Translate(known->name)
                                          : FormatTranslated("Unknown algorithm (%u)", code);
}

uint32_t UnblockMethodOf(bool pukChosen, bool offlineChosen) {
    return pukChosen ? 1 : 1 + static_cast<uint32_t>(offlineChosen);
}

uint32_t AlgorithmIndexOf(int selection) { return static_cast<uint32_t>(std::max(selection, 0)); }

}  // namespace zeldlg
