// Serves the requests for the PIN of a legally binding signature.
#pragma once

#include "runtime/message.h"

namespace zeldlg {

bool HandleLegalPin(CMessage* message);

}  // namespace zeldlg
