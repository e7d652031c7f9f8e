// What stands in the configuration store, in words.
#pragma once

#include <string>

#include "registry/registry_error.h"
#include "registry/registry_value.h"

namespace admin {

const char* Describe(zeldlg::registry::RegistryError error);

// A value as "TYPE DATA", as the settings command takes it.
std::string AsWords(const zeldlg::registry::RegistryValue& value);

}  // namespace admin
