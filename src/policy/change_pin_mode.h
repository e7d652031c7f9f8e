// What a change dialog is about, and its texts.
#pragma once

#include <cstdint>
#include <optional>

namespace zeldlg {

/// In the order of precedence.
enum class ChangePinMode { ChangePuk, UnlockPin, ChangeTransportPin, InitialisePin, ChangePin };

struct ChangePinFlags {
    bool changePuk = false;
    bool unlock = false;
    bool transport = false;
    bool initialise = false;
};

/// The first mode whose flag is set; ChangePin when none is.
ChangePinMode SelectMode(const ChangePinFlags& flags);

/// Catalogue keys.
struct ChangePinTexts {
    const char* title;
    const char* heading;  ///< a format that takes the token's label
    const char* oldLabel;
    const char* newLabel;
    const char* confirmLabel;
    const char* oldRule;  ///< a format that takes minimum and maximum
    const char* minRule;  ///< a format that takes the minimum
    const char* maxRule;  ///< a format that takes the maximum
    const char* equalRule;
};

const ChangePinTexts& TextsOf(ChangePinMode mode);

/// What the host tells about earlier wrong attempts.
struct ChangePinAttempts {
    bool noFailure = true;
    bool finalTry = false;
    std::optional<uint32_t> triesLeft;
};

/// What is said about them: catalogue keys, null where there is nothing to say.
struct ChangePinFailure {
    const char* header = nullptr;
    const char* warning = nullptr;
    /// Said before the warning.
    std::optional<uint32_t> triesLeft;
};

ChangePinFailure DescribeFailure(ChangePinMode mode, const ChangePinAttempts& attempts);

}  // namespace zeldlg
