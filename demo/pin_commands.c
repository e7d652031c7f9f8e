/* The commands that ask for one PIN. */
#include <getopt.h>
#include <stdbool.h>
#include <stdio.h>
#include <stdlib.h>

#include "command.h"

typedef struct PinOptions {
    const char* label;
    uint32_t minLength;
    uint32_t maxLength;
    uint32_t capacity;
    uint32_t maxTries;
    uint32_t triesLeft;
    bool failed;
    bool finalTry;
    bool failedEarlier;
    bool reveal;
} PinOptions;

#define COMMON_HELP                                                        \
    "  --label TEXT       label of the token (default: My card)\n"         \
    "  --min N            minimum PIN length (default: 4)\n"               \
    "  --max N            maximum PIN length (default: 8)\n"               \
    "  --capacity N       bytes in the host's PIN buffer (default: 256)\n" \
    "  --failed-earlier   the failure happened before this prompt\n"       \
    "  --reveal           print the PIN itself; without it only its length is printed\n"

enum {
    kLabel = 1,
    kMin,
    kMax,
    kCapacity,
    kMaxTries,
    kTriesLeft,
    kFailed,
    kFinalTry,
    kFailedEarlier,
    kReveal
};

#define COMMON_OPTIONS                                                                            \
    {"label", required_argument, NULL, kLabel}, {"min", required_argument, NULL, kMin},           \
        {"max", required_argument, NULL, kMax}, {"capacity", required_argument, NULL, kCapacity}, \
        {"failed-earlier", no_argument, NULL, kFailedEarlier}, {                                  \
        "reveal", no_argument, NULL, kReveal                                                      \
    }

static const struct option kPinOptions[] = {COMMON_OPTIONS,
                                            {"failed", no_argument, NULL, kFailed},
                                            {"final-try", no_argument, NULL, kFinalTry},
                                            {NULL, 0, NULL, 0}};

static const struct option kPinExOptions[] = {COMMON_OPTIONS,
                                              {"max-tries", required_argument, NULL, kMaxTries},
                                              {"tries-left", required_argument, NULL, kTriesLeft},
                                              {NULL, 0, NULL, 0}};

/* Sets one option. Returns false for a word that is none. */
static bool SetOption(PinOptions* options, int option, const char* name) {
    switch (option) {
        case kLabel:
            options->label = optarg;
            return true;
        case kMin:
            options->minLength = ParseNumber(name, optarg);
            return true;
        case kMax:
            options->maxLength = ParseNumber(name, optarg);
            return true;
        case kCapacity:
            options->capacity = ParseNumber(name, optarg);
            return true;
        case kMaxTries:
            options->maxTries = ParseNumber(name, optarg);
            return true;
        case kTriesLeft:
            options->triesLeft = ParseNumber(name, optarg);
            return true;
        case kFailed:
            options->failed = true;
            return true;
        case kFinalTry:
            options->finalTry = true;
            return true;
        case kFailedEarlier:
            options->failedEarlier = true;
            return true;
        case kReveal:
            options->reveal = true;
            return true;
        default:
            return false;
    }
}

static PinOptions ParseOptions(const struct option* known, int argc, char** argv) {
    PinOptions options = {.label = "My card",
                          .minLength = 4,
                          .maxLength = 8,
                          .capacity = 256,
                          .maxTries = 3,
                          .triesLeft = 3};
    int index = 0;
    for (int option = 0; (option = getopt_long(argc, argv, "", known, &index)) != -1;) {
        if (!SetOption(&options, option, option == '?' ? "" : known[index].name)) {
            exit(EXIT_USAGE); /* getopt_long has said why */
        }
    }
    if (optind < argc) {
        fprintf(stderr, "%s: unexpected word '%s'\n", argv[0], argv[optind]);
        exit(EXIT_USAGE);
    }
    return options;
}

static PinDialogRequest RequestOf(const PinOptions* options) {
    const PinDialogRequest request = {.tokenLabel = options->label,
                                      .minPinLength = options->minLength,
                                      .maxPinLength = options->maxLength,
                                      .noFailure = !options->failed,
                                      .finalTry = options->finalTry,
                                      .failedEarlier = options->failedEarlier};
    return request;
}

