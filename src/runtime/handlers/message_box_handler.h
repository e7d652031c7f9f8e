// Serves the requests for a message box.
#pragma once

#include "runtime/message.h"

namespace zeldlg {

bool HandleMessageBox(CMessage* message);

}  // namespace zeldlg
