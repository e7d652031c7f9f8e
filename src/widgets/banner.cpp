#include "widgets/banner.h"

#include <gtk/gtk.h>
#include <wx/dcclient.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include "resources/pictures.h"
#include "widgets/accessible.h"
#include "widgets/screen_fit.h"

namespace zeldlg {

namespace {

constexpr double kReadable = 5;

constexpr Rgb kWhite{255, 255, 255};

double Linear(uint8_t value) {
    const double share = value / 255.0;
    return share <= 0.04045 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
}

double Luminance(const Rgb& colour) {
    return 0.2126 * Linear(colour.red) + 0.7152 * Linear(colour.green) +
           0.0722 * Linear(colour.blue);
}

Rgb Shade(const Rgb& colour, int percent) {
    const auto part = [percent](uint8_t value) {
        return static_cast<uint8_t>(value * percent / 100);
    };
    return {part(colour.red), part(colour.green), part(colour.blue)};
}

}  // namespace

Rgb RgbOf(const wxColour& colour) { return {colour.Red(), colour.Green(), colour.Blue()}; }

double ContrastRatio(const Rgb& one, const Rgb& other) {
    const auto [darker, lighter] = std::minmax({Luminance(one), Luminance(other)});
    return (lighter + 0.05) / (darker + 0.05);
}

Rgb ReadableOnWhite(const Rgb& colour) {
    int percent = 100;
    while (ContrastRatio(Shade(colour, percent), kWhite) < kReadable) {
        --percent;
    }
    return Shade(colour, percent);
}

int PaleShare(const Rgb& text, const Rgb& ground) {
    constexpr int kPalest = 72;
    int percent = kPalest;
    const auto part = [&percent](uint8_t front, uint8_t back) {
        return static_cast<uint8_t>((front * percent + back * (100 - percent)) / 100);
    };
    const auto mixed = [&] {
        return Rgb{part(text.red, ground.red), part(text.green, ground.green),
                   part(text.blue, ground.blue)};
    };
    while (percent < 100 && ContrastRatio(mixed(), ground) < kReadable) {
        ++percent;
    }
    return percent;
}

namespace {

constexpr int kPadding = 10;
constexpr int kIconSize = 32;
constexpr int kIconGap = 12;
constexpr int kAround = 2 * kPadding + Card::kEdge + kIconSize + kIconGap;
constexpr float kFontScale = 1.1F;
// Warnings are broken later than other texts: most stay on one line.
constexpr double kWidthScale = 1.2;

wxColour ColourOf(Banner::Mood mood) {
    return mood == Banner::Mood::Warning ? wxColour(255, 0, 0) : wxColour(34, 139, 34);
}

wxColour DrawnColourOf(Banner::Mood mood) {
    const Rgb shade = ReadableOnWhite(RgbOf(ColourOf(mood)));
    return {shade.red, shade.green, shade.blue};
}

wxBitmapBundle IconOf(Banner::Mood mood) {
    return mood == Banner::Mood::Warning
               ? ThemeIcon("dialog-warning", kIconSize, DrawnColourOf(mood))
               : BundleOf(Picture::Done);
}

// The label itself has the plain colour; what is drawn of it is a shade that can be read.
void Draw(const wxStaticText& label, Banner::Mood mood) {
    const wxColour colour = DrawnColourOf(mood);
    PangoAttrList* const attributes = pango_attr_list_new();
    pango_attr_list_insert(attributes,
                           pango_attr_foreground_new(static_cast<guint16>(colour.Red() * 257),
                                                     static_cast<guint16>(colour.Green() * 257),
                                                     static_cast<guint16>(colour.Blue() * 257)));
    gtk_label_set_attributes(GTK_LABEL(label.GetHandle()), attributes);
    pango_attr_list_unref(attributes);
}

}  // namespace

Banner::Banner(wxWindow* parent)
    : Card(parent),
      m_font(parent->GetFont().Bold().Scaled(kFontScale)),
      m_icon(new wxStaticBitmap(this, wxID_ANY, IconOf(m_mood))),
      m_textWidth(static_cast<int>(kWidthScale * layout::TextWidth(*parent))),
      m_rows(new wxBoxSizer(wxVERTICAL)) {
    m_textWidth = std::min(m_textWidth, layout::RoomForLine(*parent) - kAround);
    MarkAsDecoration(*m_icon);
    auto* const row = new wxBoxSizer(wxHORIZONTAL);
    row->AddSpacer(kEdge);
    row->Add(m_icon, wxSizerFlags().Border(wxALL, kPadding));
    row->Add(m_rows, wxSizerFlags(1).CentreVertical().Border(wxTOP | wxBOTTOM, kPadding));
    row->AddSpacer(kIconGap);
    SetSizer(row);
    SetEdge(DrawnColourOf(m_mood));
}

wxStaticText* Banner::AddText(const wxString& text, const wxString& other) {
    auto* const label = new wxStaticText(this, wxID_ANY, wxEmptyString);
    label->SetFont(m_font);
    label->SetForegroundColour(ColourOf(m_mood));
    Draw(*label, m_mood);
    m_rows->Add(label, wxSizerFlags().Border(wxTOP, m_rows->IsEmpty() ? 0 : layout::kLineGap));
    m_lines.push_back({label, text, other});
    ShowLine(m_lines.back());
    return label;
}

void Banner::ChangeText(wxStaticText& label, const wxString& text, Mood mood) {
    Line& line = *std::find_if(m_lines.begin(), m_lines.end(),
                               [&label](const Line& each) { return each.label == &label; });
    if (text != line.text) {
        line.other = std::exchange(line.text, text);
    }
    label.SetForegroundColour(ColourOf(mood));
    Draw(label, mood);
    label.SetLabelText(layout::WrapText(label, m_font, text, m_textWidth));
    SetAccessibleName(label, text);
    if (mood != m_mood) {
        m_mood = mood;
        m_icon->SetBitmap(IconOf(mood));
        SetEdge(DrawnColourOf(mood));
    }
}

void Banner::WrapAt(int width) {
    if (m_textWidth != width - kAround) {
        m_textWidth = width - kAround;
        for (const Line& line : m_lines) {
            ShowLine(line);
        }
        GetSizer()->Layout();
    }
}

void Banner::ShowLine(const Line& line) {
    wxClientDC context(this);
    context.SetFont(m_font);
    wxSize room;
    for (const wxString& each : {line.other, line.text}) {
        const wxString wrapped = layout::WrapText(*line.label, m_font, each, m_textWidth);
        room.IncTo(context.GetMultiLineTextExtent(wrapped));
        line.label->SetLabelText(wrapped);
    }
    SetAccessibleName(*line.label, line.text);
    line.label->SetMinSize(room);
    InvalidateBestSize();
}

}  // namespace zeldlg
