// Ground of a known colour for texts whose colours are fixed: a theme must not swallow them.
#pragma once

#include <wx/sizer.h>
#include <wx/stattext.h>
#include <wx/window.h>

#include <initializer_list>

#include "widgets/layout.h"

namespace zeldlg {

/// Holds labels only: there is nothing for the keyboard.
class Surface : public wxWindow {
public:
    explicit Surface(wxWindow* parent);
    bool AcceptsFocus() const override { return false; }
};

/// Texts in colours that are fixed, readable on every theme: bold, on another background than the
/// theme's and large where that is needed. See LookFor() for the rule.
class ColouredTexts : public Surface {
public:
    enum class Icon { None, Warning };

    /// @param colours All colours that the texts may have.
    /// @param width Pixels that all of it takes at most.
    ColouredTexts(wxWindow* parent, std::initializer_list<wxColour> colours, Icon icon,
                  int width = layout::kTextWidth);

    /// Adds a text below those that there are, wrapped.
    wxStaticText* AddText(const wxString& text, const wxColour& colour);

    /// Replaces a text of AddText(). Its room stays what it was.
    void ChangeText(wxStaticText& label, const wxString& text, const wxColour& colour);

private:
    int m_textWidth;
    wxBoxSizer* m_lines;
};

}  // namespace zeldlg
