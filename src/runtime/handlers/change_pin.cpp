#include <zeldlg/zeldlg.h>

#include "policy/change_pin_dialog.h"
#include "resources/texts.h"
#include "runtime/handlers/delivery.h"
#include "runtime/handlers/handlers.h"
#include "runtime/handlers/policy_wire.h"
#include "runtime/reply_block.h"
#include "runtime/request_codes.h"
#include "widgets/dialog_window.h"

namespace zeldlg {

namespace {

template <typename Request>
ChangePinPrompt PromptOf(const Request& request, const ChangePinFlags& flags) {
    const LengthBounds bounds{.min = request.minLength, .max = request.maxLength};
    return {.tokenLabel = HostText(request.tokenLabel),
            .mode = SelectMode(flags),
            .bounds = {.newValue = bounds, .oldValue = bounds},
            .attempts = {.noFailure = request.noFailure != 0,
                         .finalTry = request.finalTry != 0,
                         .triesLeft = {}},
            .policed = false,
            .policy = {}};
}

// kept: the transport flag is set for every request, so that "Change PIN" is never the title.
ChangePinPrompt PlainPrompt(const CMessage& message, bool unlock) {
    const auto& request = *message.Param1As<const PinChangeRequest>();
    return PromptOf(request,
                    {.changePuk = request.changePuk != 0, .unlock = unlock, .transport = true});
}

ChangePinPrompt PolicedPrompt(const CMessage& message) {
    const auto& request = *message.Param1As<const PolicedPinChangeRequest>();
    ChangePinPrompt prompt = PromptOf(request, {.changePuk = request.changePuk != 0,
                                                .unlock = false,
                                                .transport = true,
                                                .initialise = request.initialisePin != 0});
    if (request.oldMinLength != 0 || request.oldMaxLength != 0) {
        prompt.bounds.oldValue = {.min = request.oldMinLength, .max = request.oldMaxLength};
    }
    if (request.triesLeft != 0) {
        prompt.attempts.triesLeft = request.triesLeft;
    }
    prompt.policed = true;
    PinPolicy policy;
    if (FillPinPolicy(policy, request.policy)) {
        prompt.policy = policy;
    }
    return prompt;
}

// Both values or neither.
int32_t DeliverChange(const CChangePinDialog& dialog, PinChangeBuffers& buffers) {
    const platform::SecretBytes oldValue = dialog.OldValue();
    const platform::SecretBytes newValue = dialog.NewValue();
    if (!Fits(oldValue, buffers.oldValue, buffers.oldLength) ||
        !Fits(newValue, buffers.newValue, buffers.newLength)) {
        return kNotDelivered;
    }
    Deliver(oldValue, buffers.oldValue, buffers.oldLength);
    Deliver(newValue, buffers.newValue, buffers.newLength);
    return wxID_OK;
}

bool Serve(const CMessage& message, const ChangePinPrompt& prompt) {
    auto& reply = *message.Param2As<ChangeReply>();
    const auto dialog = MakeWindow<CChangePinDialog>(g_currentParent, prompt);
    reply.returnCode = dialog->ShowModal();
    if (reply.returnCode == wxID_OK) {
        reply.returnCode =
            DeliverChange(*dialog, *reinterpret_cast<PinChangeBuffers*>(reply.extra));
    }
    return true;
}

}  // namespace

bool HandleChangePin(CMessage* message) {
    switch (message->Code()) {
        case kUnblockThroughPuk:  // kept: it is the next request that has the unlock flag
        case kChangePin:
            return Serve(*message, PlainPrompt(*message, false));
        case kChangeTransportPin:
            return Serve(*message, PlainPrompt(*message, true));
        case kChangePolicedPin:
            return Serve(*message, PolicedPrompt(*message));
        default:
            return false;
    }
}

}  // namespace zeldlg
