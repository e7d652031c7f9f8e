// What a PIN dialog says about earlier wrong attempts.
#pragma once

#include <cstdint>
#include <optional>

namespace zeldlg {

/// What a host that does not know the retry counter tells.
struct PinAttempts {
    bool noFailure;
    bool finalTry;
    bool failedEarlier;
};

/// What a host that knows the retry counter tells.
struct PinRetryCounter {
    uint32_t maxTries;
    uint32_t triesLeft;
    bool failedEarlier;
};

/// The red lines: catalogue keys, null where there is no line.
struct PinFailureLines {
    const char* failure = nullptr;
    const char* warning = nullptr;
    /// Follows the warning on a line of its own.
    std::optional<uint32_t> triesLeft;
};

PinFailureLines DescribeFailure(const PinAttempts& attempts);
PinFailureLines DescribeFailure(const PinRetryCounter& counter);

}  // namespace zeldlg
