#include "widgets/modeless.h"

namespace zeldlg {

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
