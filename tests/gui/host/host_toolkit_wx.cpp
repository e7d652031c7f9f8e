#include <wx/app.h>
#include <wx/frame.h>
#include <wx/init.h>
#include <wx/log.h>

#include <future>
#include <thread>

#include "arguments.h"
#include "host_toolkit.h"

namespace testhost {

namespace {

class HostApp : public wxApp {
public:
    bool OnInit() override {
        m_frame = new wxFrame(nullptr, wxID_ANY, "Host window");
        return m_frame->Show();
    }
    void Close() { m_frame->Close(true); }

private:
    wxFrame* m_frame = nullptr;
};

std::thread* g_thread = nullptr;  // the command thread's, null while no toolkit runs

void RunToolkit(std::promise<bool>& started) {
    wxApp::SetInstance(new HostApp);
    int count = 0;
    if (!wxEntryStart(count, static_cast<wxChar**>(nullptr))) {
        started.set_value(false);
        return;
    }
    delete wxLog::SetActiveTarget(new wxLogStderr);
    const bool initialised = wxTheApp->CallOnInit();
    started.set_value(initialised);
    if (initialised) {
        wxTheApp->OnRun();
        wxTheApp->OnExit();
    }
    wxEntryCleanup();
}

}  // namespace

bool StartToolkit() {
    if (g_thread != nullptr) {
        throw ProtocolError("the toolkit runs already");
    }
    std::promise<bool> started;
    std::future<bool> result = started.get_future();
    g_thread = new std::thread([&started] { RunToolkit(started); });
    const bool running = result.get();
    if (!running) {
        g_thread->join();
        delete g_thread;
        g_thread = nullptr;
    }
    return running;
}

void StopToolkit() {
    if (g_thread == nullptr) {
        throw ProtocolError("no toolkit runs");
    }
    wxTheApp->CallAfter([] { static_cast<HostApp*>(wxTheApp)->Close(); });
    g_thread->join();
    delete g_thread;
    g_thread = nullptr;
}

}  // namespace testhost
