// Shown while a reader with keys of its own collects a PIN: the step under way, a row of places
// for the typed digits, and on request an Abort button. The PIN itself never comes here.
#pragma once

#include <wx/dialog.h>
#include <wx/stattext.h>

#include <cstdint>
#include <memory>
#include <vector>

#include "pin/pin_pad.h"
#include "widgets/accessible.h"

namespace zeldlg {

struct PinPadLook {
    bool allowAbort;    ///< With an Abort button.
    bool verification;  ///< One step only; otherwise the steps of a change of the PIN.
    bool legal;         ///< With the notice about a legally binding signature.
    bool withPinRow;    ///< With the row that shows typed digits and status words.
};

/// Modeless: lives until its owner destroys it. Neither the user nor the window manager can close
/// it. Nothing in it has the keyboard when it opens, so that nobody who types elsewhere aborts by
/// it: Abort is to be reached by Tab, or pressed by its mnemonic.
class CPinPadDialog : public wxDialog {
public:
    explicit CPinPadDialog(const PinPadLook& look);

    /// Goes to the first place that none of the others stands on. To be called before it is shown.
    void StandBeside(const std::vector<CPinPadDialog*>& others);

    /// Marks the next step as the current one and blanks the row.
    void NextStep();

    // The row; without effect when there is none.
    void AddChar();
    void DeleteChar();
    void ClearChars();
    /// @param words Translated.
    void ShowStatus(const wxString& words);

    /// Whether Abort has ever been pressed.
    bool IsAbortRequested() const { return m_abortRequested; }

private:
    void AddCard(wxSizer* rows, const PinPadLook& look);
    void AddSteps(wxSizer* card, bool verification);
    wxStaticText* AddStep(wxSizer* lines, const char* english);
    void AddPinRow(wxSizer* card);
    void ReserveRow();
    void AddAbortButton(wxSizer* rows);
    void HighlightCurrentStep();
    void ShowRow(bool changed);
    wxString DigitsText() const;
    void Tell(const wxString& news);

    wxStaticText* m_display = nullptr;
    wxWindow* m_card = nullptr;
    std::vector<wxStaticText*> m_arrows;  // of the steps
    wxStaticText* m_stepEnterPin = nullptr;
    wxStaticText* m_stepNewPin = nullptr;
    wxStaticText* m_stepConfirmPin = nullptr;
    uint64_t m_step = 0;
    wxString m_stepText;           // of the current step; empty where that has none
    wxWindow* m_described = this;  // what may get the keyboard
    std::unique_ptr<LiveDescription> m_description;
    bool m_abortRequested = false;
    PinPadRow m_row;
};

}  // namespace zeldlg
