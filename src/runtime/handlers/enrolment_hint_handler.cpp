#include "runtime/handlers/enrolment_hint_handler.h"

#include "biometric/enrolment_hint_dialog.h"
#include "biometric/enrolment_hint_setting.h"
#include "runtime/current_parent.h"
#include "runtime/request_codes.h"
#include "widgets/window_ptr.h"

namespace zeldlg {

bool HandleEnrolmentHint(CMessage* message) {
    if (message->Code() != kEnrolmentHint) {
        return false;
    }
    if (IsEnrolmentHintWanted()) {
        MakeWindow<CEnrolmentHintDialog>(g_currentParent)->ShowModal();
    }
    return true;
}

}  // namespace zeldlg
