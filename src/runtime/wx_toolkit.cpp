#include "runtime/wx_toolkit.h"

#include <gdk/gdk.h>
#include <glib.h>
#include <wx/app.h>
#include <wx/debug.h>
#include <wx/image.h>
#include <wx/init.h>
#include <wx/log.h>

#include <csignal>
#include <cstdio>

#include "resources/catalogue_access.h"
#include "runtime/display_loss.h"
#include "runtime/dll_app.h"
#include "runtime/exit_guard.h"

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

// While it lives the toolkit creates our application object; afterwards the host's own.
class ApplicationFactory {
public:
    ApplicationFactory() { wxApp::SetInitializerFunction(CreateApplication); }
    ~ApplicationFactory() { wxApp::SetInitializerFunction(m_previous); }
    ApplicationFactory(const ApplicationFactory&) = delete;
    ApplicationFactory& operator=(const ApplicationFactory&) = delete;

private:
    wxAppInitializerFunction m_previous = wxApp::GetInitializerFunction();
};

// The toolkit's start sets SIGPIPE to be ignored, for the whole process.
class KeepPipeSignal {
public:
    KeepPipeSignal() { sigaction(SIGPIPE, nullptr, &m_disposition); }
    ~KeepPipeSignal() { sigaction(SIGPIPE, &m_disposition, nullptr); }
    KeepPipeSignal(const KeepPipeSignal&) = delete;
    KeepPipeSignal& operator=(const KeepPipeSignal&) = delete;

private:
    struct sigaction m_disposition {};
};

bool StartWx() {
    const KeepPipeSignal keepPipeSignal;
    const ApplicationFactory factory;
    const CatalogueWriter catalogueWriter;
    int argumentCount = 0;
    return wxEntryStart(argumentCount, static_cast<wxChar**>(nullptr));
}

void StopWx() {
    const CatalogueWriter catalogueWriter;
    wxEntryCleanup();
    // The windows are destroyed, but nothing sends that to the display any more.
    if (GdkDisplay* const display = gdk_display_get_default(); display != nullptr) {
        gdk_display_flush(display);
    }
}

}  // namespace

bool WxToolkit::Start(const std::function<void()>& leave, const std::function<void()>& park) {
    if (wxAppConsole::GetInstance() != nullptr || !Enter()) {
        return false;
    }
    AwaitGuiThreadAtExit(park);
    SendMessagesToStandardError();
    const bool started = StartWx();
    if (started) {
        WatchDisplay(leave);
        ParkGuiThreadAtExit();
    } else {
        wxImage::CleanUpHandlers();  // a failed start keeps them
        GiveMessagesBack();
        ForgetGuiThreadAtExit();
    }
    Leave();
    return started;
}

bool WxToolkit::Iterate() { return g_main_context_iteration(nullptr, FALSE) != FALSE; }

bool WxToolkit::Enter() { return g_main_context_acquire(nullptr) != FALSE; }

void WxToolkit::Leave() { g_main_context_release(nullptr); }

void WxToolkit::Stop() {
    AwaitGuiThreadAtExit();
    StopWx();
    ForgetDisplay();
    GiveMessagesBack();
    ForgetGuiThreadAtExit();
}

}  // namespace zeldlg
