// The commands that change or unlock a PIN or PUK.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "command.h"
#include "policy/pin_policy_wire.h"
#include "policy_options.h"

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
    bool noPolicy = false;
    bool reveal = false;
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
    for (const NumberOption& number : kNumbers) {
        if (words[at] == number.name) {
            options.*number.field = ParseNumber(number.name, words[at + 1].c_str());
            return 2;
        }
    }
    return 0;
}

ChangeOptions ParseOptions(const Words& words) {
    ChangeOptions options;
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
    const ChangeOptions options = ParseOptions(Words(argv + 1, argv + argc));
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
    Words words(argv + 1, argv + argc);
    const zeldlg::PinPolicy policy = demo::TakePolicy(words);
    const ChangeOptions options = ParseOptions(words);
    const zeldlg::PinPolicyFlatCopy flatCopy(policy);
    const PinPolicyDescriptor descriptor = flatCopy.Descriptor();
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

const std::string kPolicedHelp =
    std::string(CHANGE_HELP
                "  --old-min N, --old-max N\n"
                "                     bounds of the old value, when they are others\n"
                "  --tries-left N     tries remaining\n"
                "  --initialise       set the initialise flag (without visible effect)\n"
                "  --no-policy        the token has no policy\n\n") +
    demo::kPolicyHelp;

}  // namespace

const Command kChangePinCommand = {
    .name = "change-pin",
    .synopsis = "change-pin [OPTION...]",
    .summary = "Change the PIN",
    .options = CHANGE_HELP,
    .standalone = false,
    .run = RunChangePin,
};

const Command kChangeTransportPinCommand = {
    .name = "change-transport-pin",
    .synopsis = "change-transport-pin [OPTION...]",
    .summary = "Change the transport PIN",
    .options = CHANGE_HELP,
    .standalone = false,
    .run = RunChangeTransportPin,
};

const Command kUnblockPukCommand = {
    .name = "unblock-puk",
    .synopsis = "unblock-puk [OPTION...]",
    .summary = "Unblock the PIN with the PUK",
    .options = CHANGE_HELP,
    .standalone = false,
    .run = RunUnblockPuk,
};

const Command kChangePolicedPinCommand = {
    .name = "change-policed-pin",
    .synopsis = "change-policed-pin [OPTION...]",
    .summary = "Change the PIN under a policy",
    .options = kPolicedHelp.c_str(),
    .standalone = false,
    .run = RunChangePolicedPin,
};
