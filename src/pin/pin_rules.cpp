#include "pin/pin_rules.h"

#include "resources/texts.h"

namespace zeldlg {

bool PinLengthRule::Update(uint32_t length) {
    const bool minOk = length >= m_minLength;
    const bool maxOk = m_maxLength >= length;
    const bool changed = minOk != m_minOk || maxOk != m_maxOk;
    m_minOk = minOk;
    m_maxOk = maxOk;
    return changed;
}

namespace {

constexpr const char* kLastAttempt = CATALOGUE_KEY("WARNING: You have only 1 attempt left!");
constexpr const char* kMayLock =
    CATALOGUE_KEY("WARNING: Repeated login failures may lock the token!");

const char* FailureLine(bool failedEarlier) {
    return failedEarlier ? CATALOGUE_KEY("The PIN has previously been entered incorrectly")
                         : CATALOGUE_KEY("PIN incorrect");
}

}  // namespace

PinFailureLines DescribeFailure(const PinAttempts& attempts) {
    if (attempts.noFailure && !attempts.finalTry) {
        return {};
    }
    return {.failure = FailureLine(attempts.failedEarlier),
            .warning = attempts.finalTry ? kLastAttempt : kMayLock,
            .triesLeft = {}};
}

PinFailureLines DescribeFailure(const PinRetryCounter& counter) {
    if (counter.triesLeft == counter.maxTries && counter.triesLeft != 1) {
        return {};
    }
    if (counter.triesLeft == 1) {
        return {.failure = FailureLine(counter.failedEarlier),
                .warning = kLastAttempt,
                .triesLeft = {}};
    }
    return {.failure = FailureLine(counter.failedEarlier),
            .warning = kMayLock,
            .triesLeft = counter.triesLeft};
}

}  // namespace zeldlg
