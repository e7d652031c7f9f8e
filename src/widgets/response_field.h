// The field that the help desk's response is typed into. Other text than a response may hold never
// gets in, whether it is typed, pasted, dropped or comes from an input method.
#pragma once

#include <gtk/gtk.h>
#include <wx/textctrl.h>

namespace zeldlg {

class ResponseField : public wxTextCtrl {
public:
    explicit ResponseField(wxWindow* parent);

private:
    static void OnInsert(GtkEditable* editable, const char* text, int bytes, int* position,
                         ResponseField* field);
    void TakeBack(int& position);

    wxString m_accepted;
};

}  // namespace zeldlg
