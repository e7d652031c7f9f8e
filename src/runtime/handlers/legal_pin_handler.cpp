#include "runtime/handlers/legal_pin_handler.h"

#include "pin/legal_signature_dialog.h"
#include "runtime/handlers/pin_dialog_service.h"
#include "runtime/request_codes.h"

namespace zeldlg {

bool HandleLegalPin(CMessage* message) {
    switch (message->Code()) {
        case kShowLegalPin:
            return ServePinDialog<CLegalSignatureDialog, PinDialogRequest>(*message);
        case kShowLegalPinEx:
            return ServePinDialog<CLegalSignatureDialog, PinDialogRequestEx>(*message);
        default:
            return false;
    }
}

}  // namespace zeldlg
