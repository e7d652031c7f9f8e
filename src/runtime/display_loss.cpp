#include "runtime/display_loss.h"

#include <X11/Xlib.h>
#include <gdk/gdkx.h>
#include <pthread.h>

#include <atomic>
#include <cstdio>
#include <utility>

namespace zeldlg {

namespace {

// Written on the GUI thread; read by any thread of the process that loses a display.
struct Watch {
    std::atomic<bool> active{false};
    pthread_t guiThread{};
    LeaveToolkit leave;
    XIOErrorHandler previous = nullptr;
};

// Never destroyed: the GUI thread may still be running while the process exits.
Watch& TheWatch() {
    static auto* const watch = new Watch;
    return *watch;
}

int OnDisplayLost(Display* display) {
    Watch& watch = TheWatch();
    if (watch.active && pthread_equal(pthread_self(), watch.guiThread) != 0) {
        watch.active = false;
        static_cast<void>(fprintf(stderr, "zeldlg: the connection to the display is lost\n"));
        // Xlib holds it around this call. Libraries that clean up when the process exits need it.
        XUnlockDisplay(display);
        watch.leave();
    }
    return watch.previous != nullptr ? watch.previous(display) : 0;
}

}  // namespace

void WatchDisplay(LeaveToolkit leave) {
    GdkDisplay* const display = gdk_display_get_default();
    if (display == nullptr || !GDK_IS_X11_DISPLAY(display)) {
        return;
    }
    Watch& watch = TheWatch();
    watch.guiThread = pthread_self();
    watch.leave = std::move(leave);
    watch.active = true;
    XIOErrorHandler const previous = XSetIOErrorHandler(OnDisplayLost);
    if (previous != OnDisplayLost) {
        watch.previous = previous;
    }
}

void ForgetDisplay() {
    Watch& watch = TheWatch();
    watch.active = false;
    watch.leave = nullptr;
}

}  // namespace zeldlg
