// A text of several lines as a stack of labels, one for each line.
#pragma once

#include <wx/font.h>
#include <wx/panel.h>
#include <wx/sizer.h>

namespace zeldlg {

class CTextPanel : public wxPanel {
public:
    /// @param text  Cut at every line feed and nowhere else: wrap it before. An empty line stays
    ///              a line. Shown literally.
    /// @param style The toolkit's window styles; wxTAB_TRAVERSAL is added.
    CTextPanel(wxWindow* parent, const wxString& text, const wxFont& font,
               long style = wxNO_BORDER);

    /// Has a screen reader take the lines for one paragraph, of this text.
    void SpeakAs(const wxString& text);

private:
    void AddLine(wxSizer& lines, const wxString& piece, const wxFont& font);
};

}  // namespace zeldlg
