#include "sleep_recorder.h"

#include <mutex>
#include <string>
#include <vector>

namespace testhost {

namespace {

struct Sleeps {
    std::mutex mutex;
    std::vector<std::string> seconds;
};

// Never destroyed: a worker may still sleep while the process exits.
Sleeps& AllSleeps() {
    static auto* const sleeps = new Sleeps;
    return *sleeps;
}

}  // namespace

void ReportSleeps(JsonLine& line) {
    Sleeps& sleeps = AllSleeps();
    const std::lock_guard lock(sleeps.mutex);
    line.List("seconds", sleeps.seconds);
}

}  // namespace testhost

/// Found before the C library's own: the program exports it. Returns at once.
extern "C" __attribute__((visibility("default"))) unsigned sleep(unsigned seconds) {
    testhost::Sleeps& sleeps = testhost::AllSleeps();
    const std::lock_guard lock(sleeps.mutex);
    sleeps.seconds.push_back(std::to_string(seconds));
    return 0;
}
