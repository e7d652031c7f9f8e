#include "biometric/enrolment_hint_dialog.h"
#include "biometric/super_token_notification_dialog.h"
#include "dialogs/key_gen_progress_dialog.h"
#include "runtime/handlers/handlers.h"
#include "runtime/request_codes.h"
#include "widgets/dialog_window.h"

namespace zeldlg {

namespace {

CSuperTokenNotificationDialog* Notification() {
    return LiveWindow<CSuperTokenNotificationDialog>();
}

void HideNotification() {
    if (CSuperTokenNotificationDialog* const window = Notification(); window != nullptr) {
        g_currentParent = nullptr;
        RemoveWindow(*window);
    }
}

void ShowNotification(NotificationMode mode) {
    HideNotification();
    auto* const window = new CSuperTokenNotificationDialog(mode);
    g_currentParent = window;
    window->Show(true);
}

void CountScan() {
    if (CSuperTokenNotificationDialog* const window = Notification(); window != nullptr) {
        window->CountScan();
    }
}

CKeyGenProgressDialog* Progress() { return LiveWindow<CKeyGenProgressDialog>(); }

void ShowProgress() {
    if (CKeyGenProgressDialog* const window = Progress(); window != nullptr) {
        RemoveWindow(*window);
    }
    auto* const window = new CKeyGenProgressDialog(g_currentParent);
    g_currentParent = window;
    window->Show(true);
}

void HideProgress() {
    if (CKeyGenProgressDialog* const window = Progress(); window != nullptr) {
        g_currentParent = window->ParentBefore();
        RemoveWindow(*window);
    }
}

}  // namespace

// Without a window, counting and hiding are carried out without effect.
bool HandleBiometricNotification(CMessage* message) {
    switch (message->Code()) {
        case kShowAuthentication:
            ShowNotification(NotificationMode::Authentication);
            return true;
        case kShowEnrolment:
            ShowNotification(NotificationMode::Enrolment);
            return true;
        case kUpdateEnrolment:
            CountScan();
            return true;
        case kHideNotification:
            HideNotification();
            return true;
        default:
            return false;
    }
}

bool HandleEnrolmentHint(CMessage* message) {
    if (message->Code() != kEnrolmentHint) {
        return false;
    }
    if (IsEnrolmentHintWanted()) {
        MakeWindow<CEnrolmentHintDialog>(g_currentParent)->ShowModal();
    }
    return true;
}

bool HandleKeyGeneration(CMessage* message) {
    switch (message->Code()) {
        case kShowKeyGeneration:
            ShowProgress();
            return true;
        case kHideKeyGeneration:
            HideProgress();
            return true;
        default:
            return false;
    }
}

}  // namespace zeldlg
