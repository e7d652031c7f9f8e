#include <zeldlg/zeldlg.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "dialogs/select_unblock_method_dialog.h"
#include "dialogs/unlock_with_cr_dialog.h"
#include "resources/texts.h"
#include "runtime/handlers/delivery.h"
#include "runtime/handlers/handlers.h"

namespace zeldlg {

namespace {

void SelectMethod(const UnblockMethodRequest* request, UnblockMethodReply* reply) {
    const std::vector<uint32_t> algorithms(request->algorithms,
                                           request->algorithms + request->algorithmCount);
    CSelectUnblockMethodDialog dialog(request->pukOffered != 0, algorithms);
    reply->returnCode = static_cast<uint32_t>(dialog.ShowModal());
    if (reply->returnCode == wxID_OK) {
        reply->method = dialog.Method();
        reply->algorithm = dialog.AlgorithmIndex();
    }
}

std::string BytesOf(const ByteBuffer* buffer) {
    if (buffer == nullptr || (buffer->data == nullptr && buffer->length != 0)) {
        throw std::invalid_argument("no challenge");
    }
    return {buffer->data, buffer->data + buffer->length};
}

UnlockWithCRPrompt PromptOf(const ChallengeResponseRequest& request) {
    return {.tokenLabel = HostText(request.tokenLabel),
            .challenge = BytesOf(request.challenge),
            .serialNumber = HostText(request.serialNumber),
            .responseLength = request.responseLength,
            .newPinBounds = {.min = request.minPinLength, .max = request.maxPinLength},
            .askNewPin = request.askNewPin != 0};
}

// Both values or neither; the PIN fields are left alone when no new PIN was asked for.
int32_t DeliverUnlock(const CUnlockWithCRDialog& dialog, bool askNewPin,
                      ChallengeResponseBuffers& buffers) {
    const std::string response = dialog.Response();
    const platform::SecretBytes newPin = dialog.NewPin();
    if (!Fits(response, buffers.response, buffers.responseLength) ||
        (askNewPin && !Fits(newPin, buffers.newPin, buffers.newPinLength))) {
        return kNotDelivered;
    }
    Deliver(response, buffers.response, buffers.responseLength);
    if (askNewPin) {
        Deliver(newPin, buffers.newPin, buffers.newPinLength);
    }
    return wxID_OK;
}

void Unblock(const ChallengeResponseRequest* request,
             ChangeReply<ChallengeResponseBuffers>* reply) {
    const UnlockWithCRPrompt prompt = PromptOf(*request);
    CUnlockWithCRDialog dialog(prompt);
    reply->returnCode = dialog.ShowModal();
    if (reply->returnCode == wxID_OK) {
        reply->returnCode = DeliverUnlock(dialog, prompt.askNewPin, *reply->output);
    }
}

}  // namespace

bool HandleUnblockMethod(CMessage* message) {
    return Serve(kSelectUnblockMethod, *message, SelectMethod);
}

bool HandleChallengeResponse(CMessage* message) {
    return Serve(kUnblockThroughCr, *message, Unblock);
}

}  // namespace zeldlg
