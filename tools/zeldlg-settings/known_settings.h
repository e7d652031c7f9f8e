// What the library reads from its configuration store, for listing it.
#pragma once

#include <cstdint>
#include <span>

namespace admin {

enum class SettingType { Number, Text, TextOrBytes };

struct KnownSetting {
    const wchar_t* key;  // below the library's general key; empty for that key itself
    const wchar_t* value;
    SettingType type;
    const char* fallback;  // what counts when it is missing
};

// All but those of policies, of which there can be any number.
std::span<const KnownSetting> KnownSettings();

// The values of one policy.
std::span<const KnownSetting> PolicySettings();

}  // namespace admin
