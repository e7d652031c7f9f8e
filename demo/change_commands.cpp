// The commands that change or unlock a PIN or PUK.
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "command.h"

namespace {

using Words = std::vector<std::string>;

struct ChangeOptions {
    std::string label = "My card";
    uint32_t minLength = 4;
    uint32_t maxLength = 8;
    uint32_t oldMinLength = 0;
    uint32_t oldMaxLength = 0;
    uint32_t triesLeft = 0;
    uint32_t capacity = 256;
    bool failed = false;
    bool finalTry = false;
    bool puk = false;
    bool initialise = false;
    bool isPoliced = false;
    bool noPolicy = false;
    bool reveal = false;
    PinPolicyWire policy{};
    std::string characters;
};

struct NumberOption {
    const char* name;
    uint32_t ChangeOptions::*field;
};

struct FlagOption {
    const char* name;
    bool ChangeOptions::*field;
};

constexpr NumberOption kNumbers[] = {
    {"--min", &ChangeOptions::minLength},        {"--max", &ChangeOptions::maxLength},
    {"--old-min", &ChangeOptions::oldMinLength}, {"--old-max", &ChangeOptions::oldMaxLength},
    {"--tries-left", &ChangeOptions::triesLeft}, {"--capacity", &ChangeOptions::capacity},
};

constexpr FlagOption kFlags[] = {
    {"--failed", &ChangeOptions::failed},
    {"--final-try", &ChangeOptions::finalTry},
    {"--puk", &ChangeOptions::puk},
    {"--initialise", &ChangeOptions::initialise},
    {"--no-policy", &ChangeOptions::noPolicy},
    {"--reveal", &ChangeOptions::reveal},
};

struct PolicyOption {
    const char* name;
    uint8_t PinPolicyWire::*field;
};

constexpr PolicyOption kPolicyNumbers[] = {
    {"--enabled", &PinPolicyWire::enabledMask},
    {"--p1-threshold", &PinPolicyWire::p1Threshold},
    {"--p1-case-sensitive", &PinPolicyWire::p1CaseSensitive},
    {"--p1-full-pin-check", &PinPolicyWire::p1FullPinCheck},
    {"--p2-classes", &PinPolicyWire::p2NbClass},
    {"--p2-population", &PinPolicyWire::p2PopMin},
    {"--p2-min-length", &PinPolicyWire::p2MinLen},
    {"--p2-class-mask", &PinPolicyWire::p2ClassMask},
    {"--p3-threshold", &PinPolicyWire::p3Threshold},
    {"--p3-history-size", &PinPolicyWire::p3HistorySize},
    {"--p3-case-insensitive", &PinPolicyWire::p3CaseInsensitive},
    {"--p3-length-normalize", &PinPolicyWire::p3LengthNormalize},
    {"--p3-strict-only", &PinPolicyWire::p3StrictOnly},
    {"--p4-white-list", &PinPolicyWire::p4IsWhiteList},
};

// @return Whether the word is a policy option.
bool ApplyToPolicy(ChangeOptions& options, const std::string& word, const std::string& value) {
    if (word == "--p4-characters") {
        options.characters = value;
        return true;
    }
    for (const PolicyOption& number : kPolicyNumbers) {
        if (word == number.name) {
            const uint32_t parsed = ParseNumber(number.name, value.c_str());
            if (parsed > UINT8_MAX) {
                fprintf(stderr, "zeldlg-demo: %s: at most 255\n", number.name);
                exit(EXIT_USAGE);
            }
            options.policy.*number.field = static_cast<uint8_t>(parsed);
            return true;
        }
    }
    return false;
}

// @return How many words were used up; 0 for an unknown one.
size_t Apply(ChangeOptions& options, const Words& words, size_t at) {
    for (const FlagOption& flag : kFlags) {
        if (words[at] == flag.name) {
            options.*flag.field = true;
            return 1;
        }
    }
    if (at + 1 == words.size()) {
        return 0;
    }
    if (words[at] == "--label") {
        options.label = words[at + 1];
        return 2;
    }
    if (options.isPoliced && ApplyToPolicy(options, words[at], words[at + 1])) {
        return 2;
    }
    for (const NumberOption& number : kNumbers) {
        if (words[at] == number.name) {
            options.*number.field = ParseNumber(number.name, words[at + 1].c_str());
            return 2;
        }
    }
    return 0;
}

ChangeOptions ParseOptions(const Words& words, bool isPoliced) {
    ChangeOptions options;
    options.isPoliced = isPoliced;
    for (size_t at = 0; at < words.size();) {
        const size_t used = Apply(options, words, at);
        if (used == 0) {
            fprintf(stderr, "zeldlg-demo: unexpected word '%s'\n", words[at].c_str());
            exit(EXIT_USAGE);
        }
        at += used;
    }
    return options;
}

// Room for both values, and what to print of them.
class Buffers {
public:
    explicit Buffers(uint32_t capacity)
        : m_old(capacity + size_t{1}),
          m_new(capacity + size_t{1}),
          m_record{m_old.data(), capacity, m_new.data(), capacity} {}

    PinChangeBuffers* Record() { return &m_record; }

    int Report(uint32_t result, bool reveal) const {
        const int exitCode = ReportResult(result);
        if (result == ZELDLG_OK) {
            Print("old value", m_old, m_record.oldLength, reveal);
            Print("new value", m_new, m_record.newLength, reveal);
        }
        return exitCode;
    }

private:
    static void Print(const char* name, const std::vector<uint8_t>& bytes, uint64_t length,
                      bool reveal) {
        printf("%s of %llu bytes", name, static_cast<unsigned long long>(length));
        if (reveal) {
            printf(": %.*s", static_cast<int>(length), reinterpret_cast<const char*>(bytes.data()));
        }
        printf("\n");
    }

