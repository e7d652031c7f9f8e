/// Lets the library under test fail to create threads, as on a machine that has no more of them, or
/// wait for their beginning, as on one that is too busy.
#pragma once

#include <string>

namespace testhost {

enum class ThreadFault { None, Fail, BeginLate };

constexpr unsigned kLateMs = 1500;

/// From now on threads for functions of the library at `path` are not created, or begin kLateMs
/// late. Other threads of the process are created as ever.
void SetThreadFault(ThreadFault fault, const std::string& path);

}  // namespace testhost
