#include <zeldlg/zeldlg.h>

#include "pin/legal_signature_dialog.h"
#include "pin/pin_prompt_dialog.h"
#include "resources/texts.h"
#include "runtime/handlers/delivery.h"
#include "runtime/handlers/handlers.h"
#include "runtime/reply_block.h"
#include "runtime/request_codes.h"
#include "widgets/dialog_window.h"

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

template <typename Dialog, typename Request>
bool ServePinDialog(const CMessage& message) {
    const Request& request = *message.Param1As<const Request>();
    auto& reply = *message.Param2As<PinReply>();
    const auto dialog = MakeWindow<Dialog>(
        g_currentParent, HostText(request.tokenLabel),
        PinLengthRule(request.minPinLength, request.maxPinLength), FailureOf(request));
    reply.returnCode = dialog->ShowModal();
    if (reply.returnCode == wxID_OK) {
        reply.returnCode = DeliverPin(dialog->GetPin(), *reinterpret_cast<PinBuffer*>(reply.extra));
    }
    return true;
}

}  // namespace

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
