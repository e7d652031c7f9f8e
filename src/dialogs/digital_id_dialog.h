// Lets the user pick one of several digital IDs. It can confirm its default by itself after a
// visible count-down, which ends for good as soon as the list is touched.
#pragma once

#include <wx/button.h>
#include <wx/checkbox.h>
#include <wx/dialog.h>
#include <wx/gbsizer.h>
#include <wx/timer.h>

#include <cstdint>
#include <optional>

#include "dialogs/selection.h"
#include "widgets/accessible.h"
#include "widgets/choice_list.h"

namespace zeldlg {

/// What the digital-ID dialog is built from.
struct DigitalIdPrompt {
    wxString name;  ///< Of every row.
    wxString validFrom;
    wxString validTo;
    uint64_t value = 0;  ///< Of every row.
    uint32_t count = 0;  ///< Rows.
    uint32_t defaultIndex = 0;
    wxString directory;  ///< Empty: nothing is said about one.
    bool alwaysUse = false;
    std::optional<uint32_t> timeout;  ///< Seconds until the default is confirmed; none: never.
};

class CDigitalIDSelectionDialog : public wxDialog {
public:
    explicit CDigitalIDSelectionDialog(const DigitalIdPrompt& prompt);

    /// The value of the selected row.
    uint64_t GetValue() const { return m_list->ChosenValue(); }
    bool IsAlwaysUse() const { return m_alwaysUse->GetValue(); }

private:
    void AddList(wxSizer* rows);
    void AddDetails(wxSizer* rows);
    wxStaticText* AddDetail(wxGridBagSizer& grid, const wxString& caption);
    void AddDirectory(wxGridBagSizer& grid);
    void AddAlwaysUse(wxSizer* rows);
    void AddButtons(wxSizer* rows);
    void FillList();
    void ShowDetails();
    void TellChoice();
    void TellDetailsThatAreCut();

    void StartCountDown();
    void StopCountDown();
    void OnTick(wxTimerEvent& event);

    DigitalIdPrompt m_prompt;
    ChoiceList* m_list = nullptr;
    wxStaticText* m_validFrom = nullptr;
    wxStaticText* m_validTo = nullptr;
    wxStaticText* m_userName = nullptr;
    wxCheckBox* m_alwaysUse = nullptr;
    wxButton* m_okButton = nullptr;
    wxTimer m_timer;
    std::optional<DefaultCountDown> m_countDown;
    SpokenCountDown m_spokenCountDown;
    std::optional<LiveDescription> m_description;    // of the list
    std::optional<LiveDescription> m_okDescription;  // of a button that counts
};

}  // namespace zeldlg
