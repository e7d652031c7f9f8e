// A PIN policy from words on the command line.
#pragma once

#include <string>
#include <vector>

#include "policy/pin_policy.h"

namespace demo {

/// For --help, a line each.
extern const char* const kPolicyHelp;

/// Takes the policy options out of `words` and leaves the others. Ends the program with a message
/// for one that is wrong.
zeldlg::PinPolicy TakePolicy(std::vector<std::string>& words);

}  // namespace demo
