// Serves the requests for a PIN before a login.
#pragma once

#include "runtime/message.h"

namespace zeldlg {

bool HandlePinEntry(CMessage* message);

}  // namespace zeldlg
