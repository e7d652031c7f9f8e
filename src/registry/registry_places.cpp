#include "registry/registry_places.h"

#include <cstddef>
#include <cstdlib>

namespace zeldlg::registry {
namespace {

constexpr size_t kHomeLimit = 260;

std::optional<std::string> HomeDirectory(const RegistryPlaces& places) {
    for (const char* variable : {"ZEL_HOME", "HOME"}) {
        if (std::optional<std::string> home = places.environment(variable)) {
            return home;
        }
    }
    const std::optional<std::string> drive = places.environment("HOMEDRIVE");
    const std::optional<std::string> path = places.environment("HOMEPATH");
    if (!drive || !path || drive->size() + path->size() >= kHomeLimit) {
        return std::nullopt;
    }
    return *drive + *path;
}

// kept: no slash between the prefix and the name, so the directories stand beside "/tmp"
// ("/tmptmpregistry-...") and only a process that may write there gets one.
std::string TemporaryDirectory(const RegistryPlaces& places, const std::string& user) {
    return places.temporaryPrefix + "tmpregistry-" + user;
}

}  // namespace

std::optional<std::string> RegistryPlaces::ProcessEnvironment(const char* name) {
    const char* value = getenv(name);
    return value == nullptr ? std::nullopt : std::optional<std::string>(value);
}

std::optional<std::string> UserDirectory(const RegistryPlaces& places) {
    const std::optional<std::string> home = HomeDirectory(places);
    return home ? std::optional(*home + "/.tessaly") : std::nullopt;
}

std::optional<std::string> UserTemporaryDirectory(const RegistryPlaces& places) {
    const std::optional<std::string> user = places.environment("USER");
    return user ? std::optional(TemporaryDirectory(places, *user)) : std::nullopt;
}

std::string SharedTemporaryDirectory(const RegistryPlaces& places) {
    return TemporaryDirectory(places, "nobody");
}

std::vector<std::string> ReadingDirectories(const RegistryPlaces& places) {
    std::vector<std::string> directories;
    for (const std::optional<std::string>& directory :
         {UserDirectory(places), UserTemporaryDirectory(places),
          std::optional(places.shippedDirectory), std::optional(places.systemDirectory)}) {
        if (directory) {
            directories.push_back(*directory);
        }
    }
    return directories;
}

std::string RegistryPath(const std::string& directory) { return directory + "/registry"; }

}  // namespace zeldlg::registry
