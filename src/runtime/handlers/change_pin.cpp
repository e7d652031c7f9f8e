#include <zeldlg/zeldlg.h>

#include "policy/change_pin_dialog.h"
#include "resources/texts.h"
#include "runtime/handlers/delivery.h"
#include "runtime/handlers/handlers.h"
#include "runtime/handlers/policy_wire.h"

namespace zeldlg {

namespace {

template <typename Record>
ChangePinPrompt PromptOf(const Record& request, const ChangePinFlags& flags) {
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
ChangePinPrompt PlainPrompt(const PinChangeRequest& request, bool unlock) {
    return PromptOf(request,
                    {.changePuk = request.changePuk != 0, .unlock = unlock, .transport = true});
}

ChangePinPrompt PolicedPrompt(const PolicedPinChangeRequest& request) {
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

void Show(const ChangePinPrompt& prompt, ChangeReply<PinChangeBuffers>& reply) {
    CChangePinDialog dialog(g_currentParent, prompt);
    reply.returnCode = dialog.ShowModal();
    if (reply.returnCode == wxID_OK) {
        reply.returnCode = DeliverChange(dialog, *reply.output);
    }
}

template <bool kUnlock>
void Change(const PinChangeRequest* request, ChangeReply<PinChangeBuffers>* reply) {
    Show(PlainPrompt(*request, kUnlock), *reply);
}

void ChangePoliced(const PolicedPinChangeRequest* request, ChangeReply<PinChangeBuffers>* reply) {
    Show(PolicedPrompt(*request), *reply);
}

}  // namespace

// kept: the request to change a transport PIN is the one that has the unlock flag.
bool HandleChangePin(CMessage* message) {
    return Serve(kUnblockThroughPuk, *message, Change<false>) ||
           Serve(kChangeTransportPin, *message, Change<true>) ||
           Serve(kChangePin, *message, Change<false>) ||
           Serve(kChangePolicedPin, *message, ChangePoliced);
}

}  // namespace zeldlg
