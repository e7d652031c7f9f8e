/// Takes the place of the C library's sleep() in the whole process: the built-in demonstration
/// sleeps for hours.
#pragma once

#include "json_line.h"

namespace testhost {

/// `seconds`: what was asked for so far, as text.
void ReportSleeps(JsonLine& line);

}  // namespace testhost
