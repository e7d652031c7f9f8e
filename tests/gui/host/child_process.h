/// A child of the host that goes on without another program, which few libraries survive.
#pragma once

#include "json_line.h"

namespace testhost {

/// Forks; the child asks for the locale, finalises, asks again and ends.
/// `first`, `second`: the results; null when the child did not come to its end by itself.
void ReportForkedCalls(void* getLocale, void* finalise, JsonLine& line);

}  // namespace testhost
