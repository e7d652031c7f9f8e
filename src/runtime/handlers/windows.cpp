#include "biometric/enrolment_hint_dialog.h"
#include "biometric/super_token_notification_dialog.h"
#include "dialogs/key_gen_progress_dialog.h"
#include "runtime/handlers/handlers.h"
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

void ShowHint() {
    if (IsEnrolmentHintWanted()) {
        CEnrolmentHintDialog(g_currentParent).ShowModal();
    }
}

}  // namespace

// Without a window, counting and hiding are carried out without effect.
bool HandleBiometricNotification(CMessage* message) {
    return Serve(kShowAuthentication, *message,
                 [] { ShowNotification(NotificationMode::Authentication); }) ||
           Serve(kShowEnrolment, *message, [] { ShowNotification(NotificationMode::Enrolment); }) ||
           Serve(kUpdateEnrolment, *message, CountScan) ||
           Serve(kHideNotification, *message, HideNotification);
}

bool HandleEnrolmentHint(CMessage* message) { return Serve(kEnrolmentHint, *message, ShowHint); }

bool HandleKeyGeneration(CMessage* message) {
    return Serve(kShowKeyGeneration, *message, ShowProgress) ||
           Serve(kHideKeyGeneration, *message, HideProgress);
}

}  // namespace zeldlg
