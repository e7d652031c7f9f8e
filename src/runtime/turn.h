// A lock that is granted in the order in which it was asked for.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <mutex>

namespace zeldlg {

/// Usable with std::lock_guard.
class Turn {
public:
    // The standard library's names.
    void lock() {  // NOLINT(readability-identifier-naming)
        std::unique_lock lock(m_mutex);
        const uint64_t ticket = m_nextTicket++;
        m_changed.wait(lock, [&] { return ticket == m_serving; });
    }

    void unlock() {  // NOLINT(readability-identifier-naming)
        const std::lock_guard lock(m_mutex);
        ++m_serving;
        m_changed.notify_all();
    }

    /// Threads that wait for their turn.
    int Waiting() {
        const std::lock_guard lock(m_mutex);
        return m_nextTicket == m_serving ? 0 : static_cast<int>(m_nextTicket - m_serving - 1);
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    uint64_t m_nextTicket = 0;
    uint64_t m_serving = 0;
};

}  // namespace zeldlg
