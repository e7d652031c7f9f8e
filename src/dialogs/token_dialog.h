// Lets the user pick one of several tokens.
#pragma once

#include <wx/button.h>
#include <wx/dialog.h>

#include <cstdint>

#include "widgets/choice_list.h"

namespace zeldlg {

/// Without a Cancel button: Escape and the close box end it with wxID_CANCEL. OK is disabled while
/// there is no item.
class CTokenDialog : public wxDialog {
public:
    /// @param parent May be null: the dialog then belongs to no other window.
    explicit CTokenDialog(wxWindow* parent);

    /// Appends "name (detail)" and selects the first row; white space behind either is dropped.
    void AddItem(const wxString& name, const wxString& detail, uint64_t identifier);
    /// The same with a row text of its own.
    void AddItem(const wxString& text, uint64_t identifier);

    /// Takes its size from what was added. Call it before showing.
    void FinishLayout();

    /// Identifier of the selected row.
    uint64_t GetIdentifier() const { return m_list->ChosenValue(); }

private:
    wxBoxSizer* m_rows;
    ChoiceList* m_list;
    wxButton* m_okButton;
};

}  // namespace zeldlg
