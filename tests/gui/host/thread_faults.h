/// Lets the library under test fail to create threads, as on a machine that has no more of them.
#pragma once

#include <string>

namespace testhost {

/// From now on pthread_create() fails for thread functions of the library at `path`; an empty path
/// lets it work again. Other threads of the process are created as ever.
void FailThreadsOf(const std::string& path);

}  // namespace testhost
