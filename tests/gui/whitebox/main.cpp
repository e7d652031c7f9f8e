// Tests of windows from the inside: the toolkit runs on the main thread, without a main loop, and
// each test dispatches events until what it waits for has happened. Needs a display of its own
// with a window manager.

#include <glib.h>
#include <gtest/gtest.h>
#include <wx/image.h>
#include <wx/init.h>
#include <wx/log.h>

#include <cstdio>

#include "test_app.h"

namespace {

// An assertion of the toolkit is a failure of the test that caused it, not a window.
void FailOnAssert(const wxString& file, int line, const wxString& function,
                  const wxString& condition, const wxString& message) {
    ADD_FAILURE() << file << ':' << line << ": " << function << ": " << condition << ' ' << message;
}

}  // namespace

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    // The toolkit owns the target. NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks)
    delete wxLog::SetActiveTarget(new wxLogStderr);
    wxApp::SetInstance(new zeldlg::test::TestApp);
    if (!wxEntryStart(argc, argv)) {
        fputs("The toolkit did not start: is there a display?\n", stderr);
        return 1;
    }
    wxSetAssertHandler(FailOnAssert);
    // A signal or a property that there is not is a fault: GObject only says so.
    constexpr int kFatal = G_LOG_FATAL_MASK | G_LOG_LEVEL_CRITICAL | G_LOG_LEVEL_WARNING;
    g_log_set_fatal_mask("GLib-GObject", static_cast<GLogLevelFlags>(kFatal));
    wxImage::AddHandler(new wxPNGHandler);  // as the library's application object does
    const int result = RUN_ALL_TESTS();
    wxEntryCleanup();
    return result;
}
