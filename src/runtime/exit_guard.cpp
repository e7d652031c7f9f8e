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

// Written on the GUI thread, read by the thread that exits.
std::atomic<bool> g_guiThreadIsUp{false};
std::atomic<pthread_t> g_guiThread{};

// What the exiting thread waits for. Handed over here and not by the main context, whose locks a
// thread sanitizer does not see.
std::atomic<ManualResetEvent*> g_parked{nullptr};

// GUI thread only. Never destroyed: that thread may be parked while static objects are destroyed.
std::function<void()>& Park() {
    static auto* const park = new std::function<void()>;
    return *park;
}

// A host that runs the main context itself gets here too: its thread goes on.
gboolean ParkForever(gpointer) {
    if (pthread_equal(pthread_self(), g_guiThread) == 0) {
        g_parked.load()->Set();
        return G_SOURCE_REMOVE;
    }
    Park()();
    g_parked.load()->Set();
    for (;;) {
        pause();
    }
}

// Its destruction is the process's exit. Objects are destroyed in the reverse order of their
// creation, so this one goes before those that the toolkit made before it.
class ExitGuard {
public:
    ~ExitGuard() {
        // A forked child has no GUI thread, and the locks of the main context may be taken.
        if (!g_guiThreadIsUp || getpid() != m_process) {
            return;
        }
        // Never destroyed: the GUI thread may still be on its way out of Set.
        ManualResetEvent* parked = nullptr;
        if (platform::CreateEvent(platform::EventKind::ManualReset, &parked) != 0) {
            return;
        }
        g_parked = parked;
        g_idle_add_full(G_PRIORITY_HIGH, ParkForever, nullptr, nullptr);
        platform::WaitForEvent(*parked, kParkTimeoutMs);
    }

private:
    pid_t m_process = getpid();
};

}  // namespace

void ParkGuiThreadAtExit(std::function<void()> park) {
    Park() = std::move(park);
    static const ExitGuard kGuard;
    g_guiThread = pthread_self();
    g_guiThreadIsUp = true;
}

void ForgetGuiThreadAtExit() { g_guiThreadIsUp = false; }

}  // namespace zeldlg
