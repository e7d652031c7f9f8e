#include "dialogs/common/modeless.h"

#include <gtk/gtk.h>
#include <wx/clntdata.h>
#include <wx/modalhook.h>

namespace zeldlg {

namespace {

// While it lives modal dialogs stay on top as well. A modeless window is no parent of theirs, and
// would cover a question that the user has to answer.
class BelowModalDialogs : public wxClientData, public wxModalDialogHook {
public:
    BelowModalDialogs() { Register(); }
    ~BelowModalDialogs() override { Unregister(); }
    BelowModalDialogs(const BelowModalDialogs&) = delete;
    BelowModalDialogs& operator=(const BelowModalDialogs&) = delete;

protected:
    int Enter(wxDialog* dialog) override {
        gtk_window_set_keep_above(GTK_WINDOW(dialog->GetHandle()), TRUE);
        return wxID_NONE;
    }
};

}  // namespace

void StayUntilHidden(wxDialog& window) {
    window.SetClientObject(new BelowModalDialogs);
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
