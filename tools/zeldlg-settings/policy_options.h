// A PIN policy from words on the command line.
#pragma once

#include "command.h"
#include "policy/pin_policy.h"

namespace admin {

// For --help, a line each.
extern const char* const kPolicyHelp;

// Ends the program with a message for a word that is wrong.
zeldlg::PinPolicy ParsePolicy(const Words& words);

}  // namespace admin
