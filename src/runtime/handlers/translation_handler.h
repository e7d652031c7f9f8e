// Serves the requests for a translation and for the name of the locale.
#pragma once

#include "runtime/message.h"

namespace zeldlg {

bool HandleTranslation(CMessage* message);

}  // namespace zeldlg
