// What the selection dialogs share, without a window: texts that are put together from parts, and
// the count-down after which a default is confirmed.
#pragma once

#include <wx/string.h>

#include <cstdint>

namespace zeldlg {

/// "name (detail)", each without the white space behind it.
wxString TokenRowText(const wxString& name, const wxString& detail);

/// A caption before its value: "Valid From: ".
/// @param caption Translated.
wxString CaptionText(const wxString& caption);

/// A button's label with the seconds after which it presses itself: "OK (5s)".
/// @param label Translated.
wxString CountDownLabel(const wxString& label, uint32_t seconds);

/// Counts the seconds after which a selection dialog confirms its default by itself.
class DefaultCountDown {
public:
    /// @param seconds 0 confirms at once.
    explicit DefaultCountDown(uint32_t seconds)
        : m_remaining(seconds != 0 ? seconds : 1), m_atOnce(seconds == 0) {}

    uint32_t Remaining() const { return m_remaining; }
    int PeriodMilliseconds() const { return m_atOnce ? 1 : 1000; }

    /// One period has passed. @return Whether it is time to confirm.
    bool Tick() {
        if (m_remaining > 0) {
            --m_remaining;
        }
        return m_remaining == 0;
    }

private:
    uint32_t m_remaining;
    bool m_atOnce;
};

/// Seconds of the setting; read once in the life of the process. GUI thread only.
uint32_t GetDefaultSelectionTimeout();

}  // namespace zeldlg
