// Changes, initialises or unlocks a PIN or PUK: the old value, a new one twice, and which rules
// the new one meets while it is typed. Logic is in ChangePinChecks.
#pragma once

#include <wx/dialog.h>
#include <wx/sizer.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

#include <array>
#include <memory>
#include <optional>
#include <vector>

#include "policy/change_pin_checks.h"
#include "policy/change_pin_mode.h"
#include "widgets/accessible.h"
#include "widgets/banner.h"
#include "widgets/pin_field.h"
#include "widgets/rule_marks.h"

namespace zeldlg {

/// What a change dialog is built from.
struct ChangePinPrompt {
    wxString tokenLabel;
    ChangePinMode mode = ChangePinMode::ChangePin;
    ChangePinBounds bounds;
    ChangePinAttempts attempts;
    /// Whether the dialog has policy pages.
    bool policed = false;
    /// The token's policy; nothing when it has none. Policed dialogs only.
    std::optional<PinPolicy> policy;
};

class CChangePinDialog : public wxDialog {
public:
    CChangePinDialog(wxWindow* parent, const ChangePinPrompt& prompt);

    /// UTF-8 bytes of what is typed.
    platform::SecretBytes OldValue() const;
    platform::SecretBytes NewValue() const;

private:
    int SectionGap() const;
    void AddHeading(const wxString& tokenLabel);
    void AddFailure(const ChangePinAttempts& attempts);
    void AddFields();
    PinField* AddField(wxFlexGridSizer* grid, const char* label);
    void AddRules();
    void AddPages();
    wxSizer* NewChecks(size_t end);
    void AddExplanation();
    void AddSummary();
    void AddButtons();

    void TieDescriptions();

    void Revalidate();
    void ShowSummary(bool allMet);
    void ShowExplanation();
    void Choose(size_t place);
    void OnPageKey(wxKeyEvent& event, size_t place);
    void TellState(bool allMet);

    ChangePinPrompt m_prompt;
    const ChangePinTexts& m_texts;
    ChangePinChecks m_checks;
    Accepts m_accepts;

    wxBoxSizer* m_rows;
    wxBoxSizer* m_pageArea = nullptr;
    PinField* m_oldField = nullptr;
    PinField* m_newField = nullptr;
    PinField* m_confirmField = nullptr;
    wxTextCtrl* m_explanation = nullptr;
    Banner* m_summaryBox = nullptr;
    wxString m_failure;  // as it is spoken
    std::vector<wxStaticText*> m_failureTexts;
    wxStaticText* m_summary = nullptr;
    wxButton* m_okButton = nullptr;
    std::vector<Indicator*> m_indicators;                          // of the checks
    std::vector<std::unique_ptr<LiveDescription>> m_explanations;  // of the indicators
    std::array<SpokenRules, 3> m_spokenRules;                      // of the fields
    size_t m_chosen;
    size_t m_page = ChangePinChecks::kRuleCount;  // the one of the pages that Tab goes to
    bool m_userChose = false;
    std::optional<bool> m_shownSummary;
};

}  // namespace zeldlg
