// Serves the request to unblock a PIN off-line, with challenge and response.
#pragma once

#include "runtime/message.h"

namespace zeldlg {

bool HandleChallengeResponse(CMessage* message);

}  // namespace zeldlg
