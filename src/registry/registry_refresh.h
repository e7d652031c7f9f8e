// Keeps the user's registry file up to date with the shipped one.
// The "RegistryHash" line is the version mark: raising it in the shipped file replaces every
// user's copy, the user's own changes included.
#pragma once

#include <optional>
#include <string>

#include "registry/registry_places.h"

namespace zeldlg::registry {

/// What a file says of its version: the first "RegistryHash" value, from its opening quote to the
/// end of its line, line end included.
struct RegistryStamp {
    bool readable = false;            ///< the file could be opened and read
    std::optional<std::string> text;  ///< nothing when there is no such line
};

RegistryStamp ReadStamp(const std::string& path);

enum class Refresh {
    None,
    Make,     ///< there is no user file: one is made of the shipped file, if there is such
    Replace,  ///< the stamps differ: the shipped file is copied over the user's
};

/// What RefreshUserFile() is going to do. Changes nothing.
Refresh PlanRefresh(const RegistryPlaces& places);

/// Copies the shipped file over the user's when the user has none, or when the shipped file has
/// a stamp and the user's differs. Makes the user's directory first when it is missing (mode
/// 0700). Failures change nothing and are not reported.
///
/// kept: the stamps are compared with their line ends, so a shipped file must end its lines with
/// CR LF as the library does: one with LF replaces the user's file after every change of it. A
/// longer user file keeps its old tail behind the copy.
void RefreshUserFile(const RegistryPlaces& places);

}  // namespace zeldlg::registry
