// Calendar time from a time value. Nothing in the library calls it; kept, and tested.
#pragma once

#include <cstdint>
#include <ctime>

#include "platform/result.h"

namespace zeldlg::platform {

enum class TimeZone { Utc, Local };

/// Converts `value` (seconds since 1970) and copies the result into `out`. Uses the C library's
/// shared result: not safe from two threads at once.
/// @return kSuccess, kFailure (the year does not fit), or kMissingArgument for a null output.
int32_t BreakDownTime(time_t value, TimeZone zone, tm* out);

}  // namespace zeldlg::platform
