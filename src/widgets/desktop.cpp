#include "widgets/desktop.h"

#include <gdk/gdkx.h>
#include <gtk/gtk.h>
#include <wx/display.h>
#include <wx/utils.h>

#include <algorithm>
#include <utility>

namespace zeldlg {

namespace {

// The display's own connection; null on Wayland.
Display* XDisplay() {
    GdkDisplay* const display = gdk_display_get_default();
    return GDK_IS_X11_DISPLAY(display) ? gdk_x11_display_get_xdisplay(display) : nullptr;
}

bool HasWindowManager() {
    return gdk_x11_screen_supports_net_wm_hint(
               gdk_screen_get_default(), gdk_atom_intern_static_string("_NET_ACTIVE_WINDOW")) !=
           FALSE;
}

Window FocusedWindow(Display* display) {
    Window focus = None;
    int revert = 0;
    XGetInputFocus(display, &focus, &revert);
    return focus;
}

// With the server's time of now. The toolkit's own is when the user last typed into this process,
// and window managers leave the keyboard to the program that was typed into later.
void Present(GtkWindow* window) {
    const guint32 now = gdk_x11_get_server_time(gtk_widget_get_window(GTK_WIDGET(window)));
    gtk_window_present_with_time(window, now);
}

gboolean OnMapped(GtkWidget* window, GdkEvent*, gpointer) {
    g_signal_handlers_disconnect_by_func(window, gpointer(OnMapped), nullptr);
    // Not before the window manager has given the keyboard to whom it wants to. Once: a user who
    // goes elsewhere may.
    const auto present = +[](gpointer mapped) -> gboolean {
        if (gtk_widget_get_mapped(GTK_WIDGET(mapped)) != FALSE) {
            Present(GTK_WINDOW(mapped));
        }
        return G_SOURCE_REMOVE;
    };
    g_idle_add_full(G_PRIORITY_DEFAULT_IDLE, present, g_object_ref(window), g_object_unref);
    return FALSE;
}

}  // namespace

int ModalDialogs::Enter(wxDialog* dialog) {
    GtkWidget* const window = dialog->GetHandle();
    // What is shown already is modeless. It is no parent of the dialog, and would cover a question
    // that the user has to answer.
    if (std::any_of(wxTopLevelWindows.begin(), wxTopLevelWindows.end(),
                    [](const wxWindow* each) { return each->IsShown(); })) {
        gtk_window_set_keep_above(GTK_WINDOW(window), TRUE);
    }
    Display* const display = XDisplay();
    if (display == nullptr) {
        return wxID_NONE;
    }
    m_focusBefore = HasWindowManager() ? None : FocusedWindow(display);
    g_signal_connect(window, "map-event", G_CALLBACK(OnMapped), nullptr);
    return wxID_NONE;
}

// The server itself gives the keyboard to the window around a window that goes: the root.
void ModalDialogs::Exit(wxDialog*) {
    const Window before = std::exchange(m_focusBefore, None);
    if (before == None) {
        return;
    }
    GdkDisplay* const display = gdk_display_get_default();
    if (FocusedWindow(XDisplay()) == gdk_x11_get_default_root_xwindow()) {
        gdk_x11_display_error_trap_push(display);  // it may be gone
        XSetInputFocus(XDisplay(), before, RevertToParent, CurrentTime);
        gdk_x11_display_error_trap_pop_ignored(display);
    }
}

wxRect RoomAtPointer() {
    const int monitor = wxDisplay::GetFromPoint(wxGetMousePosition());
    return wxDisplay(monitor != wxNOT_FOUND ? static_cast<unsigned>(monitor) : 0U).GetClientArea();
}

// The toolkit takes the first monitor for a window that is not on any yet.
void CentreAtPointer(wxTopLevelWindow& window) {
    window.Move(window.GetRect().CentreIn(RoomAtPointer()).GetPosition());
}

void SetWindowIcon(wxTopLevelWindow& window, const char* name) {
    // To find and draw it takes as long as half a dialog: nobody waits for that with the first
    // pictures.
    const auto set = +[](GtkWidget* native, GdkFrameClock* clock, gpointer icon) -> gboolean {
        constexpr int kFirstPictures = 2;
        if (gdk_frame_clock_get_frame_counter(clock) < kFirstPictures) {
            return G_SOURCE_CONTINUE;
        }
        gtk_window_set_icon_name(GTK_WINDOW(native), static_cast<const char*>(icon));
        return G_SOURCE_REMOVE;
    };
    gtk_widget_add_tick_callback(window.GetHandle(), set, const_cast<char*>(name), nullptr);
}

void LeaveKeyboard(wxTopLevelWindow& window) {
    GtkWindow* const native = GTK_WINDOW(window.GetHandle());
    if (XDisplay() != nullptr) {
        gtk_window_set_focus_on_map(native, FALSE);
    }
    // GTK gives it to the first control when it shows a window.
    const auto take = +[](GtkWindow* shown) { gtk_window_set_focus(shown, nullptr); };
    g_signal_connect(native, "show", G_CALLBACK(take), nullptr);
}

}  // namespace zeldlg