static PinDialogRequestEx RequestExOf(const PinOptions* options) {
    const PinDialogRequestEx request = {.tokenLabel = options->label,
                                        .minPinLength = options->minLength,
                                        .maxPinLength = options->maxLength,
                                        .failedEarlier = options->failedEarlier,
                                        .maxTries = options->maxTries,
                                        .triesLeft = options->triesLeft};
    return request;
}

typedef uint32_t (*AskFunction)(const PinDialogRequest* request, PinBuffer* pin);
typedef uint32_t (*AskExFunction)(const PinDialogRequestEx* request, PinBuffer* pin);

/* Exactly one of the functions is given. */
static int AskAndReport(const PinOptions* options, AskFunction ask, AskExFunction askEx) {
    /* One byte more, so that a capacity of 0 is a buffer too. */
    uint8_t* const buffer = malloc((size_t)options->capacity + 1);
    if (buffer == NULL) {
        fprintf(stderr, "no memory for %lu bytes\n", (unsigned long)options->capacity);
        return EXIT_USAGE;
    }
    PinBuffer pin = {.pin = buffer, .pinLength = options->capacity};
    const PinDialogRequest request = RequestOf(options);
    const PinDialogRequestEx requestEx = RequestExOf(options);
    const uint32_t result = ask != NULL ? ask(&request, &pin) : askEx(&requestEx, &pin);
    const int exitCode = ReportResult(result);
    if (result == ZELDLG_OK) {
        printf("PIN of %lu bytes\n", (unsigned long)pin.pinLength);
        if (options->reveal) {
            printf("PIN %.*s\n", (int)pin.pinLength, (const char*)pin.pin);
        }
    }
    free(buffer);
    return exitCode;
}

static int RunPin(const DLG_FunctionList* dialogs, int argc, char** argv) {
    const PinOptions options = ParseOptions(kPinOptions, argc, argv);
    return AskAndReport(&options, dialogs->ShowPinDialog, NULL);
}

static int RunPinEx(const DLG_FunctionList* dialogs, int argc, char** argv) {
    const PinOptions options = ParseOptions(kPinExOptions, argc, argv);
    return AskAndReport(&options, NULL, dialogs->ShowPinDialogEx);
}

static int RunLegalPin(const DLG_FunctionList* dialogs, int argc, char** argv) {
    const PinOptions options = ParseOptions(kPinOptions, argc, argv);
    return AskAndReport(&options, dialogs->ShowLegalPinDialog, NULL);
}

static int RunLegalPinEx(const DLG_FunctionList* dialogs, int argc, char** argv) {
    const PinOptions options = ParseOptions(kPinExOptions, argc, argv);
    return AskAndReport(&options, NULL, dialogs->ShowLegalPinDialogEx);
}

#define ORDINARY_HELP                                      \
    COMMON_HELP                                            \
    "  --failed           a failed attempt is on record\n" \
    "  --final-try        the next wrong PIN locks the PIN\n"

#define EX_HELP                                                  \
    COMMON_HELP                                                  \
    "  --max-tries N      the full retry counter (default: 3)\n" \
    "  --tries-left N     tries remaining (default: 3)\n"

const Command kPinCommand = {
    .name = "pin",
    .synopsis = "pin [OPTION...]",
    .summary = "Ask for the PIN of a token",
    .options = ORDINARY_HELP,
    .run = RunPin,
};

const Command kPinExCommand = {
    .name = "pin-ex",
    .synopsis = "pin-ex [OPTION...]",
    .summary = "Ask for the PIN of a token, with its retry counter",
    .options = EX_HELP,
    .run = RunPinEx,
};

const Command kLegalPinCommand = {
    .name = "legal-pin",
    .synopsis = "legal-pin [OPTION...]",
    .summary = "Ask for the PIN of a legally binding signature",
    .options = ORDINARY_HELP,
    .run = RunLegalPin,
};

const Command kLegalPinExCommand = {
    .name = "legal-pin-ex",
    .synopsis = "legal-pin-ex [OPTION...]",
    .summary = "Ask for the PIN of a legally binding signature, with its retry counter",
    .options = EX_HELP,
    .run = RunLegalPinEx,
};
