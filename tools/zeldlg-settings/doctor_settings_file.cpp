// The doctor on the settings file: which one, why, and what a start would do to it.
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <string>

#include "doctor.h"
#include "platform/file_descriptor.h"
#include "registry/registry_file.h"
#include "stored_settings.h"

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

bool IsNotThere(int error) { return error == ENOENT || error == ENOTDIR; }

const char* Reason(int error) {
    return error == EINVAL ? "it is no regular file" : strerror(error);
}

std::string StateOf(const SettingsPlace& place, const EffectiveSettings& settings) {
    if (settings.file == place.file) {
        return settings.copied ? "used: it is going to be copied to the user's" : "used";
    }
    if (place.error == 0) {
        return place.name == "user's" && settings.copied ? "there, to be written over" : "there";
    }
    return IsNotThere(place.error) ? "not there"
                                   : std::string("cannot be used: ") + Reason(place.error);
}

void ReportPlaces(Report& report, const EffectiveSettings& settings) {
    for (const char* const name : {"ZEL_HOME", "HOME", "USER"}) {
        report.Line(name, Variable(name));
    }
    int number = 0;
    for (const SettingsPlace& place : settings.looked) {
        report.Line("place " + std::to_string(++number) + ", " + place.name,
                    place.file + " (" + StateOf(place, settings) + ")");
    }
    for (const SettingsPlace& place : settings.looked) {
        if (place.error != 0 && !IsNotThere(place.error)) {
            report.Problem(place.file + ": " + Reason(place.error) + ".",
                           "It is passed over. Where it is the user's, nothing can be saved; "
                           "mend its owner and rights, or remove it.");
        }
    }
}

bool IsMissing(const std::string& file, const EffectiveSettings& settings) {
    const auto place = std::find_if(settings.looked.begin(), settings.looked.end(),
                                    [&](const SettingsPlace& each) { return each.file == file; });
    return place != settings.looked.end() && IsNotThere(place->error);
}

// The stamp between its quotes.
std::string StampOf(const std::string& file, const EffectiveSettings& settings) {
    const RegistryStamp stamp = ReadStamp(file);
    if (!stamp.text && stamp.readable) {
        return "none";
    }
    if (!stamp.text) {
        return IsMissing(file, settings) ? "no file" : "the file cannot be read";
    }
    const std::string& text = *stamp.text;
    const size_t begin = text.find('=') + 1;
    const size_t end = text.find_last_not_of("\r\n") + 1;
    return text.substr(begin, end - begin);
}

std::string NextStart(const EffectiveSettings& settings) {
    const std::string shipped = RegistryPath(settings.places.shippedDirectory);
    const auto directory = UserDirectory(settings.places);
    const std::string user = directory ? RegistryPath(*directory) : std::string();
    switch (settings.refresh) {
        case Refresh::Make:
            return settings.copied
                       ? "makes " + user + " of " + shipped
                       : "copies nothing: there is no user's file, and none can be made";
        case Refresh::Replace:
            return settings.copied
                       ? "copies " + shipped + " over " + user + ": their stamps differ"
                       : "copies nothing, though the stamps differ: " + user + " cannot be written";
        case Refresh::None:
            break;
    }
    return "copies nothing";
}

bool IsUsersLonger(const EffectiveSettings& settings) {
    const auto sizeIn = [](const std::string& directory) {
        return FileDescriptor::Open(RegistryPath(directory), O_RDONLY).Size();
    };
    return sizeIn(UserDirectory(settings.places).value_or("")) >
           sizeIn(settings.places.shippedDirectory);
}

void ReportStamps(Report& report, const EffectiveSettings& settings) {
    const std::string shipped = RegistryPath(settings.places.shippedDirectory);
    if (const auto directory = UserDirectory(settings.places)) {
        report.Line("stamp of the user's", StampOf(RegistryPath(*directory), settings));
    }
    report.Line("stamp of the shipped", StampOf(shipped, settings));
    report.Line("the next start", NextStart(settings));
    if (settings.refresh == Refresh::Replace && settings.copied && IsUsersLonger(settings)) {
        report.Line("", "The user's file is longer: its end stays behind the copy.");
    }
    if (settings.refresh == Refresh::Replace && !settings.copied) {
        report.Problem("The user's file is older than the shipped one and cannot be replaced.",
                       "Give the user the right to write it.");
    }
    const RegistryStamp stamp = ReadStamp(shipped);
    if (stamp.text && !stamp.text->ends_with("\r\n")) {
        report.Problem("The stamp's line in the shipped file does not end with CR LF.",
                       "Users lose each change of their settings: mend its line ends.");
    }
}

RegistryError Load(const std::string& file, std::unique_ptr<RegistryText>& text) {
    FileContent content;
    RegistryError error = ReadContent(FileDescriptor::Open(file, O_RDONLY), content);
    if (error == kSuccess) {
        error = RegistryText::Check({content.text.get(), content.size});
    }
    if (error == kSuccess) {
        text = std::make_unique<RegistryText>(std::move(content.text), content.size);
    }
    return error;
}

}  // namespace

FoundSettings ReportSettingsFile(Report& report) {
    report.Section("Settings file");
    FoundSettings settings{.where = FindSettings(), .text = nullptr};
    ReportPlaces(report, settings.where);
    ReportStamps(report, settings.where);
    if (!settings.where.file) {
        report.Problem("There is no settings file: every setting is at its default.",
                       "Is the package of the library installed, with its " +
                           RegistryPath(settings.where.places.shippedDirectory) + "?");
        return settings;
    }
    const RegistryError error = Load(*settings.where.file, settings.text);
    if (error != kSuccess) {
        report.Problem(*settings.where.file + " is refused with error " + std::to_string(error) +
                           ": " + Describe(error) + ".",
                       "Every setting counts as missing. Mend the file, or remove it where it is "
                       "the user's: it is made anew of the shipped one.");
    }
    return settings;
}

}  // namespace admin
