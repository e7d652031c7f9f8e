#include "runtime/exit_guard.h"

#include <glib.h>
#include <pthread.h>
#include <unistd.h>

#include <atomic>
#include <utility>

#include "platform/event.h"

namespace zeldlg {

namespace {

using platform::ManualResetEvent;

// A thread that is busy for longer than this is left to its fate: exiting must not hang.
constexpr uint32_t kParkTimeoutMs = 1000;

enum class Phase {
    Down,
    Changing,  // the toolkit is being started or stopped; there is no loop to park the thread in
    Up,
};

// Written on the GUI thread, read by the thread that exits.
std::atomic<Phase> g_phase{Phase::Down};
std::atomic<pthread_t> g_guiThread{};

// What the exiting thread waits for; null until then. Handed over here and not by the main context,
// whose locks a thread sanitizer does not see.
std::atomic<ManualResetEvent*> g_parked{nullptr};

// GUI thread only. Never destroyed: that thread may be parked while static objects are destroyed.
std::function<void()>& Park() {
    static auto* const park = new std::function<void()>;
    return *park;
}

[[noreturn]] void ParkForever() {
    Park()();
    g_parked.load()->Set();
    for (;;) {
        pause();
    }
}

bool IsGuiThread() { return pthread_equal(pthread_self(), g_guiThread) != 0; }

// A host that runs the main context itself gets here too: its thread goes on.
gboolean ParkGuiThread(gpointer) {
    if (IsGuiThread()) {
        ParkForever();
    }
    g_parked.load()->Set();
    return G_SOURCE_REMOVE;
}

// The exiting thread says that it waits before it looks at the phase: one of the two always sees
// the other.
void EnterPhase(Phase phase) {
    g_phase = phase;
    if (g_parked.load() != nullptr) {
        ParkForever();
    }
}

// Its destruction is the process's exit. Objects are destroyed in the reverse order of their
// creation, so this one goes before those that the toolkit made before it.
class ExitGuard {
public:
    ~ExitGuard() {
        // A forked child has no GUI thread, and the locks of the main context may be taken.
        if (getpid() != m_process || g_parked.load() != nullptr || IsGuiThread()) {
            return;
        }
        // Never destroyed: the GUI thread may still be on its way out of Set.
        ManualResetEvent* parked = nullptr;
        if (platform::CreateEvent(platform::EventKind::ManualReset, &parked) != 0) {
            return;
        }
        g_parked = parked;
        const Phase phase = g_phase;
        if (phase == Phase::Up) {
            g_idle_add_full(G_PRIORITY_HIGH, ParkGuiThread, nullptr, nullptr);
        }
        if (phase != Phase::Down) {
            platform::WaitForEvent(*parked, kParkTimeoutMs);
        }
    }

private:
    pid_t m_process = getpid();
};

}  // namespace

void WatchExit() { static const ExitGuard kGuard; }

void AwaitGuiThreadAtExit(std::function<void()> park) {
    Park() = std::move(park);
    g_guiThread = pthread_self();
    AwaitGuiThreadAtExit();
}

void AwaitGuiThreadAtExit() { EnterPhase(Phase::Changing); }

void ParkGuiThreadAtExit() {
    static const ExitGuard kGuard;  // goes before what the start made, too
    EnterPhase(Phase::Up);
}

void ForgetGuiThreadAtExit() { EnterPhase(Phase::Down); }

}  // namespace zeldlg
