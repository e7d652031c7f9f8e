// Explains the three scans of an enrolment before it begins; the user can switch that off.
#pragma once

#include <wx/dialog.h>
#include <wx/sizer.h>

namespace zeldlg {

/// What ShowModal() returns is of no interest: the enrolment goes on.
class CEnrolmentHintDialog : public wxDialog {
public:
    explicit CEnrolmentHintDialog(wxWindow* parent);

private:
    void AddCheckBox(wxSizer* rows);
    void AddOkButton(wxSizer* rows);
};

}  // namespace zeldlg
