// zeldlg-settings: what an administrator does with the library's settings and policies, and with a
// host that shows no dialogs.
#include <dlfcn.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>

#include "command.h"

namespace admin {

namespace {

constexpr char kDefaultLibrary[] = "libzeldlglib.so.3";

// Written by Run() before any command runs.
std::string g_library = kDefaultLibrary;

std::vector<const Command*> Commands() {
    std::vector<const Command*> commands;
    for (const Command& command : StoreCommands()) {
        commands.push_back(&command);
    }
    commands.insert(commands.end(), {&PolicyCheckCommand(), &DoctorCommand()});
    return commands;
}

void PrintUsage(FILE* out) {
    fprintf(out,
            "Usage: zeldlg-settings [--library FILE] COMMAND [WORD...]\n"
            "       zeldlg-settings --help | COMMAND --help\n"
            "\n"
            "Sees to the settings of the library's dialogs, and to what keeps them from working.\n"
            "\n"
            "  --library FILE   the library that the doctor tries (default: %s)\n"
            "  --help           print this help, or that of a command\n"
            "\n"
            "Commands:\n",
            kDefaultLibrary);
    for (const Command* const command : Commands()) {
        fprintf(out, "  %-14s %s\n", command->name, command->summary);
    }
    fprintf(out,
            "\n"
            "Exit codes: 0 done, accepted, or no problem found; 1 not so; 2 wrong usage.\n");
}

ExitCode Run(Words words) {
    if (words.size() > 1 && words[0] == "--library") {
        g_library = words[1];
        words.erase(words.begin(), words.begin() + 2);
    }
    if (words.empty() || words[0] == "--help") {
        PrintUsage(words.empty() ? stderr : stdout);
        return words.empty() ? kWrongUsage : kDone;
    }
    const std::vector<const Command*> commands = Commands();
    const auto found = std::ranges::find(commands, words[0], &Command::name);
    if (found == commands.end()) {
        Refuse("unknown command '" + words[0] + "' (see --help)");
    }
    words.erase(words.begin());
    if (std::ranges::find(words, "--help") != words.end()) {
        printf("Usage: zeldlg-settings %s\n\n%s\n\n%s", (*found)->synopsis, (*found)->summary,
               (*found)->help.c_str());
        return kDone;
    }
    return (*found)->run(words);
}

}  // namespace

const DLG_FunctionList* LoadDialogs() {
    void* const handle = dlopen(g_library.c_str(), RTLD_NOW | RTLD_LOCAL);
    void* const symbol = handle == nullptr ? nullptr : dlsym(handle, "DLG_GetFunctionList");
    if (symbol == nullptr) {
        fprintf(stderr, "zeldlg-settings: %s\n", dlerror());
        return nullptr;
    }
    const auto* const dialogs = reinterpret_cast<decltype(&DLG_GetFunctionList)>(symbol)();
    if (dialogs->version != ZELDLG_FUNCTION_LIST_VERSION) {
        fprintf(stderr, "zeldlg-settings: %s: unknown version of the function table\n",
                g_library.c_str());
        return nullptr;
    }
    return dialogs;
}

uint32_t ParseNumber(const char* option, const std::string& text, uint32_t largest) {
    char* end = nullptr;
    errno = 0;
    const unsigned long long value = strtoull(text.c_str(), &end, 0);
    if (errno != 0 || end == text.c_str() || *end != '\0' || text.find('-') != std::string::npos ||
        value > largest) {
        Refuse(option + (": '" + text) + "' is not a number from 0 to " + std::to_string(largest));
    }
    return static_cast<uint32_t>(value);
}

void Refuse(const std::string& message) {
    fprintf(stderr, "zeldlg-settings: %s\n", message.c_str());
    exit(kWrongUsage);
}

}  // namespace admin

int main(int argc, char** argv) { return admin::Run(admin::Words(argv + 1, argv + argc)); }
