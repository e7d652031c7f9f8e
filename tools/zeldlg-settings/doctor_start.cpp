// The doctor on the library itself: loads, starts and ends it as a host does.
#include <dlfcn.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string>
#include <system_error>

#include "apart.h"
#include "command.h"
#include "doctor.h"

namespace admin {

namespace {

constexpr unsigned kStartSeconds = 20;
constexpr uint32_t kLongestName = 64;
constexpr int kNoLibrary = 3;
constexpr const char* kMissingHelper = "helper (missing)";

using Clock = std::chrono::steady_clock;

long MillisecondsSince(Clock::time_point start) {
    return static_cast<long>(
        std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start).count());
}

// As the library finds it.
std::string HelperOf(const char* library) {
    std::error_code error;
    const std::filesystem::path real = std::filesystem::canonical(library, error);
    return (real.parent_path() / "zeldlg" / "zeldlg-helper").string();
}

void SayFile(const DLG_FunctionList* dialogs) {
    void* address = nullptr;
    memcpy(&address, &dialogs->Finalize, sizeof address);
    Dl_info info;
    if (dladdr(address, &info) != 0) {
        printf("file: %s\n", info.dli_fname);
        const std::string helper = HelperOf(info.dli_fname);
        printf("%s: %s\n", access(helper.c_str(), X_OK) == 0 ? "helper" : kMissingHelper,
               helper.c_str());
    }
}

int Load() {
    const DLG_FunctionList* const dialogs = LoadDialogs();
    if (dialogs == nullptr) {
        return kNoLibrary;
    }
    SayFile(dialogs);
    return kDone;
}

int Start() {
    const DLG_FunctionList* const dialogs = LoadDialogs();
    if (dialogs == nullptr) {
        return kNoLibrary;
    }
    SayFile(dialogs);
    fflush(stdout);  // the start may never come back
    wchar_t locale[kLongestName];
    uint32_t size = kLongestName;
    Clock::time_point begin = Clock::now();
    const uint32_t result = dialogs->GetLocale(locale, &size);
    const long started = MillisecondsSince(begin);
    begin = Clock::now();
    dialogs->Finalize();
    if (result != ZELDLG_OK) {
        printf("result: 0x%08x\n", static_cast<unsigned>(result));
        return kNotDone;
    }
    printf("locale: %ls\nstarted in: %ld ms\nended in: %ld ms\n", locale, started,
           MillisecondsSince(begin));
    return kDone;
}

void ReportFailure(Report& report, const Ending& probe) {
    using How = Ending::How;
    if (probe.how == How::NotStarted) {
        report.Problem("The start could not be tried.",
                       "Is there room for temporary files and for one more process?");
    } else if (probe.how == How::TooLong) {
        report.Problem("It does not start within " + std::to_string(kStartSeconds) + " seconds.",
                       "A host would wait without end.");
    } else if (probe.how == How::Died) {
        report.Problem(std::string("It dies at its start: ") + strsignal(probe.code) + ".",
                       "Please report this, with what stands here.");
    } else if (probe.code == kNoLibrary) {
        report.Problem("The library cannot be loaded.",
                       "Is its package installed, with what it depends on?");
    } else {
        report.Problem("It does not start.", "Its messages may tell why.");
    }
}

}  // namespace

void ReportStart(Report& report, const FoundSettings& settings, bool hasDisplay) {
    report.Section("Library");
    const auto& looked = settings.where.looked;
    const auto first = std::ranges::find(looked, 0, &SettingsPlace::error);
    const Ending probe = RunApart(first == looked.end() ? std::string() : first->file,
                                  kStartSeconds, hasDisplay ? Start : Load);
    report.Lines(probe.output);
    if (probe.output.find(kMissingHelper) != std::string::npos) {
        report.Problem("The helper process is missing.",
                       "Calls fail in hosts whose own process cannot show the windows.");
    }
    if (probe.how == Ending::How::Exited && probe.code == kDone) {
        if (!hasDisplay) {
            report.Line("started", "not tried: there is no display");
        }
        return;
    }
    ReportFailure(report, probe);
    report.Lines(probe.errors, "message");
}

}  // namespace admin
