// Serves the selection of a digital ID.
#pragma once

#include "runtime/message.h"

namespace zeldlg {

bool HandleDigitalId(CMessage* message);

}  // namespace zeldlg
