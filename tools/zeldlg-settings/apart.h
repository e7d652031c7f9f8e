// Runs something in a process of its own, on a copy of the settings, and ends it when it takes too
// long.
#pragma once

#include <functional>
#include <string>

namespace admin {

struct Ending {
    enum class How { Exited, Died, TooLong, NotStarted };

    How how = How::NotStarted;
    int code = 0;        // the exit code, or the signal that it died of
    std::string output;  // what it wrote to standard output
    std::string errors;  // and to standard error
};

// Forks: to be called while the process has one thread. `action` gives the exit code.
//
// The process sees a home for settings of its own, with a copy of the file `settings` unless that
// is empty, and a place for caches: what it changes there goes with it. It dies of its alarm.
Ending RunApart(const std::string& settings, unsigned seconds, const std::function<int()>& action);

}  // namespace admin
