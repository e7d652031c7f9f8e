// The policy-check command: judges candidate PINs without any window.
#include <cstdio>
#include <iostream>
#include <string>
#include <string_view>

#include "policy/policy_checker.h"
#include "policy/policy_messages.h"
#include "policy_options.h"

namespace admin {

namespace {

using namespace zeldlg;

void PrintMessage(const char* name, const PinPolicy& policy, PolicyStatus status,
                  std::string_view pin) {
    wxString message = DescribePolicyStatus(policy, status, pin);
    message.Replace("\n", "\n      ");
    printf("  %s: %s\n", name, static_cast<const char*>(message.utf8_str()));
}

// The PIN itself is not printed.
bool Judge(PinPolicy& policy, size_t line, const std::string& pin) {
    const LocalPolicyStatuses statuses = CheckLocalPolicies(policy, pin);
    printf("%zu: P1 %04X  P2 %04X  P4 %04X\n", line, statuses.distance, statuses.classes,
           statuses.restriction);
    PrintMessage("P1", policy, statuses.distance, {});
    PrintMessage("P2", policy, statuses.classes, pin);
    PrintMessage("P4", policy, statuses.restriction, {});
    return statuses.AllAccepted();
}

ExitCode RunPolicyCheck(Words words) {
    PinPolicy policy = ParsePolicy(words);
    bool allAccepted = true;
    std::string pin;
    for (size_t line = 1; std::getline(std::cin, pin); ++line) {
        if (!pin.empty() && pin.back() == '\r') {
            pin.pop_back();
        }
        allAccepted = Judge(policy, line, pin) && allAccepted;
    }
    return allAccepted ? kDone : kNotDone;
}

}  // namespace

const Command& PolicyCheckCommand() {
    static const Command kCommand = {
        .name = "policy-check",
        .synopsis = "policy-check [OPTION...] < PINS",
        .summary = "Judge PINs against a policy, without any window",
        .help =
            std::string("Reads candidate PINs from standard input, one a line (LF or CR LF), and "
                        "prints for each line number\n"
                        "the status of the three local policies (9000 = accepted) and their "
                        "messages. The exit\n"
                        "code is 0 when all were accepted, else 1.\n\n") +
            kPolicyHelp,
        .run = RunPolicyCheck,
    };
    return kCommand;
}

}  // namespace admin
