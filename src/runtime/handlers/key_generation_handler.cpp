#include "runtime/handlers/key_generation_handler.h"

#include "dialogs/key_gen_progress_dialog.h"
#include "runtime/current_parent.h"
#include "runtime/request_codes.h"
#include "widgets/modeless.h"

namespace zeldlg {

namespace {

CKeyGenProgressDialog* OpenWindow() { return LiveWindow<CKeyGenProgressDialog>(); }

void Show() {
    if (CKeyGenProgressDialog* const window = OpenWindow(); window != nullptr) {
        RemoveWindow(*window);
    }
    auto* const window = new CKeyGenProgressDialog(g_currentParent);
    g_currentParent = window;
    window->Show(true);
}

void Hide() {
    if (CKeyGenProgressDialog* const window = OpenWindow(); window != nullptr) {
        g_currentParent = window->ParentBefore();
        RemoveWindow(*window);
    }
}

}  // namespace

bool HandleKeyGeneration(CMessage* message) {
    switch (message->Code()) {
        case kShowKeyGeneration:
            Show();
            return true;
        case kHideKeyGeneration:
            Hide();
            return true;
        default:
            return false;
    }
}

}  // namespace zeldlg
