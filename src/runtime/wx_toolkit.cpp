#include "runtime/wx_toolkit.h"

#include <X11/Xlib.h>
#include <gdk/gdk.h>
#include <gdk/gdkwayland.h>
#include <gdk/gdkx.h>
#include <poll.h>
#include <wayland-client-core.h>
#include <wx/app.h>
#include <wx/debug.h>
#include <wx/image.h>
#include <wx/init.h>
#include <wx/log.h>
#include <wx/translation.h>

#include <atomic>
#include <csignal>
#include <cstdio>
#include <mutex>

#include "platform/scope_exit.h"
#include "platform/thread.h"
#include "resources/catalogue.h"
#include "runtime/dll_app.h"
#include "runtime/life.h"
#include "runtime/other_toolkit.h"

namespace zeldlg {

namespace {

wxAppConsole* CreateApplication() {
    wxAppConsoleBase::CheckBuildOptions(WX_BUILD_OPTIONS_SIGNATURE, "wxdll");
    wxInitAllImageHandlers();
    return new CDllApp;
}

void ReportAssertion(const wxString& file, int line, const wxString& function,
                     const wxString& condition, const wxString& message) {
    static_cast<void>(fprintf(stderr, "zeldlg: Assertion '%s' failed at %s:%d in %s(): %s\n",
                              static_cast<const char*>(condition.utf8_str()),
                              static_cast<const char*>(file.utf8_str()), line,
                              static_cast<const char*>(function.utf8_str()),
                              static_cast<const char*>(message.utf8_str())));
}

// The toolkit's messages go to standard error. Its own log would collect them for a window,
// which aborts the process where there is no display, and blocks the next start where there is.
void SendMessagesToStandardError() {
    // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks): the toolkit owns the new target
    delete wxLog::SetActiveTarget(new wxLogStderr);
    wxSetAssertHandler(ReportAssertion);
}

void GiveMessagesBack() {
    wxSetDefaultAssertHandler();
    delete wxLog::SetActiveTarget(nullptr);
}

// While it runs the toolkit creates our application object; afterwards the host's own. It sets
// SIGPIPE to be ignored, for the whole process.
bool StartWx() {
    struct sigaction pipe = {};
    sigaction(SIGPIPE, nullptr, &pipe);
    const platform::ScopeExit restorePipe([&pipe] { sigaction(SIGPIPE, &pipe, nullptr); });
    const wxAppInitializerFunction previous = wxApp::GetInitializerFunction();
    wxApp::SetInitializerFunction(CreateApplication);
    const platform::ScopeExit restoreFactory(
        [previous] { wxApp::SetInitializerFunction(previous); });
    int argumentCount = 0;
    return wxEntryStart(argumentCount, static_cast<wxChar**>(nullptr));
}

void StopWx() {
    {
        const CatalogueWriter catalogueWriter;
        wxTranslations::Set(nullptr);
    }
    wxEntryCleanup();
    // The windows are destroyed, but nothing sends that to the display any more.
    if (GdkDisplay* const display = gdk_display_get_default(); display != nullptr) {
        gdk_display_flush(display);
    }
}

// What becomes of the thread when the X server or the Wayland compositor goes away. By itself the
// toolkit ends the whole process then, and the host with it.

// Written by one GUI thread after another; `leave` is read by it only.
const std::function<void()>* g_leave = nullptr;
XIOErrorHandler g_previous = nullptr;

void TellLoss() {
    ProcessLife().ParkAtExit();
    static_cast<void>(fprintf(stderr, "zeldlg: the connection to the display is lost\n"));
    (*g_leave)();
}

int OnDisplayLost(Display* display) {
    if (ProcessLife().IsOwnThread()) {
        // Xlib holds it around this call. Libraries that clean up when the process exits need it.
        XUnlockDisplay(display);
        TellLoss();
    }
    return g_previous != nullptr ? g_previous(display) : 0;
}

// Before the toolkit is started: calls `leave` on this thread when its connection to the display
// breaks. For connections of other threads nothing changes.
void WatchDisplay(const std::function<void()>& leave) {
    g_leave = &leave;
    // Its class sets a handler that ends the process, just before it first connects. Here, too.
    g_type_class_ref(GDK_TYPE_X11_DISPLAY);
    XIOErrorHandler const previous = XSetIOErrorHandler(OnDisplayLost);
    if (previous != OnDisplayLost) {
        g_previous = previous;
    }
}

// Before the toolkit writes to its display or reads from it: nothing tells of a compositor that is
// gone, and the toolkit finds out and ends the process.
void LookAfterDisplay() {
    GdkDisplay* const display = gdk_display_get_default();
    if (!GDK_IS_WAYLAND_DISPLAY(display) || !ProcessLife().IsOwnThread()) {
        return;
    }
    pollfd connection{wl_display_get_fd(gdk_wayland_display_get_wl_display(display)), 0, 0};
    if (poll(&connection, 1, 0) > 0) {
        TellLoss();
    }
}

// GUI thread only: it runs the toolkit's events outside a request.
bool g_iterates = false;

// Before each iteration of the main context, also in a dialog's own loop. A host that runs the main
// context itself gets here too: its thread goes on.
gboolean BeforeIteration(GSource*, gint* timeout) {
    *timeout = -1;
    ProcessLife().ParkAtExit();
    if (ProcessLife().IsOwnThread() && !g_iterates) {
        StayFirstAtExit();
    }
    LookAfterDisplay();
    return FALSE;
}

// After the wait for events, before any are read.
gboolean AfterWait(GSource*) {
    LookAfterDisplay();
    return FALSE;
}

GSourceFuncs g_watch{BeforeIteration, AfterWait, nullptr, nullptr, nullptr, nullptr};

}  // namespace

namespace {

// The display that the toolkit has opened for us stays open when it ends.
std::atomic<bool> g_displayIsOurs{false};

// Before the type is there nothing has opened a display, and asking for one would make it.
GdkDisplay* OpenDisplay() {
    return g_type_from_name("GdkDisplay") != 0 ? gdk_display_get_default() : nullptr;
}

// To look is to acquire: two of our threads that look at once are not to see each other.
std::mutex g_looking;

// A loop of the host's leaves the context for an instant between two iterations.
constexpr int kLooks = 3;
constexpr uint32_t kBetweenLooksMs = 1;

bool IsContextTaken() {
    for (int look = 0; look < kLooks; ++look) {
        if (look != 0) {
            platform::SleepMilliseconds(kBetweenLooksMs);
        }
        const std::lock_guard lock(g_looking);
        if (g_main_context_acquire(nullptr) == FALSE) {
            return true;
        }
        g_main_context_release(nullptr);
    }
    return false;
}

bool AcquireContext() {
    const std::lock_guard lock(g_looking);
    return g_main_context_acquire(nullptr) != FALSE;
}

}  // namespace

bool WxToolkit::IsTaken() {
    // First: GTK 3 is not to be asked for its display where there is another GTK.
    return HasOtherToolkit() || wxAppConsole::GetInstance() != nullptr ||
           (OpenDisplay() != nullptr && !g_displayIsOurs) ||
           g_main_context_is_owner(nullptr) != FALSE ||  // the caller's loop
           IsContextTaken();
}

void WxToolkit::SourceDestroyer::operator()(GSource* source) const {
    g_source_destroy(source);
    g_source_unref(source);
}

bool WxToolkit::Start(const std::function<void()>& leave) {
    if (wxAppConsole::GetInstance() != nullptr || !Enter()) {
        return false;
    }
    const platform::ScopeExit release([this] { Leave(); });
    WatchDisplay(leave);
    SendMessagesToStandardError();
    const bool isFirst = OpenDisplay() == nullptr;
    bool started = false;
    const platform::ScopeExit cleanUp([&started] {
        if (!started) {
            wxImage::CleanUpHandlers();
            GiveMessagesBack();
        }
    });
    started = StartWx();
    if (isFirst && OpenDisplay() != nullptr) {
        g_displayIsOurs = true;
    }
    if (started) {
        m_watch.reset(g_source_new(&g_watch, sizeof(GSource)));
        g_source_set_priority(m_watch.get(), G_PRIORITY_HIGH);
        g_source_attach(m_watch.get(), nullptr);
    }
    return started;
}

bool WxToolkit::Iterate() {
    if (!Enter()) {
        return false;
    }
    g_iterates = true;
    const bool dispatched = g_main_context_iteration(nullptr, FALSE) != FALSE;
    g_iterates = false;
    Leave();
    return dispatched;
}

// Where another loop was seen, an instant in which it has left the context is not its end.
bool WxToolkit::Enter() {
    m_sawOtherLoop = m_sawOtherLoop && IsContextTaken();
    m_sawOtherLoop = m_sawOtherLoop || !AcquireContext();
    return !m_sawOtherLoop;
}

void WxToolkit::Leave() { g_main_context_release(nullptr); }

void WxToolkit::Stop() {
    m_watch.reset();
    StopWx();
    GiveMessagesBack();
}

}  // namespace zeldlg
