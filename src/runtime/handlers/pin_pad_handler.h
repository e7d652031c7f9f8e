// Serves the requests about PIN pads: modeless windows that live across requests.
#pragma once

#include "runtime/message.h"

namespace zeldlg {

bool HandlePinPad(CMessage* message);

}  // namespace zeldlg
