#include "runtime/life.h"

#include <fcntl.h>
#include <glib.h>
#include <pthread.h>
#include <unistd.h>
#include <wx/translation.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <mutex>
#include <string_view>
#include <type_traits>

#include "platform/thread.h"
#include "resources/catalogue.h"

namespace zeldlg {

namespace {

using State = Life::State;
using Clock = std::chrono::steady_clock;

struct Step {
    State from;
    State to;
};

constexpr Step kSteps[] = {
    {State::Down, State::Entering},    {State::Entering, State::Starting},
    {State::Entering, State::Down},  // there is no thread to be had
    {State::Starting, State::Up},      {State::Starting, State::Down},  // the start failed
    {State::Starting, State::Lost},    {State::Up, State::Ending},
    {State::Up, State::Down},  // cancelled
    {State::Up, State::Lost},          {State::Ending, State::Down},
    {State::Ending, State::Lost},      {State::Down, State::Exiting},
    {State::Entering, State::Exiting}, {State::Starting, State::Exiting},
    {State::Up, State::Exiting},       {State::Ending, State::Exiting},
    {State::Exiting, State::Parked},
};

constexpr uint32_t kStateBits = 4;

State StateIn(uint32_t word) { return static_cast<State>(word & ((1U << kStateBits) - 1)); }
pid_t ProcessIn(uint32_t word) { return static_cast<pid_t>(word >> kStateBits); }

uint32_t Word(State state, pid_t process) {
    return static_cast<uint32_t>(process) << kStateBits | static_cast<uint32_t>(state);
}

bool IsAtWork(State state) {
    return state == State::Starting || state == State::Up || state == State::Ending;
}

}  // namespace

bool Life::MayChange(State from, State to) {
    return std::any_of(std::begin(kSteps), std::end(kSteps),
                       [=](const Step& step) { return step.from == from && step.to == to; });
}

State Life::Now() const {
    const uint32_t word = m_word;
    return platform::IsForkedFrom(ProcessIn(word)) ? State::NotOurs : StateIn(word);
}

bool Life::Change(State from, State to) {
    uint32_t word = m_word;
    if (Now() != from || StateIn(word) != from || !MayChange(from, to) ||
        !m_word.compare_exchange_strong(
            word, Word(to, to == State::Entering ? getpid() : ProcessIn(word)))) {
        return false;
    }
    if (to == State::Entering) {
        m_thread = 0;
    }
    m_word.notify_all();
    if (to == State::Entering || IsAtWork(to)) {
        GoFirstAtExit();
    }
    return true;
}

bool Life::IsRunning() const {
    const State now = Now();
    return now == State::Entering || IsAtWork(now);
}

bool Life::TakesRequests() const {
    const State now = Now();
    return now == State::Entering || now == State::Starting || now == State::Up;
}

bool Life::IsOver() const { return Now() >= State::Lost; }

void Life::AwaitStart() const {
    for (uint32_t word = m_word;
         StateIn(word) == State::Entering || StateIn(word) == State::Starting; word = m_word) {
        m_word.wait(word);
    }
}

void Life::AwaitEnd() const {
    for (uint32_t word = m_word; StateIn(word) != State::Down && StateIn(word) != State::Lost;
         word = m_word) {
        m_word.wait(word);
    }
}

void Life::Enter() { m_thread = gettid(); }

bool Life::IsOwnThread() const {
    const State now = Now();
    return (IsAtWork(now) || now == State::Exiting) && m_thread == gettid();
}

void Life::Advance(State to) {
    while (!Change(Now(), to)) {
        ParkAtExit();
    }
}

void Life::ParkAtExit() {
    if (StateIn(m_word) != State::Exiting || m_thread != gettid()) {
        return;
    }
    Change(State::Exiting, State::Parked);
    for (;;) {
        pause();
    }
}

// As the kernel sees it. A thread that cannot be looked at counts as awake.
bool Life::Sleeps() const {
    std::array<char, 64> text{};
    static_cast<void>(
        snprintf(text.data(), text.size(), "/proc/self/task/%d/stat", m_thread.load()));
    const int file = open(text.data(), O_RDONLY | O_CLOEXEC);
    if (file < 0) {
        return false;
    }
    const ssize_t length = read(file, text.data(), text.size());
    close(file);
    const std::string_view line(text.data(), static_cast<size_t>(std::max<ssize_t>(length, 0)));
    return line.find(") S ") != line.npos;
}

namespace {

constexpr uint32_t kLastInstructionsMs = 100;

// Parks the thread in the call that it sleeps in, by a signal that it does not block. (A thread at
// work must not be stopped so: it may hold a lock that the exit is going to need.)
void StopIn(pid_t thread) {
    struct sigaction park = {};
    struct sigaction before = {};
    park.sa_handler = [](int) { ProcessLife().ParkAtExit(); };
    sigaction(SIGSYS, &park, &before);
    tgkill(getpid(), thread, SIGSYS);
    for (uint32_t waited = 0; ProcessLife().Now() != State::Parked && waited < 100; ++waited) {
        platform::SleepMilliseconds(1);
    }
    // It may still be on its way to a thread that blocks all signals for a while.
    if (ProcessLife().Now() == State::Parked) {
        sigaction(SIGSYS, &before, nullptr);
    }
}

}  // namespace

// A thread that has told its end still runs what the toolkit keeps for each thread.
void Life::AwaitLastInstructions() const {
    const pid_t thread = m_thread;
    for (uint32_t waited = 0; thread != 0 && waited < kLastInstructionsMs; ++waited) {
        if (tgkill(getpid(), thread, 0) != 0) {
            return;
        }
        platform::SleepMilliseconds(1);
    }
}

Life::AtExit Life::Exit() {
    State now = Now();
    const bool own = IsOwnThread();
    while (!Change(now, State::Exiting)) {
        now = Now();
        if (!MayChange(now, State::Exiting)) {
            return AtExit::GoOn;
        }
    }
    if (own) {
        Change(State::Exiting, State::Parked);  // it goes on with the exit
    } else if (now == State::Down) {
        AwaitLastInstructions();
    }
    if (!IsAtWork(now) || own) {
        return AtExit::GoOn;
    }
    if (now == State::Up) {
        g_main_context_wakeup(nullptr);  // it may be in a dialog's own loop
    }
    const Clock::time_point begin = Clock::now();
    for (Clock::time_point atWork = begin; Now() != State::Parked;) {
        platform::SleepMilliseconds(1);
        const Clock::time_point time = Clock::now();
        if (!Sleeps()) {
            atWork = time;
        }
        if (time - atWork > std::chrono::milliseconds(kAsleepMs)) {
            StopIn(m_thread);
            atWork = time;
        }
        if (time - begin > std::chrono::milliseconds(kExitLimitMs)) {
            return AtExit::EndHere;
        }
    }
    return AtExit::GoOn;
}

Life& ProcessLife() {
    static_assert(std::is_trivially_destructible_v<Life>);
    static constinit Life life;
    return life;
}

namespace {

// The C library fills no place below the last one in use, and 32 places take 1 KiB. So often the
// handler leaves its place before it takes one, and those in between are free again.
constexpr uint32_t kMovesUp = 1024;

// Which move holds: the C library knows the place of each by its number. A fork waits for a move,
// as the child could not leave the C library's lock on them.
std::mutex g_moving;
std::atomic<uintptr_t> g_last{1};

constexpr uint32_t kCatalogueWaitMs = 300;

// Called when a place is left, too. glibc hands the exit status to handlers of this kind.
void OnExit(void* move, int status) {
    if (reinterpret_cast<uintptr_t>(move) < g_last || ProcessLife().IsOver()) {
        return;
    }
    if (ProcessLife().Exit() == Life::AtExit::EndHere) {
        // What exit() itself ends with. To go on would be to destroy the libraries under the
        // thread.
        fcloseall();
        _exit(status);
    }
    for (uint32_t waited = 0; !CloseCatalogue() && waited < kCatalogueWaitMs; ++waited) {
        platform::SleepMilliseconds(1);
    }
}

}  // namespace

extern "C" int __cxa_atexit(void (*)(void*), void*, void*);
extern "C" void __cxa_finalize(void*);

namespace {

void TakePlace(uintptr_t move) {
    const auto handler = reinterpret_cast<void (*)()>(OnExit);
    auto* const name = reinterpret_cast<void*>(move);
    static_cast<void>(__cxa_atexit(reinterpret_cast<void (*)(void*)>(handler), name, name));
}

}  // namespace

void GoFirstAtExit() {
    if (ProcessLife().IsOver()) {
        return;
    }
    // An exit in a signal handler would wait for the C library's lock, which this thread has.
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_BLOCK, &all, &before);
    {
        const std::lock_guard lock(g_moving);
        const uintptr_t old = g_last;
        const uintptr_t move = old + 1;
        // Takes the new place first: an exit that begins in between would go on to the libraries
        // that the thread uses.
        const bool up = move % kMovesUp != 0;
        if (up) {
            TakePlace(move);
        }
        g_last = move;
        __cxa_finalize(reinterpret_cast<void*>(old));
        if (!up) {
            TakePlace(move);
        }
    }
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

namespace {

// A first call may come when the exit is past all handlers, and destroys libraries already. What
// the toolkit keeps for each thread that uses its texts is to be destroyed after all of them.
__attribute__((constructor)) void WatchExit() {
    pthread_atfork([] { g_moving.lock(); }, [] { g_moving.unlock(); }, [] { g_moving.unlock(); });
    wxTranslations::GetUntranslatedString(wxString());
    GoFirstAtExit();
}

}  // namespace

void StayFirstAtExit() {
    static std::atomic<Clock::rep> last{0};
    const Clock::rep now = Clock::now().time_since_epoch().count();
    if (now - last > Clock::duration(std::chrono::milliseconds(10)).count()) {
        last = now;
        GoFirstAtExit();
    }
}

}  // namespace zeldlg