    std::vector<uint8_t> m_old;
    std::vector<uint8_t> m_new;
    PinChangeBuffers m_record;
};

using PlainChange = uint32_t (*)(const PinChangeRequest*, PinChangeBuffers*);

int RunPlain(PlainChange change, int argc, char** argv) {
    const ChangeOptions options = ParseOptions(Words(argv + 1, argv + argc), false);
    PinChangeRequest request{};
    request.tokenLabel = options.label.c_str();
    request.minLength = options.minLength;
    request.maxLength = options.maxLength;
    request.noFailure = options.failed ? 0 : 1;
    request.finalTry = options.finalTry ? 1 : 0;
    request.changePuk = options.puk ? 1 : 0;
    Buffers buffers(options.capacity);
    return buffers.Report(change(&request, buffers.Record()), options.reveal);
}

int RunChangePin(const DLG_FunctionList* dialogs, int argc, char** argv) {
    return RunPlain(dialogs->ShowChangePinDialog, argc, argv);
}

int RunChangeTransportPin(const DLG_FunctionList* dialogs, int argc, char** argv) {
    return RunPlain(dialogs->ShowChangeTransportPIN, argc, argv);
}

int RunUnblockPuk(const DLG_FunctionList* dialogs, int argc, char** argv) {
    return RunPlain(dialogs->ShowUnblockThroughPUK, argc, argv);
}

int RunChangePolicedPin(const DLG_FunctionList* dialogs, int argc, char** argv) {
    const ChangeOptions options = ParseOptions(Words(argv + 1, argv + argc), true);
    PinPolicyWire policy = options.policy;
    const PinPolicyCharList list = {static_cast<uint32_t>(options.characters.size()), 0,
                                    options.characters.data()};
    policy.charList = &list;
    policy.source = -2;  // unknown
    const PinPolicyDescriptor descriptor = {0, sizeof policy, &policy};
    PolicedPinChangeRequest request{};
    request.tokenLabel = options.label.c_str();
    request.minLength = options.minLength;
    request.maxLength = options.maxLength;
    request.noFailure = options.failed ? 0 : 1;
    request.finalTry = options.finalTry ? 1 : 0;
    request.changePuk = options.puk ? 1 : 0;
    request.initialisePin = options.initialise ? 1 : 0;
    request.triesLeft = options.triesLeft;
    request.policy = options.noPolicy ? nullptr : &descriptor;
    request.oldMinLength = options.oldMinLength;
    request.oldMaxLength = options.oldMaxLength;
    Buffers buffers(options.capacity);
    return buffers.Report(dialogs->ShowChangePolicedPinDialog_func(&request, buffers.Record()),
                          options.reveal);
}

#define CHANGE_HELP                                                             \
    "  --label TEXT       label of the token (default: My card)\n"              \
    "  --min N, --max N   bounds of the lengths in bytes (default: 4 and 8)\n"  \
    "  --failed           the previous attempt failed\n"                        \
    "  --final-try        the next wrong value locks\n"                         \
    "  --puk              it is the PUK that is changed\n"                      \
    "  --capacity N       bytes in each of the host's buffers (default: 256)\n" \
    "  --reveal           print the values; without it only their lengths\n"

#define POLICED_HELP                                                                     \
    CHANGE_HELP                                                                          \
    "  --old-min N, --old-max N\n"                                                       \
    "                     bounds of the old value, when they are others\n"               \
    "  --tries-left N     tries remaining\n"                                             \
    "  --initialise       set the initialise flag (without visible effect)\n"            \
    "  --no-policy        the token has no policy\n\n"                                   \
    "  --enabled MASK             1 distance, 2 classes, 4 history, 8 characters\n"      \
    "  --p1-threshold N           largest distance of neighbours that is refused\n"      \
    "  --p1-case-sensitive 0|1    0: the PIN is lower-cased first\n"                     \
    "  --p1-full-pin-check 0|1    1: refuse only one single arithmetic run\n"            \
    "  --p2-classes N             minimum number of character classes\n"                 \
    "  --p2-population N          minimum number of characters in each used class\n"     \
    "  --p2-min-length N          minimum length in bytes\n"                             \
    "  --p2-class-mask MASK       1 lower, 2 upper, 4 digits, 8 punctuation, 16 other\n" \
    "  --p3-threshold N, --p3-history-size N, --p3-case-insensitive 0|1,\n"              \
    "  --p3-length-normalize 0|1, --p3-strict-only 0|1\n"                                \
    "                             what the token's history check is described with\n"    \
    "  --p4-characters TEXT       characters of the restriction\n"                       \
    "  --p4-white-list 0|1        1: only these characters are allowed\n"

}  // namespace

const Command kChangePinCommand = {
    .name = "change-pin",
    .synopsis = "change-pin [OPTION...]",
    .summary = "Change the PIN",
    .options = CHANGE_HELP,
    .run = RunChangePin,
};

const Command kChangeTransportPinCommand = {
    .name = "change-transport-pin",
    .synopsis = "change-transport-pin [OPTION...]",
    .summary = "Change the transport PIN",
    .options = CHANGE_HELP,
    .run = RunChangeTransportPin,
};

const Command kUnblockPukCommand = {
    .name = "unblock-puk",
    .synopsis = "unblock-puk [OPTION...]",
    .summary = "Unblock the PIN with the PUK",
    .options = CHANGE_HELP,
    .run = RunUnblockPuk,
};

const Command kChangePolicedPinCommand = {
    .name = "change-policed-pin",
    .synopsis = "change-policed-pin [OPTION...]",
    .summary = "Change the PIN under a policy",
    .options = POLICED_HELP,
    .run = RunChangePolicedPin,
};
