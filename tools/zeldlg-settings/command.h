// The sub-commands of zeldlg-settings, kept in a table by main.cpp.
#pragma once

#include <zeldlg/zeldlg.h>

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace admin {

// Exit codes of the program.
enum ExitCode { kDone = 0, kNotDone = 1, kWrongUsage = 2 };

// What stands behind a command's name.
using Words = std::vector<std::string>;

struct Command {
    const char* name;
    const char* synopsis;  // its name with what follows it
    const char* summary;   // one line
    std::string help;      // for --help, a line each
    ExitCode (*run)(const Words& words);
};

std::span<const Command> StoreCommands();
const Command& PolicyCheckCommand();
const Command& DoctorCommand();

// Loads the library that the command line names, and gives its functions. Null, with a message,
// when that fails.
const DLG_FunctionList* LoadDialogs();

// Parses a 32-bit number (decimal, 0x..., 0...). Ends the program with a message when it is none,
// or a greater one than `largest`.
uint32_t ParseNumber(const char* option, const std::string& text, uint32_t largest = UINT32_MAX);

// Ends the program with a message, followed by a word where one is given.
[[noreturn]] void Refuse(const std::string& message);

}  // namespace admin
