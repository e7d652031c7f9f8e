// How many times a finger has been scanned during an enrolment, and how that is told.
#pragma once

#include <wx/string.h>

#include <cstdint>

namespace zeldlg {

class ScanCounter {
public:
    void Advance() { ++m_scans; }

    /// The number alone.
    wxString Number() const;

    /// Title of the window while a finger is enrolled; translated.
    wxString Title() const;

private:
    uint32_t m_scans = 0;
};

}  // namespace zeldlg
