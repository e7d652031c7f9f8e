#include "policy_options.h"

#include "platform/utf8.h"
#include "policy/pin_policy_settings.h"

namespace admin {

namespace {

using zeldlg::PinPolicy;

struct NumberOption {
    const char* name;
    uint8_t PinPolicy::*field;
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
    {"--p3-threshold", &PinPolicy::p3Threshold},
    {"--p3-history-size", &PinPolicy::p3HistorySize},
    {"--p3-case-insensitive", &PinPolicy::p3CaseInsensitive},
    {"--p3-length-normalize", &PinPolicy::p3LengthNormalize},
    {"--p3-strict-only", &PinPolicy::p3StrictOnly},
    {"--p4-white-list", &PinPolicy::p4IsWhiteList},
};

// @return Whether the word is a policy option.
bool Apply(PinPolicy& policy, const std::string& option, const std::string& value) {
    if (option == "--policy") {
        LoadPinPolicyFromRegistry(policy, zeldlg::platform::DecodeUtf8(value.c_str()));
        return true;
    }
    if (option == "--p4-characters") {
        policy.p4CharList = value;
        return true;
    }
    for (const NumberOption& number : kNumbers) {
        if (option == number.name) {
            policy.*number.field = static_cast<uint8_t>(ParseNumber(number.name, value, UINT8_MAX));
            return true;
        }
    }
    return false;
}

}  // namespace

const char* const kPolicyHelp =
    "  --policy NAME              a policy of the configuration store; what follows changes it\n"
    "  --enabled MASK             1 distance, 2 classes, 4 history, 8 characters\n"
    "  --p1-threshold N           largest distance of neighbours that is refused\n"
    "  --p1-case-sensitive 0|1    0: the PIN is lower-cased first\n"
    "  --p1-full-pin-check 0|1    1: refuse only one single arithmetic run\n"
    "  --p2-classes N             minimum number of character classes\n"
    "  --p2-population N          minimum number of characters in each used class\n"
    "  --p2-min-length N          minimum length in bytes\n"
    "  --p2-class-mask MASK       1 lower, 2 upper, 4 digits, 8 punctuation, 16 other\n"
    "  --p3-threshold N, --p3-history-size N, --p3-case-insensitive 0|1,\n"
    "  --p3-length-normalize 0|1, --p3-strict-only 0|1\n"
    "                             what the token's history check is described with\n"
    "  --p4-characters TEXT       characters of the restriction\n"
    "  --p4-white-list 0|1        1: only these characters are allowed\n";

PinPolicy ParsePolicy(const Words& words) {
    PinPolicy policy;
    for (size_t i = 0; i < words.size(); i += 2) {
        if (i + 1 == words.size() || !Apply(policy, words[i], words[i + 1])) {
            Refuse("unexpected word '" + words[i] + "'");
        }
    }
    return policy;
}

}  // namespace admin
