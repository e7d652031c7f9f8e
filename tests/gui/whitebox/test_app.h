// The application that the white-box tests run in: the toolkit started without a main loop, a
// record of the events it dispatched, a bell that counts, and waiting for a condition.
#pragma once

#include <wx/app.h>
#include <wx/event.h>

#include <functional>
#include <map>
#include <vector>

namespace zeldlg::test {

class TestApp : public wxApp {
public:
    bool OnInit() override { return true; }
    int FilterEvent(wxEvent& event) override;
    wxLayoutDirection GetLayoutDirection() const override { return direction; }

    /// How many events of this type went to any window, handled or not.
    int Seen(wxEventType type) const;

    wxLayoutDirection direction = wxLayout_Default;

private:
    std::map<wxEventType, int> m_seen;
};

TestApp& GetTestApp();

/// Dispatches events until `condition` holds. False when it does not within kLongMs.
bool PumpUntil(const std::function<bool()>& condition);

/// How often the bell rang since the last call. The bell makes no sound here.
int TakeBellCount();

/// In milliseconds, of the timers that were started since the last call.
std::vector<unsigned> TakeTimerIntervals();

/// In milliseconds; the last that was asked for since the last call, 0 when none was.
long TakeToolTipDelay();

}  // namespace zeldlg::test
