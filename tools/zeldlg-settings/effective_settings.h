// Which settings file a host of this user would read next, found without touching anything.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "registry/registry_places.h"
#include "registry/registry_refresh.h"

namespace admin {

struct SettingsPlace {
    std::string name;  // whose it is
    std::string file;
    int error = 0;  // why it cannot be opened for reading; 0 when it can
};

struct EffectiveSettings {
    zeldlg::registry::RegistryPlaces places;
    std::vector<SettingsPlace> looked;  // in the order of the search
    zeldlg::registry::Refresh refresh = zeldlg::registry::Refresh::None;
    bool copied = false;  // the refresh has a shipped file to copy and a place to write it to
    // Whose content counts: the shipped file's when it is copied first. Nothing when there is none,
    // and an empty one would be made.
    std::optional<std::string> file;
};

EffectiveSettings FindSettings();

}  // namespace admin
