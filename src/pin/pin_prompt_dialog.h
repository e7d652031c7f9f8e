// What every dialog that asks for one PIN is made of, row by row, and its reaction to typing.
// Dialogs put the rows together; the logic is that of PinLengthRule.
#pragma once

#include <wx/dialog.h>
#include <wx/stattext.h>

#include <cstdint>

#include "pin/pin_failure.h"
#include "pin/pin_length_rule.h"
#include "widgets/pin_field.h"
#include "widgets/rule_icon.h"

namespace zeldlg {

class CPinPromptDialog : public wxDialog {
public:
    /// What is typed in the PIN field.
    platform::SecretBytes GetPin() const;

protected:
    CPinPromptDialog(wxWindow* parent, const PinLengthRule& lengthRule);

    /// The rows, from top to bottom.
    void AddHeading(const wxString& tokenLabel, size_t maxLines);
    void AddFailureLines(const PinFailureLines& lines);
    void AddPinField();
    wxButton* AddButtons(const wxString& okLabel);
    void AddRules();
    /// Gives the window its size and place, and the PIN field the focus.
    void FinishLayout();

    wxSizer* Rows() { return m_rows; }

private:
    void OnText(wxCommandEvent& event);
    void ConsumeMouseButtons();

    wxBoxSizer* m_rows;
    wxStaticText* m_failureText = nullptr;
    wxStaticText* m_warningText = nullptr;
    PinField* m_pinField = nullptr;
    RuleIcon* m_minIcon = nullptr;
    RuleIcon* m_maxIcon = nullptr;
    wxButton* m_okButton = nullptr;
    PinLengthRule m_lengthRule;
};

}  // namespace zeldlg
