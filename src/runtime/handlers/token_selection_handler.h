// Serves the selection of a token.
#pragma once

#include "runtime/message.h"

namespace zeldlg {

bool HandleTokenSelection(CMessage* message);

}  // namespace zeldlg
