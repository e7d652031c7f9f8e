// A push button that shows the text it was given. The toolkit's own takes the system's text, in
// place of ours, when OK or Cancel read like its own.
#pragma once

#include <wx/button.h>

namespace zeldlg {

class Button : public wxButton {
public:
    /// @param label Translated; may have a mnemonic.
    Button(wxWindow* parent, wxWindowID id, const wxString& label);

    void SetLabel(const wxString& label) override;
};

/// What the theme has for a button that stands out.
enum class Emphasis { Suggested, Destructive };

/// Makes it the one that Enter presses, and has it stand out.
void MakeDefault(wxButton& button, Emphasis emphasis = Emphasis::Suggested);

}  // namespace zeldlg
