#include "runtime/handlers/biometric_notification_handler.h"

#include "biometric/super_token_notification_dialog.h"
#include "runtime/current_parent.h"
#include "runtime/request_codes.h"
#include "widgets/modeless.h"

namespace zeldlg {

namespace {

CSuperTokenNotificationDialog* OpenWindow() { return LiveWindow<CSuperTokenNotificationDialog>(); }

void Hide() {
    if (CSuperTokenNotificationDialog* const window = OpenWindow(); window != nullptr) {
        g_currentParent = nullptr;
        RemoveWindow(*window);
    }
}

void Show(NotificationMode mode) {
    Hide();
    auto* const window = new CSuperTokenNotificationDialog(mode);
    g_currentParent = window;
    window->Show(true);
}

void CountScan() {
    if (CSuperTokenNotificationDialog* const window = OpenWindow(); window != nullptr) {
        window->CountScan();
    }
}

}  // namespace

// Without a window, counting and hiding are carried out without effect.
bool HandleBiometricNotification(CMessage* message) {
    switch (message->Code()) {
        case kShowAuthentication:
            Show(NotificationMode::Authentication);
            return true;
        case kShowEnrolment:
            Show(NotificationMode::Enrolment);
            return true;
        case kUpdateEnrolment:
            CountScan();
            return true;
        case kHideNotification:
            Hide();
            return true;
        default:
            return false;
    }
}

}  // namespace zeldlg
