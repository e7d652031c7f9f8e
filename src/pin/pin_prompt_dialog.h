// What every dialog that asks for one PIN is made of, row by row, and its reaction to typing; and
// the plain one, before a login. Dialogs put the rows together; the logic is that of PinLengthRule.
#pragma once

#include <wx/dialog.h>
#include <wx/stattext.h>

#include <cstdint>

#include "pin/pin_rules.h"
#include "widgets/pin_field.h"
#include "widgets/rule_marks.h"

namespace zeldlg {

class CPinPromptDialog : public wxDialog {
public:
    /// What is typed in the PIN field.
    platform::SecretBytes GetPin() const;

protected:
    /// @param lengthRule The token's limits.
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
    void TellRules();
    void ConsumeMouseButtons();

    wxBoxSizer* m_rows;
    wxString m_failure;  // both texts, as they are spoken
    wxStaticText* m_failureText = nullptr;
    wxStaticText* m_warningText = nullptr;
    PinField* m_pinField = nullptr;
    RuleIcon* m_minIcon = nullptr;
    RuleIcon* m_maxIcon = nullptr;
    wxButton* m_okButton = nullptr;
    PinLengthRule m_lengthRule;
    SpokenRules m_spokenRules;
};

/// Asks for the PIN of a token before a login.
class CPinEntryDialog : public CPinPromptDialog {
public:
    CPinEntryDialog(wxWindow* parent, const wxString& tokenLabel, const PinLengthRule& lengthRule,
                    const PinFailureLines& failure);
};

}  // namespace zeldlg
