// Serves the request to choose how a PIN is unblocked.
#pragma once

#include "runtime/message.h"

namespace zeldlg {

bool HandleUnblockMethod(CMessage* message);

}  // namespace zeldlg
