#include "widgets/text_panel.h"

#include <wx/stattext.h>

#include <algorithm>

#include "widgets/accessible.h"
#include "widgets/layout.h"

namespace zeldlg {

CTextPanel::CTextPanel(wxWindow* parent, const wxString& text, const wxFont& font, long style)
    : wxPanel(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize, style | wxTAB_TRAVERSAL) {
    m_container.DisableSelfFocus();  // there is nothing in it to type or choose
    auto* const lines = new wxBoxSizer(wxVERTICAL);
    for (size_t from = 0; from <= text.length();) {
        const size_t end = std::min(text.find('\n', from), text.length());
        AddLine(*lines, text.Mid(from, end - from), font);
        from = end + 1;
    }
    SetSizerAndFit(lines);
}

void CTextPanel::SpeakAs(const wxString& text) {
    for (wxWindow* const line : GetChildren()) {
        if (line == GetChildren().front()) {
            SetAccessibleName(*line, text);
        } else {
            MarkAsDecoration(*line);
        }
    }
}

void CTextPanel::AddLine(wxSizer& lines, const wxString& piece, const wxFont& font) {
    auto* const line = new wxStaticText(this, wxID_ANY, wxControl::EscapeMnemonics(piece));
    line->SetFont(font);
    layout::ReserveRoom(*line);
    lines.Add(line);
}

}  // namespace zeldlg
