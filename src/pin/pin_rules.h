// What holds for a PIN that is asked for, without a window: the limits of its length, and what is
// said about earlier wrong attempts.
#pragma once

#include <cstdint>
#include <optional>

namespace zeldlg {

class PinLengthRule {
public:
    /// Lengths in characters.
    PinLengthRule(uint32_t minLength, uint32_t maxLength)
        : m_minLength(minLength), m_maxLength(maxLength) {}

    /// Takes the length of what is typed now. @return Whether a limit is kept now that was not
    /// before, or the other way round.
    bool Update(uint32_t length);

    uint32_t MinLength() const { return m_minLength; }
    uint32_t MaxLength() const { return m_maxLength; }
    /// kept: an empty PIN is taken for too short until the first Update that changes something,
    /// also when the minimum is 0.
    bool MinOk() const { return m_minOk; }
    bool MaxOk() const { return m_maxOk; }
    bool Accepts() const { return m_minOk && m_maxOk; }

private:
    uint32_t m_minLength;
    uint32_t m_maxLength;
    bool m_minOk = false;
    bool m_maxOk = true;
};

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
