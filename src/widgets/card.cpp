#include "widgets/card.h"

#include <numbers>

namespace zeldlg {

namespace {

constexpr double kRadius = 6;
constexpr double kFrameOpacity = 0.25;
constexpr double kColouredFrameOpacity = 0.45;

void RoundedRectangle(cairo_t* cairo, double inset, double width, double height) {
    constexpr double kQuarter = std::numbers::pi / 2;
    const double near = inset + kRadius;
    cairo_new_path(cairo);
    cairo_arc(cairo, near, near, kRadius, 2 * kQuarter, 3 * kQuarter);
    cairo_arc(cairo, width - near, near, kRadius, 3 * kQuarter, 0);
    cairo_arc(cairo, width - near, height - near, kRadius, 0, kQuarter);
    cairo_arc(cairo, near, height - near, kRadius, kQuarter, 2 * kQuarter);
    cairo_close_path(cairo);
}

void SetSource(cairo_t* cairo, const wxColour& colour, double opacity) {
    cairo_set_source_rgba(cairo, colour.Red() / 255.0, colour.Green() / 255.0,
                          colour.Blue() / 255.0, opacity);
}

}  // namespace

Card::Card(wxWindow* parent) : wxWindow(parent, wxID_ANY) {
    gtk_widget_set_can_focus(GetHandle(), FALSE);
    g_signal_connect(GetHandle(), "draw", G_CALLBACK(&Card::OnDraw), this);
}

void Card::SetEdge(const wxColour& colour) {
    m_edge = colour;
    Refresh();
}

// Before what it holds draws itself.
gboolean Card::OnDraw(GtkWidget* widget, cairo_t* cairo, const Card* card) {
    const double width = gtk_widget_get_allocated_width(widget);
    const double height = gtk_widget_get_allocated_height(widget);
    const bool hasEdge = card->m_edge.IsOk();
    cairo_save(cairo);
    RoundedRectangle(cairo, 0, width, height);
    cairo_clip(cairo);
    SetSource(cairo, *wxWHITE, 1);
    cairo_paint(cairo);
    if (hasEdge) {
        SetSource(cairo, card->m_edge, 1);
        const bool fromRight = card->GetLayoutDirection() == wxLayout_RightToLeft;
        cairo_rectangle(cairo, fromRight ? width - kEdge : 0, 0, kEdge, height);
        cairo_fill(cairo);
    }
    cairo_restore(cairo);
    constexpr double kHalfLine = 0.5;
    RoundedRectangle(cairo, kHalfLine, width, height);
    cairo_set_line_width(cairo, 1);
    SetSource(cairo, hasEdge ? card->m_edge : *wxBLACK,
              hasEdge ? kColouredFrameOpacity : kFrameOpacity);
    cairo_stroke(cairo);
    return FALSE;
}

}  // namespace zeldlg
