// The doctor command: what a help desk asks first, answered without touching anything.
#include "doctor.h"

#include <cstdio>
#include <cstdlib>
#include <sstream>

#include "command.h"

namespace admin {

namespace {

constexpr int kLabelWidth = 22;

std::string Printable(std::string text) {
    for (char& character : text) {
        if (static_cast<unsigned char>(character) < ' ' || character == '\x7f') {
            character = '?';
        }
    }
    return text;
}

}  // namespace

void Report::Section(const char* title) {
    Conclude();
    printf("%s%s\n", m_inSection ? "\n" : "", title);
    m_inSection = true;
    m_sectionIsFine = true;
}

void Report::Line(const std::string& what, const std::string& value) {
    printf("  %-*s  %s\n", kLabelWidth, what.c_str(), Printable(value).c_str());
}

void Report::Lines(const std::string& text, const char* what) {
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        const size_t colon = what == nullptr ? line.find(": ") : std::string::npos;
        if (colon == std::string::npos) {
            Line(what == nullptr ? "" : what, line);
        } else {
            Line(line.substr(0, colon), line.substr(colon + 2));
        }
    }
}

void Report::Problem(const std::string& what, const std::string& advice) {
    printf("  problem: %s\n           %s\n", Printable(what).c_str(), Printable(advice).c_str());
    m_sectionIsFine = false;
    ++m_problems;
}

void Report::Conclude() const {
    if (m_inSection && m_sectionIsFine) {
        puts("  ok");
    }
    fflush(stdout);
}

int Report::Finish() {
    Conclude();
    printf("\n%d problem%s found\n", m_problems, m_problems == 1 ? "" : "s");
    return m_problems;
}

std::string Variable(const char* name) {
    const char* const value = getenv(name);
    return value == nullptr ? "not set" : *value == '\0' ? "set, but empty" : value;
}

namespace {

ExitCode RunDoctor(const Words& words) {
    if (!words.empty()) {
        Refuse("unexpected word '" + words[0] + "'");
    }
    Report report;
    const FoundSettings settings = ReportSettingsFile(report);
    ReportSettings(report, settings);
    ReportLanguage(report, settings);
    const bool hasDisplay = ReportDisplay(report);
    ReportProcess(report, settings);
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
            "Says which settings file and catalogue are used and why, what is wrong in them,\n"
            "whether the display can be used, and whether the library starts. Changes no file.\n"
            "To be run as the user of the host, in its environment. The exit code is 0 when no\n"
            "problem was found, else 1.\n",
        .run = RunDoctor,
    };
    return kCommand;
}

}  // namespace admin
