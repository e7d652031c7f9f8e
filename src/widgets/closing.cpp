#include "widgets/closing.h"

namespace zeldlg {

void CancelOnClose(wxDialog& dialog) {
    dialog.Bind(wxEVT_CLOSE_WINDOW, [&dialog](wxCloseEvent&) {
        if (dialog.IsModal()) {
            dialog.EndModal(wxID_CANCEL);
        }
    });
}

void CancelOnEscapeAndClose(wxDialog& dialog) {
    CancelOnClose(dialog);
    dialog.Bind(wxEVT_CHAR_HOOK, [&dialog](wxKeyEvent& event) {
        if (event.GetKeyCode() == WXK_ESCAPE) {
            dialog.Close();
        } else {
            event.Skip();
        }
    });
}

}  // namespace zeldlg
