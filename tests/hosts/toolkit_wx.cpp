#include <wx/app.h>
#include <wx/dcclient.h>
#include <wx/frame.h>
#include <wx/init.h>
#include <wx/log.h>
#include <wx/panel.h>
#include <wx/sizer.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>
#include <wx/timer.h>

#include "toolkit.h"

namespace testhost {

namespace {

class HostWindow : public wxFrame {
public:
    HostWindow()
        : wxFrame(nullptr, wxID_ANY, kWindowTitle, wxDefaultPosition,
                  wxSize(kWindowWidth, kWindowHeight)) {
        auto* const area = new wxPanel(this);
        area->SetBackgroundStyle(wxBG_STYLE_PAINT);
        area->Bind(wxEVT_PAINT, [area](wxPaintEvent&) {
            wxPaintDC dc(area);
            const auto red = static_cast<unsigned char>(NextFrame());
            dc.SetBackground(wxBrush(wxColour(red, 127, 127)));
            dc.Clear();
        });
        auto* const rows = new wxBoxSizer(wxVERTICAL);
        rows->Add(new wxStaticText(this, wxID_ANY, kWindowText), 0, wxALL, kMargin);
        rows->Add(new wxTextCtrl(this, wxID_ANY), 0, wxEXPAND | wxALL, kMargin);
        rows->Add(area, 1, wxEXPAND);
        SetSizer(rows);
        m_frames.Bind(wxEVT_TIMER, [area](wxTimerEvent&) { area->Refresh(); });
        m_frames.Start(kFrameMilliseconds);
    }

private:
    wxTimer m_frames;
};

class HostApp : public wxApp {
public:
    explicit HostApp(const std::function<void()>& running) : m_running(running) {}
    bool OnInit() override {
        m_window = new HostWindow;
        CallAfter(m_running);
        return m_window->Show();
    }
    void Close() { m_window->Close(true); }

private:
    std::function<void()> m_running;
    wxFrame* m_window = nullptr;
};

}  // namespace

bool RunToolkit(const std::function<void()>& running) {
    wxApp::SetInstance(new HostApp(running));
    int count = 0;
    if (!wxEntryStart(count, static_cast<wxChar**>(nullptr))) {
        return false;
    }
    delete wxLog::SetActiveTarget(new wxLogStderr);
    const bool initialised = wxTheApp->CallOnInit();
    if (initialised) {
        wxTheApp->OnRun();
        wxTheApp->OnExit();
    }
    wxEntryCleanup();
    return initialised;
}

void QuitToolkit() {
    wxTheApp->CallAfter([] { static_cast<HostApp*>(wxTheApp)->Close(); });
}

}  // namespace testhost
