// Serves the requests about the fingerprint token's window: modeless, it lives across requests.
#pragma once

#include "runtime/message.h"

namespace zeldlg {

bool HandleBiometricNotification(CMessage* message);

}  // namespace zeldlg
