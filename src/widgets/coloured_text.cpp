#include "widgets/coloured_text.h"

#include <gtk/gtk.h>
#include <wx/artprov.h>
#include <wx/statbmp.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "widgets/accessible.h"

namespace zeldlg {

namespace {

constexpr double kReadable = 4.5;

constexpr Rgb kWhite{255, 255, 255};
constexpr Rgb kBlack{0, 0, 0};

double Linear(uint8_t value) {
    const double share = value / 255.0;
    return share <= 0.04045 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
}

double Luminance(const Rgb& colour) {
    return 0.2126 * Linear(colour.red) + 0.7152 * Linear(colour.green) +
           0.0722 * Linear(colour.blue);
}

bool AllReadable(std::span<const Rgb> colours, const Rgb& background) {
    return std::all_of(colours.begin(), colours.end(), [&background](const Rgb& colour) {
        return ContrastRatio(colour, background) >= kReadable;
    });
}

}  // namespace

double ContrastRatio(const Rgb& one, const Rgb& other) {
    const auto [darker, lighter] = std::minmax({Luminance(one), Luminance(other)});
    return (lighter + 0.05) / (darker + 0.05);
}

TextLook LookFor(std::span<const Rgb> colours, const Rgb& themeBackground) {
    if (AllReadable(colours, themeBackground)) {
        return {};
    }
    const bool isLight =
        ContrastRatio(themeBackground, kWhite) < ContrastRatio(themeBackground, kBlack);
    const Rgb background = isLight ? kWhite : kBlack;
    return {.background = background, .large = !AllReadable(colours, background)};
}

namespace {

constexpr int kPadding = 10;
constexpr int kIconSize = 24;
constexpr int kIconGap = 10;
constexpr int kLargePointSize = 14;

Rgb RgbOf(const wxColour& colour) { return {colour.Red(), colour.Green(), colour.Blue()}; }

wxFont FontFor(const wxFont& font, bool large) {
    wxFont bold = font.Bold();
    if (large) {
        bold.SetPointSize(std::max(bold.GetPointSize(), kLargePointSize));
    }
    return bold;
}

}  // namespace

Surface::Surface(wxWindow* parent) : wxWindow(parent, wxID_ANY) {
    gtk_widget_set_can_focus(GetHandle(), FALSE);
}

ColouredTexts::ColouredTexts(wxWindow* parent, std::initializer_list<wxColour> colours, Icon icon,
                             int width)
    : Surface(parent), m_textWidth(width), m_lines(new wxBoxSizer(wxVERTICAL)) {
    std::vector<Rgb> shown;
    std::transform(colours.begin(), colours.end(), std::back_inserter(shown), RgbOf);
    const TextLook look = LookFor(shown, RgbOf(parent->GetBackgroundColour()));
    SetFont(FontFor(parent->GetFont(), look.large));
    auto* const row = new wxBoxSizer(wxHORIZONTAL);
    if (icon == Icon::Warning) {
        auto* const picture = new wxStaticBitmap(
            this, wxID_ANY,
            wxArtProvider::GetBitmapBundle(wxART_WARNING, wxART_OTHER, {kIconSize, kIconSize}));
        MarkAsDecoration(*picture);
        row->Add(picture, wxSizerFlags().Border(wxRIGHT, kIconGap));
        m_textWidth -= kIconSize + kIconGap;
    }
    row->Add(m_lines, wxSizerFlags(1).CentreVertical());
    auto* const margin = new wxBoxSizer(wxVERTICAL);
    int padding = 0;
    if (look.background) {
        SetBackgroundColour({look.background->red, look.background->green, look.background->blue});
        padding = kPadding;
        m_textWidth -= 2 * padding;
    }
    margin->Add(row, wxSizerFlags(1).Expand().Border(wxALL, padding));
    SetSizer(margin);
}

wxStaticText* ColouredTexts::AddText(const wxString& text, const wxColour& colour) {
    auto* const label = new wxStaticText(this, wxID_ANY, wxEmptyString);
    label->SetFont(GetFont());
    ChangeText(*label, text, colour);
    layout::ReserveRoom(*label);
    m_lines->Add(label, wxSizerFlags().Border(wxTOP, m_lines->IsEmpty() ? 0 : layout::kLineGap));
    return label;
}

void ColouredTexts::ChangeText(wxStaticText& label, const wxString& text, const wxColour& colour) {
    label.SetForegroundColour(colour);
    layout::ShowWrapped(label, text, m_textWidth);
}

}  // namespace zeldlg
