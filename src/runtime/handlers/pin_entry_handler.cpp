#include "runtime/handlers/pin_entry_handler.h"

#include "pin/pin_entry_dialog.h"
#include "runtime/handlers/pin_dialog_service.h"
#include "runtime/request_codes.h"

namespace zeldlg {

bool HandlePinEntry(CMessage* message) {
    switch (message->Code()) {
        case kShowPin:
            return ServePinDialog<CPinEntryDialog, PinDialogRequest>(*message);
        case kShowPinEx:
            return ServePinDialog<CPinEntryDialog, PinDialogRequestEx>(*message);
        default:
            return false;
    }
}

}  // namespace zeldlg
