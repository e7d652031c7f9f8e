// Host threads that call the library at random, and judge what it answers.
#pragma once

#include <zeldlg/zeldlg.h>

#include <atomic>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace life {

using Library = DLG_FunctionList;

/// One line on standard output. May be called in a signal handler, and while memory is allocated.
void Say(const char* word, uint64_t number);

/// Whether there is a thread of the library's, in a process that has so many of its own. (Those of
/// the toolkit's libraries have names.)
bool HasLibraryThread(size_t own);

/// Loads the library and gives its table. Ends the process when that does not work.
const Library& Open(const char* path);

uint64_t Nanoseconds();  ///< of the monotonic clock, which the harness reads too
void SleepUntil(uint64_t nanoseconds);

/// Says what went wrong and ends the process at once with a status of its own.
[[noreturn]] void Wrong(const char* call, uint32_t result);

/// One kind of call, or of a few that belong together, by its name.
struct Act {
    const char* name;
    void (*perform)(const Library& library, uint32_t random);
};
const Act& FindAct(std::string_view name);

/// Calls may answer their failure value: the process exits, the display is dead, or somebody
/// finalises.
void AllowFailures(bool allowed = true);
bool FailuresAllowed();

/// Where a calling thread is; it lives as long as the process.
struct Caller {
    std::atomic<pid_t> thread{0};  ///< the kernel's number; 0 until it runs
    std::atomic<bool> inCall{false};
};

/// Threads that make calls of the given kinds in random order. They live on beside an exit, so that
/// this is never destroyed.
class Load {
public:
    Load(const Library& library, std::vector<const Act*> acts, uint32_t seed, unsigned threads);
    ~Load() = delete;

    void Start();                      ///< all at once; each makes one call at least
    void Stop() { m_stopped = true; }  ///< after the call that each is in
    /// Once stopped. @return False when a call is left that nobody answers: one that came into a
    /// slow start that failed. That is how the library is, and it says so.
    bool Join();
    std::vector<Caller>& Callers() { return m_callers; }
    /// Called by a thread between two calls.
    void SetBetweenCalls(void (*between)()) { m_between = between; }

private:
    void Run(unsigned index);

    const Library& m_library;
    std::vector<const Act*> m_acts;
    uint32_t m_seed;
    std::vector<Caller> m_callers;
    std::atomic<unsigned> m_running{0};
    void (*m_between)() = nullptr;
    std::atomic<bool> m_started{false};
    std::atomic<bool> m_stopped{false};
};

/// A thread that allocates and frees as fast as it can, until the process is gone.
void StartAllocating();

/// Starts a thread that nobody joins. `body` must live as long as the process.
pthread_t StartThread(void* (*body)(void*), void* argument);

}  // namespace life
