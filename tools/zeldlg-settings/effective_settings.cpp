#include "effective_settings.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>

#include "registry/file_descriptor.h"

namespace admin {

using namespace zeldlg::registry;

namespace {

std::string NameOf(const std::string& directory, const RegistryPlaces& places) {
    if (directory == UserDirectory(places)) {
        return "user's";
    }
    if (directory == UserTemporaryDirectory(places)) {
        return "user's temporary";
    }
    return directory == places.shippedDirectory ? "shipped" : "system's";
}

int ReadingError(const std::string& file) {
    return FileDescriptor::Open(file, O_RDONLY).IsOpen() ? 0 : errno;
}

bool CanWrite(const std::string& path) { return access(path.c_str(), W_OK) == 0; }

bool CanMakeFileIn(const std::string& directory) {
    std::error_code error;
    if (std::filesystem::exists(directory, error)) {
        return access(directory.c_str(), W_OK | X_OK) == 0;
    }
    const std::string parent = std::filesystem::path(directory).parent_path();
    return !error && access(parent.empty() ? "." : parent.c_str(), W_OK | X_OK) == 0;
}

bool WillBeCopied(const EffectiveSettings& settings) {
    const auto directory = UserDirectory(settings.places);
    if (settings.refresh == Refresh::None || !directory ||
        ReadingError(RegistryPath(settings.places.shippedDirectory)) != 0) {
        return false;
    }
    return settings.refresh == Refresh::Make ? CanMakeFileIn(*directory)
                                             : CanWrite(RegistryPath(*directory));
}

}  // namespace

EffectiveSettings FindSettings() {
    EffectiveSettings settings;
    for (const std::string& directory : ReadingDirectories(settings.places)) {
        const std::string file = RegistryPath(directory);
        settings.looked.push_back({NameOf(directory, settings.places), file, ReadingError(file)});
    }
    settings.refresh = PlanRefresh(settings.places);
    settings.copied = WillBeCopied(settings);
    const auto first = std::find_if(settings.looked.begin(), settings.looked.end(),
                                    [](const SettingsPlace& place) { return place.error == 0; });
    if (settings.copied) {
        settings.file = RegistryPath(settings.places.shippedDirectory);
    } else if (first != settings.looked.end()) {
        settings.file = first->file;
    }
    return settings;
}

}  // namespace admin
