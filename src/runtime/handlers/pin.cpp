#include <zeldlg/zeldlg.h>

#include "pin/legal_signature_dialog.h"
#include "pin/pin_prompt_dialog.h"
#include "resources/texts.h"
#include "runtime/handlers/delivery.h"
#include "runtime/handlers/handlers.h"

namespace zeldlg {

namespace {

PinFailureLines FailureOf(const PinDialogRequest& request) {
    return DescribeFailure(PinAttempts{.noFailure = request.noFailure != 0,
                                       .finalTry = request.finalTry != 0,
                                       .failedEarlier = request.failedEarlier != 0});
}

PinFailureLines FailureOf(const PinDialogRequestEx& request) {
    return DescribeFailure(PinRetryCounter{.maxTries = request.maxTries,
                                           .triesLeft = request.triesLeft,
                                           .failedEarlier = request.failedEarlier != 0});
}

// kept: a PIN that does not fit is reported to the host as cancelled.
int32_t DeliverPin(const platform::SecretBytes& pin, PinBuffer& buffer) {
    if (!Fits(pin, buffer.pin, buffer.pinLength)) {
        return kNotDelivered;
    }
    Deliver(pin, buffer.pin, buffer.pinLength);
    return wxID_OK;
}

template <typename Dialog, typename Record>
void AskPin(const Record* record, PinReply<PinBuffer>* reply) {
    Dialog dialog(g_currentParent, HostText(record->tokenLabel),
                  PinLengthRule(record->minPinLength, record->maxPinLength), FailureOf(*record));
    reply->returnCode = dialog.ShowModal();
    if (reply->returnCode == wxID_OK) {
        reply->returnCode = DeliverPin(dialog.GetPin(), *reply->output);
    }
}

}  // namespace

bool HandlePinEntry(CMessage* message) {
    return Serve(kShowPin, *message, AskPin<CPinEntryDialog, PinDialogRequest>) ||
           Serve(kShowPinEx, *message, AskPin<CPinEntryDialog, PinDialogRequestEx>);
}

bool HandleLegalPin(CMessage* message) {
    return Serve(kShowLegalPin, *message, AskPin<CLegalSignatureDialog, PinDialogRequest>) ||
           Serve(kShowLegalPinEx, *message, AskPin<CLegalSignatureDialog, PinDialogRequestEx>);
}

}  // namespace zeldlg
