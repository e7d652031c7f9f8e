#include "policy/change_pin_mode.h"

#include "resources/texts.h"

namespace zeldlg {

namespace {

constexpr const char* kOldPinRule = CATALOGUE_KEY("PIN length between %d and %d bytes");
constexpr const char* kOldPukRule = CATALOGUE_KEY("PUK length between %d and %d bytes");
constexpr const char* kMinPinRule = CATALOGUE_KEY("Minimum PIN length %d bytes");
constexpr const char* kMaxPinRule = CATALOGUE_KEY("Maximum PIN length %d bytes");
constexpr const char* kEqualPinRule = CATALOGUE_KEY("New PIN equal to confirmed new PIN");
constexpr const char* kNewPin = CATALOGUE_KEY("Enter new PIN:");
constexpr const char* kConfirmPin = CATALOGUE_KEY("Confirm new PIN:");
constexpr const char* kChangingPin = CATALOGUE_KEY("Changing the PIN for \"%s\":");

// By ChangePinMode.
constexpr ChangePinTexts kTexts[] = {
    {CATALOGUE_KEY("Change PUK"), CATALOGUE_KEY("Changing the PUK for \"%s\":"),
     CATALOGUE_KEY("Enter old PUK:"), CATALOGUE_KEY("Enter new PUK:"),
     CATALOGUE_KEY("Confirm new PUK:"), kOldPukRule, CATALOGUE_KEY("Minimum PUK length %d bytes"),
     CATALOGUE_KEY("Maximum PUK length %d bytes"),
     CATALOGUE_KEY("New PUK equal to confirmed new PUK")},
    {CATALOGUE_KEY("Unlock PIN"), CATALOGUE_KEY("Unlocking the PIN for \"%s\":"),
     CATALOGUE_KEY("Enter PUK:"), kNewPin, kConfirmPin, kOldPukRule, kMinPinRule, kMaxPinRule,
     kEqualPinRule},
    {CATALOGUE_KEY("Change transport PIN"), kChangingPin, CATALOGUE_KEY("Enter transport PIN:"),
     kNewPin, kConfirmPin, kOldPinRule, kMinPinRule, kMaxPinRule, kEqualPinRule},
    {CATALOGUE_KEY("Initialise PIN"), CATALOGUE_KEY("Initialising the PIN for \"%s\":"),
     CATALOGUE_KEY("Enter PUK:"), kNewPin, kConfirmPin, kOldPukRule, kMinPinRule, kMaxPinRule,
     kEqualPinRule},
    {CATALOGUE_KEY("Change PIN"), kChangingPin, CATALOGUE_KEY("Enter old PIN:"), kNewPin,
     kConfirmPin, kOldPinRule, kMinPinRule, kMaxPinRule, kEqualPinRule},
};

}  // namespace

ChangePinMode SelectMode(const ChangePinFlags& flags) {
    return flags.changePuk    ? ChangePinMode::ChangePuk
           : flags.unlock     ? ChangePinMode::UnlockPin
           : flags.transport  ? ChangePinMode::ChangeTransportPin
           : flags.initialise ? ChangePinMode::InitialisePin
                              : ChangePinMode::ChangePin;
}

const ChangePinTexts& TextsOf(ChangePinMode mode) { return kTexts[static_cast<size_t>(mode)]; }

ChangePinFailure DescribeFailure(ChangePinMode mode, const ChangePinAttempts& attempts) {
    if (attempts.noFailure && !attempts.finalTry) {
        return {};
    }
    const bool isPuk = mode == ChangePinMode::ChangePuk || mode == ChangePinMode::UnlockPin;
    ChangePinFailure failure;
    if (attempts.noFailure) {
        failure.header = isPuk ? CATALOGUE_KEY("The PUK has previously been entered incorrectly")
                               : CATALOGUE_KEY("The PIN has previously been entered incorrectly");
    } else {
        failure.header = isPuk ? CATALOGUE_KEY("PUK incorrect") : CATALOGUE_KEY("PIN incorrect");
    }
    if (attempts.finalTry) {
        failure.warning = CATALOGUE_KEY("WARNING: You have only 1 attempt left!");
    } else {
        failure.triesLeft = attempts.triesLeft;
        failure.warning = CATALOGUE_KEY("WARNING: Repeated login failures may lock the token!");
    }
    return failure;
}

}  // namespace zeldlg
