// The one mutex of the process that every operation of the configuration store runs under.
// It is created on first use and destroyed by the final clean-up, after which nothing runs.
#pragma once

#include <functional>

namespace zeldlg::registry {

/// Holds the mutex while it lives; may be nested on one thread. The thread cannot be cancelled
/// meanwhile: a cancelled operation would leave a half-written file and a locked mutex behind.
class RegistryLock {
public:
    RegistryLock();
    ~RegistryLock();
    RegistryLock(const RegistryLock&) = delete;
    RegistryLock& operator=(const RegistryLock&) = delete;

    /// False after the final clean-up.
    bool IsHeld() const { return m_held; }

    /// Runs `last` under the mutex, unlocks it as often as it is held and destroys it. Called from
    /// within an operation it leaves out `last`, which would take away what that operation uses.
    /// Does nothing when another thread does not give the mutex up within a second: the process
    /// is about to end then and must not hang. Does nothing in a forked child either: what the
    /// parent has not written yet is the parent's to write.
    static void Close(const std::function<void()>& last);

private:
    int m_cancelState = 0;
    bool m_held = false;
};

}  // namespace zeldlg::registry
