// The doctor command: what a help desk asks first, answered without touching anything.
#include "command.h"
#include "doctor_topics.h"

namespace admin {

namespace {

ExitCode RunDoctor(Words words) {
    if (!words.empty()) {
        Refuse("unexpected word '" + words[0] + "'");
    }
    Report report;
    const FoundSettings settings = ReportSettingsFile(report);
    ReportSettings(report, settings);
    ReportLanguage(report, settings);
    const bool hasDisplay = ReportDisplay(report);
    ReportStart(report, settings, hasDisplay);
    return report.Finish() == 0 ? kDone : kNotDone;
}

}  // namespace

const Command& DoctorCommand() {
    static const Command kCommand = {
        .name = "doctor",
        .synopsis = "doctor",
        .summary = "Look for what keeps the dialogs from working",
        .help =
            "Says which settings file and catalogue are used and why, what is wrong in them, "
            "whether\n"
            "the display can be used, and whether the library starts. Changes no file. To be run "
            "as\n"
            "the user of the host, in its environment. The exit code is 0 when no problem was "
            "found,\n"
            "else 1.\n",
        .run = RunDoctor,
    };
    return kCommand;
}

}  // namespace admin
