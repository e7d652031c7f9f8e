#include "test_app.h"

#include <gtk/gtk.h>
#include <wx/tooltip.h>

#include <utility>

#include "support/time_limit.h"

namespace {

// Written by what stands in for the toolkit's functions below, on the one thread of the tests.
int g_bellCount = 0;
std::vector<unsigned> g_timerIntervals;
long g_toolTipDelay = 0;

}  // namespace

// Stands in for GDK's own, which is what wxBell() calls.
extern "C" __attribute__((visibility("default"))) void gdk_beep() { ++g_bellCount; }

// What the toolkit starts its timers with.
extern "C" __attribute__((visibility("default"))) guint g_timeout_add(guint milliseconds,
                                                                      GSourceFunc act,
                                                                      gpointer data) {
    g_timerIntervals.push_back(milliseconds);
    return g_timeout_add_full(G_PRIORITY_DEFAULT, milliseconds, act, data, nullptr);
}

// The toolkit's own does nothing with GTK 3, nor can it be asked what it was told.
void wxToolTip::SetDelay(long milliseconds) { g_toolTipDelay = milliseconds; }

namespace zeldlg::test {

namespace {

// Wakes a blocking turn of the main loop now and then, so that a condition is looked at.
class Ticker {
public:
    Ticker() : m_id(g_timeout_add(kMilliseconds, &Tick, nullptr)) {}
    ~Ticker() { g_source_remove(m_id); }
    Ticker(const Ticker&) = delete;
    Ticker& operator=(const Ticker&) = delete;

private:
    static constexpr guint kMilliseconds = 10;
    static gboolean Tick(gpointer) { return G_SOURCE_CONTINUE; }

    guint m_id;
};

}  // namespace

int TestApp::FilterEvent(wxEvent& event) {
    ++m_seen[event.GetEventType()];
    return Event_Skip;
}

int TestApp::Seen(wxEventType type) const {
    const auto found = m_seen.find(type);
    return found == m_seen.end() ? 0 : found->second;
}

TestApp& GetTestApp() { return dynamic_cast<TestApp&>(*wxTheApp); }

bool PumpUntil(const std::function<bool()>& condition) {
    const Ticker ticker;
    const gint64 end = g_get_monotonic_time() + gint64{kLongMs} * 1000;
    while (!condition()) {
        if (g_get_monotonic_time() > end) {
            return false;
        }
        g_main_context_iteration(nullptr, TRUE);
        wxTheApp->ProcessPendingEvents();
    }
    return true;
}

int TakeBellCount() { return std::exchange(g_bellCount, 0); }

std::vector<unsigned> TakeTimerIntervals() { return std::exchange(g_timerIntervals, {}); }

long TakeToolTipDelay() { return std::exchange(g_toolTipDelay, 0); }

}  // namespace zeldlg::test
