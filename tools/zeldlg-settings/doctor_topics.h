// What the doctor looks at, a function for each topic.
#pragma once

#include <memory>

#include "doctor_report.h"
#include "effective_settings.h"
#include "registry/registry_text.h"

namespace admin {

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

// Starts and ends the library. A library that cannot be loaded is a problem of this topic.
void ReportStart(Report& report, const FoundSettings& settings, bool hasDisplay);

// Looks at the display through the toolkit, and prints what is found as "WHAT: VALUE". To be run
// in a process of its own. Returns an exit code.
int ProbeDisplay();

}  // namespace admin
