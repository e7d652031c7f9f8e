// The list that a user picks one item from. Each row carries a number of the host; there is always
// a selected row while there are any. Long rows scroll sideways, with the arrow keys too.
#pragma once

#include <wx/listbox.h>
#include <wx/stattext.h>

#include <cstdint>

namespace zeldlg {

class ChoiceList : public wxListBox {
public:
    /// @param label Stands for the list: its text becomes the list's name.
    ChoiceList(wxWindow* parent, wxStaticText& label);

    /// Has typed letters find a row. For rows that differ: the toolkit opens a small window for
    /// that, and as long as it is there, five seconds, the dialog's close box does nothing.
    void LetSearch();

    /// Appends a row and selects the first one.
    void Add(const wxString& text, uint64_t value);

    /// Selects a row, scrolls to it and lets the arrow keys start there.
    void Choose(unsigned int row);

    /// The number of the selected row; 0 while there are no rows.
    uint64_t ChosenValue() const;

protected:
    wxSize DoGetBestSize() const override;

private:
    void OnKeyDown(wxKeyEvent& event);
};

}  // namespace zeldlg
