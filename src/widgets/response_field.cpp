#include "widgets/response_field.h"

#include "widgets/response_decoder.h"

namespace zeldlg {

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

}  // namespace zeldlg
