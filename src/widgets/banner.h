// The card for warnings, the same on every theme, and the colours that can be read on it.
#pragma once

#include <wx/colour.h>
#include <wx/sizer.h>
#include <wx/statbmp.h>
#include <wx/stattext.h>
#include <wx/window.h>

#include <cstdint>
#include <vector>

#include "widgets/card.h"
#include "widgets/layout.h"

namespace zeldlg {

struct Rgb {
    uint8_t red;
    uint8_t green;
    uint8_t blue;
};

Rgb RgbOf(const wxColour& colour);

/// The contrast ratio of two colours as WCAG 2 has it: 1 for equal ones, 21 for black on white.
double ContrastRatio(const Rgb& one, const Rgb& other);

/// The colour, or the lightest shade of it that can be read on white: one with a contrast of 5:1,
/// as smoothed strokes come out a little paler, and 4.5:1 are needed.
Rgb ReadableOnWhite(const Rgb& colour);

/// How much of its colour a text may lose on such a ground that it is paler than others, and can be
/// read as ReadableOnWhite() says. @return What it keeps, in per cent.
int PaleShare(const Rgb& text, const Rgb& ground);

/// A card with an icon and an edge in the colour of its texts, which are bold and wrapped.
class Banner : public Card, public layout::WrappedRow {
public:
    enum class Mood { Warning, Reassurance };

    explicit Banner(wxWindow* parent);

    /// Adds a warning below those that there are.
    /// @param other What may take its place later: there is room for either.
    wxStaticText* AddText(const wxString& text, const wxString& other = {});

    /// Replaces a text of AddText(), whose colour becomes that of the mood, as the edge does.
    void ChangeText(wxStaticText& label, const wxString& text, Mood mood);

    void WrapAt(int width) override;

private:
    struct Line {
        wxStaticText* label;
        wxString text;
        wxString other;
    };

    void ShowLine(const Line& line);

    wxFont m_font;
    Mood m_mood = Mood::Warning;
    wxStaticBitmap* m_icon;
    int m_textWidth;
    wxBoxSizer* m_rows;
    std::vector<Line> m_lines;
};

}  // namespace zeldlg
