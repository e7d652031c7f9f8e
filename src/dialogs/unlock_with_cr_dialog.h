// Off-line unlock of a PIN: shows the challenge that the user reads out to the help desk, takes
// the response and, where it is wanted, a new PIN twice.
#pragma once

#include <wx/button.h>
#include <wx/dialog.h>
#include <wx/font.h>
#include <wx/sizer.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

#include <cstdint>
#include <string>

#include "dialogs/new_pin_rules.h"
#include "widgets/pin_field.h"
#include "widgets/response_field.h"
#include "widgets/rule_icon.h"

namespace zeldlg {

/// What the dialog is built from.
struct UnlockWithCRPrompt {
    wxString tokenLabel;
    std::string challenge;  ///< bytes
    wxString serialNumber;
    int32_t responseLength = 0;  ///< bytes; no response has a negative length
    NewPinBounds newPinBounds;
    bool askNewPin = false;
};

class CUnlockWithCRDialog : public wxDialog {
public:
    explicit CUnlockWithCRDialog(UnlockWithCRPrompt prompt);

    /// The bytes that the typed response stands for.
    std::string Response() const;

    /// UTF-8 bytes; empty when no new PIN was asked for.
    platform::SecretBytes NewPin() const;

private:
    void AddHeading();
    void AddChallenge();
    void AddSerialNumber();
    void AddResponse();
    void AddNewPin();
    PinField* AddPinField(const char* label);
    void AddPinRules();
    void AddButtons();
    void AddRow(wxStaticText* label, wxWindow* field);
    wxStaticText* NewLabel(const char* text);
    wxFont CodeFont() const;

    void Revalidate();
    void CheckPins();
    void CheckResponse();

    UnlockWithCRPrompt m_prompt;
    Accepts m_accepts;
    bool m_responseOk = false;
    bool m_pinLengthOk = true;
    bool m_pinsEqual = true;

    wxBoxSizer* m_rows;
    wxFlexGridSizer* m_grid;
    ResponseField* m_responseField = nullptr;
    RuleIcon* m_responseIcon = nullptr;
    PinField* m_pinField = nullptr;
    PinField* m_confirmField = nullptr;
    RuleIcon* m_minIcon = nullptr;
    RuleIcon* m_maxIcon = nullptr;
    RuleIcon* m_equalIcon = nullptr;
    wxButton* m_okButton = nullptr;
};

}  // namespace zeldlg
