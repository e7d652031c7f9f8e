#include "process_state.h"

#include <malloc.h>
#include <unistd.h>

#include <algorithm>
#include <clocale>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <fstream>

#include "arguments.h"

namespace testhost {

namespace {

std::string SignalName(int number) {
    const char* name = sigabbrev_np(number);
    return name != nullptr ? std::string("SIG") + name : "signal " + std::to_string(number);
}

/// The names of a directory's entries, sorted.
std::vector<std::string> Entries(const char* directory) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(directory)) {
        names.push_back(entry.path().filename());
    }
    std::sort(names.begin(), names.end());
    return names;
}

void HostHandler(int) {}

}  // namespace

void ReportSignals(JsonLine& line) {
    for (int number = 1; number < NSIG; ++number) {
        struct sigaction action = {};
        if (sigaction(number, nullptr, &action) != 0) {
            continue;  // reserved by the C library
        }
        std::string disposition = "default";
        if (action.sa_handler == SIG_IGN) {
            disposition = "ignore";
        } else if (action.sa_handler == HostHandler) {
            disposition = "handler";
        } else if (action.sa_handler != SIG_DFL) {
            disposition = "foreign handler";
        }
        line.Text(SignalName(number), disposition);
    }
}

void ReportMemory(JsonLine& line) {
    std::ifstream file("/proc/self/statm");
    int64_t size = 0;
    int64_t resident = 0;
    file >> size >> resident;
    line.Number("kb", resident * sysconf(_SC_PAGESIZE) / 1024);
    line.Unsigned("heap_bytes", mallinfo2().uordblks);
}

void ReportThreads(JsonLine& line) {
    std::vector<std::string> names;
    for (const std::string& task : Entries("/proc/self/task")) {
        std::ifstream file("/proc/self/task/" + task + "/comm");
        std::string name;
        std::getline(file, name);
        names.push_back(name);
    }
    line.Unsigned("count", names.size());
    line.List("names", names);
}

void ReportFiles(JsonLine& line) {
    std::vector<std::string> targets;
    for (const std::string& number : Entries("/proc/self/fd")) {
        std::error_code gone;  // of the descriptor that listed the directory
        const std::filesystem::path target =
            std::filesystem::read_symlink("/proc/self/fd/" + number, gone);
        if (!gone) {
            targets.push_back(target);
        }
    }
    line.Unsigned("count", targets.size());
    line.List("targets", targets);
}

void ReportLocale(JsonLine& line) { line.Text("locale", setlocale(LC_ALL, nullptr)); }

void ReportEnvironment(JsonLine& line) {
    std::vector<std::string> variables;
    for (char** variable = environ; *variable != nullptr; ++variable) {
        variables.emplace_back(*variable);
    }
    line.List("variables", variables);
}

bool IsMapped(const std::string& path) {
    const std::string real = std::filesystem::canonical(path);
    std::ifstream file("/proc/self/maps");
    for (std::string text; std::getline(file, text);) {
        if (text.ends_with(' ' + real)) {
            return true;
        }
    }
    return false;
}

void SetSignal(const std::string& name, const std::string& how) {
    int number = 1;
    while (number < NSIG && SignalName(number) != name) {
        ++number;
    }
    struct sigaction action = {};
    if (how == "handler") {
        action.sa_handler = HostHandler;
    } else if (how == "ignore") {
        action.sa_handler = SIG_IGN;
    } else if (how != "default") {
        throw ProtocolError("not ignore, handler or default: " + how);
    }
    if (number == NSIG || sigaction(number, &action, nullptr) != 0) {
        throw ProtocolError("no such signal: " + name);
    }
}

}  // namespace testhost
