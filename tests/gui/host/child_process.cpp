#include "child_process.h"

#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <thread>

#include "arguments.h"

namespace testhost {

namespace {

using GetLocale = uint32_t (*)(wchar_t*, uint32_t*);
using Finalise = void (*)();
using Results = std::array<uint32_t, 2>;

constexpr unsigned kPatienceSeconds = 90;

std::atomic<uint64_t> g_reaped = 0;

[[noreturn]] void RunChild(int writing, GetLocale getLocale, Finalise finalise) {
    alarm(kPatienceSeconds);  // the signal ends a child that hangs
    Results results{};
    for (uint32_t& result : results) {
        std::array<wchar_t, 64> buffer{};
        auto size = static_cast<uint32_t>(buffer.size());
        result = getLocale(buffer.data(), &size);
        finalise();
    }
    const bool written = write(writing, results.data(), sizeof results) == sizeof results;
    _exit(written ? 0 : 1);
}

}  // namespace

void ReportForkedCalls(void* getLocale, void* finalise, JsonLine& line) {
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0) {
        line.Null("first");
        return;
    }
    const pid_t child = fork();
    if (child == 0) {
        RunChild(ends[1], reinterpret_cast<GetLocale>(getLocale),
                 reinterpret_cast<Finalise>(finalise));
    }
    close(ends[1]);
    Results results{};
    const bool complete = read(ends[0], results.data(), sizeof results) == sizeof results;
    close(ends[0]);
    waitpid(child, nullptr, 0);
    if (complete) {
        line.Unsigned("first", results[0]);
        line.Unsigned("second", results[1]);
    } else {
        line.Null("first");
        line.Null("second");
    }
}

void BecomeChild() {
    const pid_t child = fork();
    if (child == 0) {
        return;
    }
    if (child < 0) {
        throw ProtocolError("cannot fork");
    }
    int status = 0;
    const bool ended = waitpid(child, &status, 0) == child && WIFEXITED(status);
    _exit(ended ? WEXITSTATUS(status) : EXIT_FAILURE);
}

void ReapAllChildren() {
    std::thread([] {
        for (;;) {
            if (waitpid(-1, nullptr, 0) > 0) {
                ++g_reaped;
            } else {
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            }
        }
    }).detach();
    if (fork() == 0) {
        _exit(EXIT_SUCCESS);
    }
    while (g_reaped == 0) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

uint64_t ReapedChildren() { return g_reaped; }

}  // namespace testhost
