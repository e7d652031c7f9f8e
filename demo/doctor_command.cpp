// The doctor command: what a help desk asks first, answered without touching anything.
#include <cstdio>

#include "command.h"
#include "doctor_topics.h"

namespace {

int RunDoctor(const DLG_FunctionList*, int argc, char** argv) {
    if (argc > 1) {
        fprintf(stderr, "doctor: unexpected word '%s'\n", argv[1]);
        return EXIT_USAGE;
    }
    demo::Report report;
    const demo::FoundSettings settings = demo::ReportSettingsFile(report);
    demo::ReportSettings(report, settings);
    demo::ReportLanguage(report, settings);
    const bool hasDisplay = demo::ReportDisplay(report);
    demo::ReportStart(report, settings, hasDisplay);
    return report.Finish() == 0 ? EXIT_CONFIRMED : EXIT_NOT_CONFIRMED;
}

}  // namespace

const Command kDoctorCommand = {
    .name = "doctor",
    .synopsis = "doctor",
    .summary = "Look for what keeps the dialogs from working",
    .options =
        "Says which settings file and catalogue are used and why, what is wrong in them, whether\n"
        "the display can be used, and whether the library starts. Changes no file. To be run as\n"
        "the user of the host, in its environment. The exit code is 0 when no problem was found,\n"
        "else 1.\n",
    .standalone = true,
    .run = RunDoctor,
};
