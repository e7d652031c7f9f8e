// Explains the three scans of an enrolment before it begins; the user can switch that off.
#pragma once

#include <wx/dialog.h>
#include <wx/sizer.h>

namespace zeldlg {

/// Whether the user wants the enrolment explained. Looked up at every call; true unless the store
/// says 0.
bool IsEnrolmentHintWanted();

/// Written at once. A store that cannot be written must not stop an enrolment: the wish is dropped.
void StoreEnrolmentHintWanted(bool wanted);

/// What ShowModal() returns is of no interest: the enrolment goes on.
class CEnrolmentHintDialog : public wxDialog {
public:
    explicit CEnrolmentHintDialog(wxWindow* parent);

private:
    void AddCheckBox(wxSizer* rows);
    void AddOkButton(wxSizer* rows);
};

}  // namespace zeldlg
