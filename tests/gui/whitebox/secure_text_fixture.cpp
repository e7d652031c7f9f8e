#include "secure_text_fixture.h"

#include <gtk/gtk.h>
#include <wx/sizer.h>

#include "test_app.h"

namespace zeldlg::test {

namespace {

const wxSize kFieldSize(200, 30);

}  // namespace

SecureText::~SecureText() { delete m_dialog; }

void SecureText::MakeDialog() {
    m_dialog = new wxDialog(nullptr, wxID_ANY, "Secure text");
    m_plainField = new wxTextCtrl(m_dialog, wxID_ANY, wxString(), wxDefaultPosition, kFieldSize);
}

void SecureText::Open(const Options& options) {
    MakeDialog();
    Show(new CSecureTextControl(m_dialog, kFieldId, 4, options.maxBytes, kFieldSize,
                                options.allowNonAscii, options.style));
}

void SecureText::OpenWith(const wxString& text, const Options& options) {
    Open(options);
    Field().SetValue(text);
    Field().SetInsertionPointEnd();
    m_toolkitEvents = 0;
}

void SecureText::Show(CSecureTextControl* field) {
    m_field = field;
    m_okButton = new wxButton(m_dialog, wxID_OK, "OK");
    m_okButton->SetDefault();
    auto* const rows = new wxBoxSizer(wxVERTICAL);
    for (wxWindow* const row :
         {static_cast<wxWindow*>(m_plainField), static_cast<wxWindow*>(m_field),
          static_cast<wxWindow*>(m_okButton)}) {
        rows->Add(row, wxSizerFlags().Border(wxALL));
    }
    m_dialog->SetSizerAndFit(rows);
    Listen();
    m_dialog->Show();
    m_dialog->Raise();
    ASSERT_TRUE(PumpUntil([this] { return m_dialog->IsActive(); }));
    m_field->SetFocus();
    ASSERT_TRUE(PumpUntil([this] { return m_field->HasFocus(); }));
    TakeBellCount();
}

void SecureText::Listen() {
    m_dialog->Bind(
        wxEVT_TEXT,
        [this](wxCommandEvent& event) {
            if (event.GetPropagatedFrom() != nullptr) {
                ++m_toolkitEvents;
                return;
            }
            ++m_notifications;
            m_valueAtNotification = m_field->GetValue();
            m_shownAtNotification = Shown();
        },
        m_field->GetId());
}

GtkEntry* SecureText::Entry() const { return GTK_ENTRY(m_field->GetHandle()); }

GtkEditable* SecureText::Editable() const { return GTK_EDITABLE(m_field->GetHandle()); }

std::string SecureText::Shown() const { return gtk_entry_get_text(Entry()); }

bool SecureText::HasSelection() const {
    return gtk_editable_get_selection_bounds(Editable(), nullptr, nullptr) != FALSE;
}

void SecureText::ExpectHolds(const std::string& secret) const {
    EXPECT_EQ(Secret(), secret);
    EXPECT_EQ(Shown(), std::string(wxString::FromUTF8(secret).length(), '*'));
}

void SecureText::ExpectUntouched(const std::string& secret) const {
    ExpectHolds(secret);
    EXPECT_FALSE(HasSelection());
}

}  // namespace zeldlg::test
