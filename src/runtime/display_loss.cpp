#include "runtime/display_loss.h"

#include <X11/Xlib.h>
#include <gdk/gdkx.h>

#include <cstdio>

#include "runtime/life.h"

namespace zeldlg {

namespace {

// Written by one GUI thread after another; `leave` is read by it only.
const std::function<void()>* g_leave = nullptr;
XIOErrorHandler g_previous = nullptr;

int OnDisplayLost(Display* display) {
    if (ProcessLife().IsOwnThread()) {
        static_cast<void>(fprintf(stderr, "zeldlg: the connection to the display is lost\n"));
        // Xlib holds it around this call. Libraries that clean up when the process exits need it.
        XUnlockDisplay(display);
        (*g_leave)();
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

}  // namespace zeldlg
