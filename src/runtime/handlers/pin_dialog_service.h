// The way of a PIN dialog from the host's record to the host's buffer, for every dialog class
// that asks for one PIN.
#pragma once

#include <zeldlg/zeldlg.h>

#include "pin/pin_failure.h"
#include "pin/pin_length_rule.h"
#include "resources/texts.h"
#include "runtime/current_parent.h"
#include "runtime/handlers/delivery.h"
#include "runtime/message.h"
#include "runtime/reply_block.h"
#include "widgets/window_ptr.h"

namespace zeldlg {

inline PinFailureLines FailureOf(const PinDialogRequest& request) {
    return DescribeFailure(PinAttempts{.noFailure = request.noFailure != 0,
                                       .finalTry = request.finalTry != 0,
                                       .failedEarlier = request.failedEarlier != 0});
}

inline PinFailureLines FailureOf(const PinDialogRequestEx& request) {
    return DescribeFailure(PinRetryCounter{.maxTries = request.maxTries,
                                           .triesLeft = request.triesLeft,
                                           .failedEarlier = request.failedEarlier != 0});
}

/// kept: a PIN that does not fit is reported to the host as cancelled.
inline int32_t DeliverPin(const platform::SecretBytes& pin, PinBuffer& buffer) {
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

}  // namespace zeldlg
