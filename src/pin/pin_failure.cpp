#include "pin/pin_failure.h"

#include "resources/catalogue_key.h"

namespace zeldlg {

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
