#include "widgets/card.h"

#include <numbers>

namespace zeldlg {

namespace {

constexpr double kRadius = 8;
constexpr double kFrameOpacity = 0.25;

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

}  // namespace

Card::Card(wxWindow* parent) : wxWindow(parent, wxID_ANY) {
    gtk_widget_set_can_focus(GetHandle(), FALSE);
    g_signal_connect(GetHandle(), "draw", G_CALLBACK(&Card::OnDraw), nullptr);
}

// Before the labels draw themselves.
gboolean Card::OnDraw(GtkWidget* widget, cairo_t* cairo, gpointer) {
    constexpr double kHalfLine = 0.5;
    RoundedRectangle(cairo, kHalfLine, gtk_widget_get_allocated_width(widget),
                     gtk_widget_get_allocated_height(widget));
    cairo_set_source_rgb(cairo, 1, 1, 1);
    cairo_fill_preserve(cairo);
    cairo_set_line_width(cairo, 1);
    cairo_set_source_rgba(cairo, 0, 0, 0, kFrameOpacity);
    cairo_stroke(cairo);
    return FALSE;
}

}  // namespace zeldlg
