// Runs something in a process of its own that can make, change and remove no file, and that is
// ended when it takes too long.
#pragma once

#include <functional>
#include <string>

namespace admin {

struct ProcessResult {
    enum class End { Exited, Died, TooLong, NotStarted };

    End end = End::NotStarted;
    int code = 0;        // the exit code, or the signal that it died of
    std::string output;  // what it wrote to standard output
    std::string errors;  // and to standard error
};

// Forks: to be called while the process has one thread. `action` gives the exit code.
//
// The kernel refuses the process whatever makes or removes files or opens them for writing alone;
// files that are there can be opened for both, as devices and sockets need it. It sees a read-only
// file system then. NotStarted: there is no process, or the kernel cannot do that.
ProcessResult RunReadOnly(const std::function<int()>& action, int seconds);

}  // namespace admin
