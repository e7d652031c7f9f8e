#include "pin_cache.h"

#include <algorithm>
#include <condition_variable>
#include <map>
#include <mutex>
#include <thread>

namespace p11 {

using Clock = std::chrono::steady_clock;

// Shared with the thread, which may outlive the cache by a moment. It is never joined: a child that
// was forked does not have it.
struct PinCache::State {
    struct Entry {
        zeldlg::Secret pin;
        Clock::time_point end;
    };

    std::mutex mutex;
    std::condition_variable changed;
    std::map<CK_SLOT_ID, Entry> entries;
    bool hasThread = false;

    void WipeInTime() {
        std::unique_lock lock(mutex);
        while (!entries.empty()) {
            const auto first = std::min_element(entries.begin(), entries.end(),
                                                [](const auto& one, const auto& other) {
                                                    return one.second.end < other.second.end;
                                                });
            if (first->second.end <= Clock::now()) {
                entries.erase(first);
            } else {
                changed.wait_until(lock, Clock::time_point(first->second.end));
            }
        }
        hasThread = false;
    }
};

PinCache::PinCache(std::chrono::seconds lifetime)
    : m_lifetime(lifetime), m_state(std::make_shared<State>()) {}

PinCache::~PinCache() {
    const std::lock_guard lock(m_state->mutex);
    m_state->entries.clear();
    m_state->changed.notify_all();
}

void PinCache::Keep(CK_SLOT_ID slot, zeldlg::Secret pin) {
    if (m_lifetime.count() == 0 || pin.empty()) {
        return;
    }
    const std::lock_guard lock(m_state->mutex);
    m_state->entries[slot] = {std::move(pin), Clock::now() + m_lifetime};
    if (!m_state->hasThread) {
        std::thread([state = m_state] { state->WipeInTime(); }).detach();
        m_state->hasThread = true;
    }
}

void PinCache::Forget(CK_SLOT_ID slot) {
    const std::lock_guard lock(m_state->mutex);
    m_state->entries.erase(slot);
    m_state->changed.notify_all();
}

CK_RV PinCache::Use(CK_SLOT_ID slot, const std::function<CK_RV(const zeldlg::Secret&)>& use) {
    const std::lock_guard lock(m_state->mutex);
    const auto entry = m_state->entries.find(slot);
    return entry != m_state->entries.end() ? use(entry->second.pin) : CKR_PIN_INCORRECT;
}

}  // namespace p11
