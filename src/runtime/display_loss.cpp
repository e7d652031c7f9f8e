#include "runtime/display_loss.h"

#include <X11/Xlib.h>
#include <gdk/gdkwayland.h>
#include <gdk/gdkx.h>
#include <poll.h>
#include <wayland-client-core.h>

#include <cstdio>

#include "runtime/life.h"

namespace zeldlg {

namespace {

// Written by one GUI thread after another; `leave` is read by it only.
const std::function<void()>* g_leave = nullptr;
XIOErrorHandler g_previous = nullptr;

void Leave() {
    static_cast<void>(fprintf(stderr, "zeldlg: the connection to the display is lost\n"));
    (*g_leave)();
}

int OnDisplayLost(Display* display) {
    if (ProcessLife().IsOwnThread()) {
        // Xlib holds it around this call. Libraries that clean up when the process exits need it.
        XUnlockDisplay(display);
        Leave();
    }
    return g_previous != nullptr ? g_previous(display) : 0;
}

}  // namespace

void WatchDisplay(const std::function<void()>& leave) {
    g_leave = &leave;
    // Its class sets a handler that ends the process, just before it first connects. Here, too.
    g_type_class_ref(GDK_TYPE_X11_DISPLAY);
    XIOErrorHandler const previous = XSetIOErrorHandler(OnDisplayLost);
    if (previous != OnDisplayLost) {
        g_previous = previous;
    }
}

void LookAfterDisplay() {
    GdkDisplay* const display = gdk_display_get_default();
    if (!GDK_IS_WAYLAND_DISPLAY(display) || !ProcessLife().IsOwnThread()) {
        return;
    }
    pollfd connection{wl_display_get_fd(gdk_wayland_display_get_wl_display(display)), 0, 0};
    if (poll(&connection, 1, 0) > 0) {
        Leave();
    }
}

}  // namespace zeldlg
