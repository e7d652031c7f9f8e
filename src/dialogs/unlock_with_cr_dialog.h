// Off-line unlock of a PIN: shows the challenge that the user reads out to the help desk, takes
// the response and, where it is wanted, a new PIN twice.
#pragma once

#include <gtk/gtk.h>
#include <wx/button.h>
#include <wx/dialog.h>
#include <wx/font.h>
#include <wx/sizer.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

#include <cstdint>
#include <memory>
#include <string>

#include "dialogs/challenge_response.h"
#include "widgets/accessible.h"
#include "widgets/pin_field.h"
#include "widgets/rule_marks.h"

namespace zeldlg {

/// The field for the help desk's response. Other text than a response may hold never gets in,
/// whether it is typed, pasted, dropped or comes from an input method.
class ResponseField : public wxTextCtrl {
public:
    explicit ResponseField(wxWindow* parent);

private:
    static void OnInsert(GtkEditable* editable, const char* text, int bytes, int* position,
                         ResponseField* field);
    void TakeBack(int& position);

    wxString m_accepted;
};

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
    void AddResponseRow(wxStaticText* label, wxSizer* rule);
    void AddNewPin();
    PinField* AddPinField(const char* label);
    void AddPinRules();
    void AddButtons();
    void AddRow(wxStaticText* label, wxWindow* field);
    wxStaticText* NewLabel(const char* text);
    wxFont CodeFont() const;
    int RoomForFields() const;
    int PlacesOf(const wxWindow& field, size_t digits) const;

    void Revalidate();
    void CheckPins();
    void CheckResponse();
    void TellRules();

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
    std::unique_ptr<LiveDescription> m_responseDescription;
    // Of the three fields.
    SpokenRules m_responseRules;
    SpokenRules m_lengthRules;
    SpokenRules m_equalityRules;
};

}  // namespace zeldlg
