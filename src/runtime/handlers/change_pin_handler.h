// Serves the requests to change, initialise or unlock a PIN or PUK.
#pragma once

#include "runtime/message.h"

namespace zeldlg {

bool HandleChangePin(CMessage* message);

}  // namespace zeldlg
