// The request handlers: the only place that knows both the records of hosts and the dialogs. Each
// serves the requests with its own codes; what a dialog is built from are plain values.
#pragma once

#include <span>

#include "runtime/wx_runner.h"

namespace zeldlg {

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
