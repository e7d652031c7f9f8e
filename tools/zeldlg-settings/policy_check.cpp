// The policy-check command: judges candidate PINs without any window.
#include <algorithm>
#include <cstdio>
#include <iostream>
#include <iterator>
#include <string>
#include <string_view>

#include "command.h"
#include "platform/utf8.h"
#include "policy/change_pin_checks.h"
#include "policy/pin_policy_settings.h"
#include "policy/policy_messages.h"

namespace admin {

namespace {

using namespace zeldlg;

using PolicyByte = uint8_t PinPolicy::*;

struct NumberOption {
    const char* name;
    PolicyByte field;
};

constexpr NumberOption kNumbers[] = {
    {"--enabled", &PinPolicy::enabledMask},
    {"--p1-threshold", &PinPolicy::p1Threshold},
    {"--p1-case-sensitive", &PinPolicy::p1CaseSensitive},
    {"--p1-full-pin-check", &PinPolicy::p1FullPinCheck},
    {"--p2-classes", &PinPolicy::p2NbClass},
    {"--p2-population", &PinPolicy::p2PopMin},
    {"--p2-min-length", &PinPolicy::p2MinLen},
    {"--p2-class-mask", &PinPolicy::p2ClassMask},
    {"--p4-white-list", &PinPolicy::p4IsWhiteList},
};

// @return Whether the word is a policy option.
bool Apply(PinPolicy& policy, const std::string& option, const std::string& value) {
    if (option == "--policy") {
        LoadPinPolicyFromRegistry(policy, platform::DecodeUtf8(value.c_str()));
        return true;
    }
    if (option == "--p4-characters") {
        policy.p4CharList = value;
        return true;
    }
    const auto* const number = std::ranges::find(kNumbers, option, &NumberOption::name);
    if (number == std::end(kNumbers)) {
        return false;
    }
    policy.*number->field = static_cast<uint8_t>(ParseNumber(number->name, value, UINT8_MAX));
    return true;
}

// Ends the program with a message for a word that is wrong.
PinPolicy ParsePolicy(const Words& words) {
    PinPolicy policy;
    for (size_t i = 0; i < words.size(); i += 2) {
        if (i + 1 == words.size() || !Apply(policy, words[i], words[i + 1])) {
            Refuse("unexpected word '" + words[i] + "'");
        }
    }
    return policy;
}

void PrintMessage(const char* name, const PinPolicy& policy, PolicyStatus status,
                  std::string_view pin) {
    wxString message = DescribePolicyStatus(policy, status, pin);
    message.Replace("\n", "\n      ");
    printf("  %s: %s\n", name, static_cast<const char*>(message.utf8_str()));
}

// The PIN itself is not printed.
bool Judge(PinPolicy& policy, size_t line, const std::string& pin) {
    const auto status = [&](size_t place) { return Policies()[place].StatusOf(policy, pin); };
    const PolicyStatus distance = status(0);
    const PolicyStatus classes = status(1);
    const PolicyStatus restriction = status(3);
    printf("%zu: P1 %04X  P2 %04X  P4 %04X\n", line, distance, classes, restriction);
    PrintMessage("P1", policy, distance, {});
    PrintMessage("P2", policy, classes, pin);
    PrintMessage("P4", policy, restriction, {});
    return distance == kPolicyAccepted && classes == kPolicyAccepted &&
           restriction == kPolicyAccepted;
}

ExitCode RunPolicyCheck(const Words& words) {
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
            "Reads candidate PINs from standard input, one a line (LF or CR LF), and prints\n"
            "for each line its number, the status of the three local policies (9000 =\n"
            "accepted) and their messages. The exit code is 0 when all were accepted, else\n"
            "1.\n"
            "\n"
            "  --policy NAME              a policy of the configuration store; what follows "
            "changes it\n"
            "  --enabled MASK             1 distance, 2 classes, 4 history, 8 characters\n"
            "  --p1-threshold N           largest distance of neighbours that is refused\n"
            "  --p1-case-sensitive 0|1    0: the PIN is lower-cased first\n"
            "  --p1-full-pin-check 0|1    1: refuse only one single arithmetic run\n"
            "  --p2-classes N             minimum number of character classes\n"
            "  --p2-population N          minimum number of characters in each used class\n"
            "  --p2-min-length N          minimum length in bytes\n"
            "  --p2-class-mask MASK       1 lower, 2 upper, 4 digits, 8 punctuation, 16 other\n"
            "  --p4-characters TEXT       characters of the restriction\n"
            "  --p4-white-list 0|1        1: only these characters are allowed\n",
        .run = RunPolicyCheck,
    };
    return kCommand;
}

}  // namespace admin
