// How long tests wait for what has to happen. Whoever gets what was waited for does not wait: the
// limit is far beyond what a busy machine needs, and no test asks for more haste than that.
#pragma once

#include <chrono>
#include <cstdint>
#include <thread>

namespace zeldlg::test {

/// Milliseconds.
inline constexpr uint32_t kLongMs = 120'000;

/// @return Whether the predicate held within kLongMs.
template <typename Predicate>
bool WaitUntil(const Predicate& predicate) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(kLongMs);
    while (!predicate()) {
        if (std::chrono::steady_clock::now() > end) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::microseconds(50));
    }
    return true;
}

}  // namespace zeldlg::test
