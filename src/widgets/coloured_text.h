// Texts whose colours are fixed, shown so that they can be read whatever the theme is.
#pragma once

#include <wx/sizer.h>
#include <wx/stattext.h>
#include <wx/window.h>

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <span>

#include "widgets/layout.h"

namespace zeldlg {

struct Rgb {
    uint8_t red;
    uint8_t green;
    uint8_t blue;
};

/// The contrast ratio of two colours as WCAG 2 has it: 1 for equal ones, 21 for black on white.
double ContrastRatio(const Rgb& one, const Rgb& other);

struct TextLook {
    /// Another background than the theme's.
    std::optional<Rgb> background;
    /// At least as large as what the guidelines call large text: 14 points, bold.
    bool large = false;
};

/// @param colours Those that the text may have: all of them are to be readable in one look.
/// @param themeBackground What the theme has around the text.
///
/// Where the theme gives less than 4.5:1, the text stands on plain white or black, whichever is
/// closer to the theme. Where that gives less than 4.5:1 too (red on white), it is large: 3:1 are
/// enough then.
TextLook LookFor(std::span<const Rgb> colours, const Rgb& themeBackground);

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
    ColouredTexts(wxWindow* parent, std::initializer_list<wxColour> colours, Icon icon, int width);

    /// Adds a text below those that there are, wrapped.
    wxStaticText* AddText(const wxString& text, const wxColour& colour);

    /// Replaces a text of AddText(). Its room stays what it was.
    void ChangeText(wxStaticText& label, const wxString& text, const wxColour& colour);

private:
    int m_textWidth;
    wxBoxSizer* m_lines;
};

}  // namespace zeldlg
