// The request handlers: the only place that knows both the records of hosts and the dialogs. Each
// serves the requests with its own codes; what a dialog is built from are plain values.
#pragma once

#include <span>
#include <tuple>

#include "runtime/remote/records.h"
#include "runtime/requests.h"
#include "runtime/wx_runner.h"

namespace zeldlg {

/// Serves a message that is such a request, of this process or another: calls `body` with what the
/// handler of one reads and writes. @return Whether it is one.
template <typename Record, typename Reply, typename Body>
bool Serve(const Request<Record, Reply>& request, const CMessage& message, const Body& body) {
    if (message.Code() != request) {
        return false;
    }
    if (message.Call() != nullptr) {
        remote::WireParameters<Record, Reply>(*message.Call()).Serve(body);
    } else {
        std::apply(body, std::tuple_cat(Unpacked<Record>(message.Param1()),
                                        Unpacked<Reply>(message.Param2())));
    }
    return true;
}

bool HandleMessageBox(CMessage* message);
/// The fingerprint token's window: modeless, it lives across requests.
bool HandleBiometricNotification(CMessage* message);
bool HandleTokenSelection(CMessage* message);
bool HandlePinEntry(CMessage* message);
bool HandleTranslation(CMessage* message);
bool HandleEnrolmentHint(CMessage* message);
/// The window of a key generation: modeless, it lives across requests.
bool HandleKeyGeneration(CMessage* message);
bool HandleLegalPin(CMessage* message);
bool HandleDigitalId(CMessage* message);
bool HandleUnblockMethod(CMessage* message);
bool HandleChangePin(CMessage* message);
bool HandleChallengeResponse(CMessage* message);
/// PIN pads: modeless, they live across requests.
bool HandlePinPad(CMessage* message);

/// All of them, in the order in which they are offered a request.
std::span<const RequestHandler> HandlerChain();

}  // namespace zeldlg
