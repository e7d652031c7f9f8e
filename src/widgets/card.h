// A white card like the display of a device: it looks the same on every theme.
#pragma once

#include <gtk/gtk.h>
#include <wx/window.h>

namespace zeldlg {

/// Holds labels only: there is nothing for the keyboard. Their colours are to be readable on white.
class Card : public wxWindow {
public:
    explicit Card(wxWindow* parent);
    bool AcceptsFocus() const override { return false; }

private:
    static gboolean OnDraw(GtkWidget* widget, cairo_t* cairo, gpointer);
};

}  // namespace zeldlg
