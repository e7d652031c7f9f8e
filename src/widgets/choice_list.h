// The list that a user picks one item from. Each row carries a number of the host; there is always
// a selected row while there are any. Long rows scroll sideways, with the arrow keys too. Enter and
// a double click choose the row for good (wxEVT_LISTBOX_DCLICK); the space bar does nothing.
#pragma once

#include <wx/listbox.h>
#include <wx/stattext.h>

#include <cstdint>
#include <functional>

namespace zeldlg {

class ChoiceList : public wxListBox {
public:
    /// @param label Stands for the list: its text becomes the list's name.
    ChoiceList(wxWindow* parent, wxStaticText& label);
    ~ChoiceList() override;
    ChoiceList(const ChoiceList&) = delete;
    ChoiceList& operator=(const ChoiceList&) = delete;

    /// Has typed letters find a row. For rows that differ: the toolkit opens a small window for
    /// that, and as long as it is there, five seconds, the dialog's close box does nothing.
    void LetSearch();

    /// Has `touched` called whenever the user does something to the list, whether that changes
    /// anything or not: each key that it gets, each mouse button in it or on its bars, the
    /// wheel, and a row that was chosen in any other way.
    void ReportTouches(std::function<void()> touched);

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

    std::function<void()> m_touched;
};

}  // namespace zeldlg
