// The life of the private thread that runs the toolkit: one state, which only this file changes,
// and what a process's exit does about it.
#pragma once

#include <sys/types.h>

#include <atomic>
#include <cstdint>

namespace zeldlg {

class Life {
public:
    enum class State : uint32_t {
        Down,      ///< No thread; also after a start that failed.
        Entering,  ///< It is being made, or waits for the loader: it has touched nothing yet.
        Starting,  ///< It starts the toolkit.
        Up,
        Ending,   ///< It ends the toolkit.
        Lost,     ///< It stays where its display broke; for good.
        Exiting,  ///< The process exits: it is going to stay where it sees that.
        Parked,   ///< It has seen it.
        NotOurs,  ///< This process was forked from the one whose thread it is.
    };

    /// The table of changes.
    static bool MayChange(State from, State to);

    State Now() const;

    /// @return Whether the state was `from`, may change to `to`, and has.
    bool Change(State from, State to);

    /// A thread has been made or is about to be, and has not ended.
    bool IsRunning() const;
    /// It is going to look into its queue.
    bool TakesRequests() const;
    /// Nobody is to call, wait or take a lock any more.
    bool IsOver() const;

    /// Waits without a time limit until no start is under way.
    void AwaitStart() const;
    /// Waits without a time limit until the thread has ended or is lost. Never returns once the
    /// process exits: the caller would run on while the host's own objects are destroyed.
    void AwaitEnd() const;

    /// What the exit of the process comes to.
    enum class AtExit {
        GoOn,     ///< The thread is parked, or was not there.
        EndHere,  ///< It is still at work, after kExitLimitMs.
    };
    static constexpr uint32_t kExitLimitMs = 1500;
    /// That long asleep in the midst of a call of the toolkit's, it waits for something outside,
    /// and is parked there.
    static constexpr uint32_t kAsleepMs = 500;

    /// The exiting thread: from now on nothing changes but to Parked, which is waited for. Takes
    /// no lock: it may have interrupted any code.
    AtExit Exit();

    /// The private thread, first of all.
    void Enter();
    /// The private thread: goes on to a state. Never returns once the process exits: parks.
    void Advance(State to);
    /// Never returns to the private thread once the process exits. Nothing on other threads.
    void ParkAtExit();
    /// This is the private thread, somewhere in the toolkit.
    bool IsOwnThread() const;
    /// The kernel's id of the last thread; 0 while one is made that does not run yet.
    pid_t Thread() const { return m_thread; }

private:
    bool Sleeps() const;
    void AwaitLastInstructions() const;

    // The state, and above it the id of the process that made the thread, which the kernel keeps
    // below 2^22; 0 before the first thread. In one word, so that no look takes a lock.
    std::atomic<uint32_t> m_word{0};
    std::atomic<pid_t> m_thread{0};
};

/// That of the process's private thread. May be used until the process is gone.
Life& ProcessLife();

/// Makes the exit begin with ProcessLife().Exit(), before every exit handler and static object that
/// there is now: libraries that the toolkit loads, and texts it first draws, register more of them
/// all the time, and the last goes first. (Not for an instant in a thousand moves.) Any thread;
/// every change of state to one at work does it.
void GoFirstAtExit();
/// The same, at most every ten milliseconds.
void StayFirstAtExit();

}  // namespace zeldlg
