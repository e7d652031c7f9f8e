// A white card, the same on every theme: the display of a device, or what a warning stands on.
#pragma once

#include <gtk/gtk.h>
#include <wx/colour.h>
#include <wx/window.h>

namespace zeldlg {

/// Holds labels only: there is nothing for the keyboard. Their colours are to be readable on white.
class Card : public wxWindow {
public:
    /// Pixels.
    static constexpr int kEdge = 4;

    explicit Card(wxWindow* parent);
    bool AcceptsFocus() const override { return false; }

    /// Has the card's frame in this colour, and a strong edge where its lines begin.
    void SetEdge(const wxColour& colour);

private:
    static gboolean OnDraw(GtkWidget* widget, cairo_t* cairo, const Card* card);

    wxColour m_edge;  // none to begin with
};

}  // namespace zeldlg
