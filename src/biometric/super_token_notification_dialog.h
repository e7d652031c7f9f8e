// Shown while the fingerprint token waits for a finger, to authenticate or to enrol it.
#pragma once

#include <wx/dialog.h>
#include <wx/sizer.h>
#include <wx/stattext.h>

#include "biometric/notification_texts.h"
#include "biometric/scan_counter.h"

namespace zeldlg {

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
};

}  // namespace zeldlg
