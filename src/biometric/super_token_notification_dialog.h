// Shown while the fingerprint token waits for a finger, to authenticate or to enrol it.
#pragma once

#include <wx/dialog.h>
#include <wx/sizer.h>
#include <wx/stattext.h>

#include <cstdint>

#include "widgets/accessible.h"

namespace zeldlg {

enum class NotificationMode { Authentication, Enrolment };

/// Translated.
struct NotificationTexts {
    wxString headline;     ///< What it is about: the main text's first paragraph.
    wxString explanation;  ///< The rest of the main text, with the empty line before it.
    wxString instruction;
};

NotificationTexts TextsOf(NotificationMode mode);

/// How many times a finger has been scanned during an enrolment, and how that is told.
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

/// Modeless: lives until its owner destroys it. Neither the user nor the window manager can close
/// it.
class CSuperTokenNotificationDialog : public wxDialog {
public:
    explicit CSuperTokenNotificationDialog(NotificationMode mode);

    /// One more scan is done. kept: in both modes the title then says that a finger is enrolled; a
    /// host that counts during an authentication gets that title too.
    void CountScan();

private:
    void AddPicture(wxSizer* rows);
    void AddTexts(wxSizer* rows, const NotificationTexts& texts);
    void AddScanNumber(wxSizer* rows);
    wxStaticText* NewCentredText(const wxString& text);

    ScanCounter m_scans;
    wxStaticText* m_scanNumber = nullptr;
    LiveDescription m_description;
};

}  // namespace zeldlg
