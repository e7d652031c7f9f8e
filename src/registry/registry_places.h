// Where registry files live: the directories and environment variables that decide it.
// One value, so that a test can move all of them into a directory of its own.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace zeldlg::registry {

struct RegistryPlaces {
    /// The directory of the shipped registry, which users' copies are made from.
    std::string shippedDirectory = "/usr/share/tessaly";
    /// The directory of the last registry that is tried for reading.
    std::string systemDirectory = "/etc/tessaly";
    /// What the names of temporary directories begin with; not itself a directory name.
    std::string temporaryPrefix = "/tmp";
    /// Looks an environment variable up; nothing when it is not set.
    std::function<std::optional<std::string>(const char* name)> environment = ProcessEnvironment;

    /// The environment of the process.
    static std::optional<std::string> ProcessEnvironment(const char* name);
};

/// The user's directory: ".tessaly" under ZEL_HOME, else HOME, else HOMEDRIVE followed by
/// HOMEPATH when both are set and shorter than 260 bytes together.
/// A variable that is set but empty counts as set.
std::optional<std::string> UserDirectory(const RegistryPlaces& places);

/// The temporary directory of the user that USER names; nothing when USER is not set.
std::optional<std::string> UserTemporaryDirectory(const RegistryPlaces& places);

/// The temporary directory for everyone.
std::string SharedTemporaryDirectory(const RegistryPlaces& places);

/// Where a registry is looked for, in this order: the user's directory, the user's temporary
/// directory, the shipped one and the system's.
std::vector<std::string> ReadingDirectories(const RegistryPlaces& places);

/// The registry file in a directory.
std::string RegistryPath(const std::string& directory);

}  // namespace zeldlg::registry
