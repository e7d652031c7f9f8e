/// Children of the host: those that go on without another program, which few libraries survive,
/// and a host that waits for all there are.
#pragma once

#include <cstdint>

#include "json_line.h"

namespace testhost {

/// Forks; the child asks for the locale, finalises, asks again and ends.
/// `first`, `second`: the results; null when the child did not come to its end by itself.
void ReportForkedCalls(void* getLocale, void* finalise, JsonLine& line);

/// Forks; returns in the child, which is the host from now on. The parent ends as its child does.
void BecomeChild();

/// From now on a thread waits for whatever child ends, as servers do; the first is one that is made
/// here to see that it does.
void ReapAllChildren();
/// How many it has seen.
uint64_t ReapedChildren();

}  // namespace testhost
