#include "widgets/dialog_window.h"

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

void StayUntilHidden(wxDialog& window) {
    window.SetExtraStyle(window.GetExtraStyle() | wxWS_EX_TRANSIENT);
    window.SetEscapeId(wxID_NONE);
    window.Bind(wxEVT_CLOSE_WINDOW, [](wxCloseEvent& event) {
        if (event.CanVeto()) {
            event.Veto();
        } else {
            event.Skip();
        }
    });
}

void RemoveWindow(wxDialog& window) {
    window.Show(false);
    window.Destroy();
}

}  // namespace zeldlg
