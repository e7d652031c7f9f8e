// Serves the requests about the window of a key generation: modeless, it lives across requests.
#pragma once

#include "runtime/message.h"

namespace zeldlg {

bool HandleKeyGeneration(CMessage* message);

}  // namespace zeldlg
