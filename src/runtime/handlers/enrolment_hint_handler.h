// Serves the request to explain an enrolment before it begins.
#pragma once

#include "runtime/message.h"

namespace zeldlg {

bool HandleEnrolmentHint(CMessage* message);

}  // namespace zeldlg
