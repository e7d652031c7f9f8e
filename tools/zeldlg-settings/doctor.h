// The doctor: what it looks at, a function for each topic, and how it says what it finds.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "registry/registry_places.h"
#include "registry/registry_refresh.h"
#include "registry/registry_text.h"

namespace admin {

// Headings, aligned lines, problems with advice, and their number. Nothing that it prints can move
// the terminal's cursor, whatever stands in a file.
class Report {
public:
    // Begins a topic, and concludes the one before.
    void Section(const char* title);

    void Line(const std::string& what, const std::string& value);

    // The same for each line "WHAT: VALUE" of a text; with `what`, for each line as it is.
    void Lines(const std::string& text, const char* what = nullptr);

    // Says what is wrong and, in a line of its own, what can be done.
    void Problem(const std::string& what, const std::string& advice);

    // Concludes the last topic and says how many problems there were. Returns that number.
    int Finish();

private:
    void Conclude() const;

    bool m_inSection = false;
    bool m_sectionIsFine = true;
    int m_problems = 0;
};

// An environment variable's value, or that it is not set.
std::string Variable(const char* name);

struct SettingsPlace {
    std::string name;  // whose it is
    std::string file;
    int error = 0;  // why it cannot be opened for reading; 0 when it can
};

// Which settings file a host of this user would read next, found without touching anything.
struct EffectiveSettings {
    zeldlg::registry::RegistryPlaces places;
    std::vector<SettingsPlace> looked;  // in the order of the search
    zeldlg::registry::Refresh refresh = zeldlg::registry::Refresh::None;
    bool copied = false;  // the refresh has a shipped file to copy and a place to write it to
    // Whose content counts: the shipped file's when it is copied first. Nothing when there is none,
    // and an empty one would be made.
    std::optional<std::string> file;
};

struct FoundSettings {
    EffectiveSettings where;
    std::unique_ptr<zeldlg::registry::RegistryText> text;  // null when the file is not to be used
};

// Which file, why, and what a start would copy.
FoundSettings ReportSettingsFile(Report& report);

// What is in it. Values that the dialogs do not know are named, not printed.
void ReportSettings(Report& report, const FoundSettings& settings);

// The locale, and which catalogue goes with it.
void ReportLanguage(Report& report, const FoundSettings& settings);

// Returns whether the display can be used.
bool ReportDisplay(Report& report);

// Which process would show the windows, and why.
void ReportProcess(Report& report, const FoundSettings& settings);

// Starts and ends the library, and looks for its helper. A library that cannot be loaded is a
// problem of this topic.
void ReportStart(Report& report, const FoundSettings& settings, bool hasDisplay);

}  // namespace admin
