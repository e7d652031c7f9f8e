// What the library reads from its configuration store, and what stands there, in words.
#pragma once

#include <span>
#include <string>

#include "registry/registry_error.h"
#include "registry/registry_value.h"

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

const char* Describe(zeldlg::registry::RegistryError error);

// A value as "TYPE DATA", as the settings command takes it.
std::string AsWords(const zeldlg::registry::RegistryValue& value);

}  // namespace admin
