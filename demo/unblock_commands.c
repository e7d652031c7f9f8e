/* The commands that unblock a PIN without the old one: choice of the method, challenge and
 * response. */
#include <getopt.h>
#include <stdbool.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "command.h"

enum { kMaxAlgorithms = 100, kMaxChallenge = 4096 };

static void ExpectNoWord(int argc, char** argv) {
    if (optind < argc) {
        fprintf(stderr, "%s: unexpected word '%s'\n", argv[0], argv[optind]);
        exit(EXIT_USAGE);
    }
}

/* ---------------------------------------------------------------- unblock-method */

typedef struct MethodOptions {
    bool puk;
    bool samples;
    uint32_t algorithms[kMaxAlgorithms];
    uint32_t count;
} MethodOptions;

enum { kNoPuk = 1, kAlgorithm, kNoAlgorithms };

static const struct option kMethodOptions[] = {{"no-puk", no_argument, NULL, kNoPuk},
                                               {"algorithm", required_argument, NULL, kAlgorithm},
                                               {"no-algorithms", no_argument, NULL, kNoAlgorithms},
                                               {NULL, 0, NULL, 0}};

static void AddAlgorithm(MethodOptions* options, uint32_t code) {
    if (options->count == kMaxAlgorithms) {
        fprintf(stderr, "unblock-method: more than %d algorithms\n", kMaxAlgorithms);
        exit(EXIT_USAGE);
    }
    options->algorithms[options->count++] = code;
}

static MethodOptions ParseMethodOptions(int argc, char** argv) {
    MethodOptions options = {.puk = true, .samples = true};
    for (int option = 0; (option = getopt_long(argc, argv, "", kMethodOptions, NULL)) != -1;) {
        switch (option) {
            case kNoPuk:
                options.puk = false;
                break;
            case kAlgorithm:
                options.samples = false;
                AddAlgorithm(&options, ParseNumber("algorithm", optarg));
                break;
            case kNoAlgorithms:
                options.samples = false;
                break;
            default:
                exit(EXIT_USAGE); /* getopt_long has said why */
        }
    }
    ExpectNoWord(argc, argv);
    if (options.samples) {
        AddAlgorithm(&options, ZELDLG_ALGORITHM_3DES_CHALLENGE);
        AddAlgorithm(&options, ZELDLG_ALGORITHM_3DES_WITNESS);
    }
    return options;
}

static int RunUnblockMethod(const DLG_FunctionList* dialogs, int argc, char** argv) {
    const MethodOptions options = ParseMethodOptions(argc, argv);
    uint32_t method = 0;
    uint32_t algorithm = 0;
    const uint32_t result = dialogs->ShowSelectUnblockMethod(
        options.puk ? 1 : 0, options.algorithms, options.count, &method, &algorithm);
    const int exitCode = ReportResult(result);
    if (result == ZELDLG_OK) {
        printf("method %lu (%s)\nalgorithm at index %lu\n", (unsigned long)method,
               method == ZELDLG_UNBLOCK_WITH_PUK ? "PUK" : "off-line", (unsigned long)algorithm);
    }
    return exitCode;
}

/* ---------------------------------------------------------------- unblock-cr */

typedef struct UnlockOptions {
    ChallengeResponseRequest request;
    ByteBuffer challenge;
    uint8_t bytes[kMaxChallenge];
    uint32_t capacity;
    bool reveal;
} UnlockOptions;

enum { kLabel = 1, kSerial, kChallenge, kLength, kNewPin, kMin, kMax, kCapacity, kReveal };

static const struct option kUnlockOptions[] = {{"label", required_argument, NULL, kLabel},
                                               {"serial", required_argument, NULL, kSerial},
                                               {"challenge", required_argument, NULL, kChallenge},
                                               {"length", required_argument, NULL, kLength},
                                               {"new-pin", no_argument, NULL, kNewPin},
                                               {"min", required_argument, NULL, kMin},
                                               {"max", required_argument, NULL, kMax},
                                               {"capacity", required_argument, NULL, kCapacity},
                                               {"reveal", no_argument, NULL, kReveal},
                                               {NULL, 0, NULL, 0}};

static int32_t ParseLength(const char* option, const char* text) {
    const uint32_t number = ParseNumber(option, text);
    if (number > INT32_MAX) {
        fprintf(stderr, "unblock-cr: %s: at most %ld\n", option, (long)INT32_MAX);
        exit(EXIT_USAGE);
    }
    return (int32_t)number;
}

static void ParseChallenge(UnlockOptions* options, const char* digits) {
    const size_t length = strlen(digits);
    if (length % 2 != 0 || length / 2 > kMaxChallenge ||
        strspn(digits, "0123456789abcdefABCDEF") != length) {
        fprintf(stderr, "unblock-cr: a challenge is an even number of hexadecimal digits\n");
        exit(EXIT_USAGE);
    }
    for (size_t i = 0; i < length / 2; ++i) {
        const char byte[] = {digits[2 * i], digits[2 * i + 1], '\0'};
        options->bytes[i] = (uint8_t)strtoul(byte, NULL, 16);
    }
    options->challenge.length = length / 2;
}

static void SetUnlockOption(UnlockOptions* options, int option) {
    switch (option) {
        case kLabel:
            options->request.tokenLabel = optarg;
            break;
        case kSerial:
            options->request.serialNumber = optarg;
            break;
        case kChallenge:
            ParseChallenge(options, optarg);
            break;
        case kLength:
            options->request.responseLength = ParseLength("length", optarg);
            break;
        case kNewPin:
            options->request.askNewPin = 1;
            break;
        case kMin:
            options->request.minPinLength = ParseLength("min", optarg);
            break;
        case kMax:
            options->request.maxPinLength = ParseLength("max", optarg);
            break;
        case kCapacity:
            options->capacity = ParseNumber("capacity", optarg);
            break;
        case kReveal:
            options->reveal = true;
            break;
        default:
            exit(EXIT_USAGE); /* getopt_long has said why */
    }
}

static void ParseUnlockOptions(UnlockOptions* options, int argc, char** argv) {
    const ChallengeResponseRequest request = {.tokenLabel = "My card",
                                              .challenge = &options->challenge,
                                              .serialNumber = "4711-0815",
                                              .responseLength = 8,
                                              .minPinLength = 4,
                                              .maxPinLength = 8};
    options->request = request;
    options->challenge.data = options->bytes;
    options->capacity = 256;
    ParseChallenge(options, "5AC01F99E20734BD");
    for (int option = 0; (option = getopt_long(argc, argv, "", kUnlockOptions, NULL)) != -1;) {
        SetUnlockOption(options, option);
    }
    ExpectNoWord(argc, argv);
}

static void PrintUnlock(const UnlockOptions* options, const ChallengeResponseBuffers* buffers) {
    printf("response of %lu bytes%s", (unsigned long)buffers->responseLength,
           options->reveal ? ": " : "");
    for (uint64_t i = 0; options->reveal && i < buffers->responseLength; ++i) {
        printf("%02x", buffers->response[i]);
    }
    printf("\n");
    if (options->request.askNewPin != 0) {
        printf("new PIN of %lu bytes", (unsigned long)buffers->newPinLength);
        if (options->reveal) {
            printf(": %.*s", (int)buffers->newPinLength, (const char*)buffers->newPin);
        }
        printf("\n");
    }
}

static int AskAndReport(const DLG_FunctionList* dialogs, const UnlockOptions* options) {
    /* One byte more, so that a capacity of 0 is a buffer too. */
    const size_t room = (size_t)options->capacity + 1;
    uint8_t* const memory = malloc(2 * room);
    if (memory == NULL) {
        fprintf(stderr, "no memory for %lu bytes\n", (unsigned long)(2 * room));
        return EXIT_USAGE;
    }
    ChallengeResponseBuffers buffers = {.response = memory,
                                        .responseLength = options->capacity,
                                        .newPin = memory + room,
                                        .newPinLength = options->capacity};
    const uint32_t result = dialogs->ShowUnblockThroughCR(&options->request, &buffers);
    const int exitCode = ReportResult(result);
    if (result == ZELDLG_OK) {
        PrintUnlock(options, &buffers);
    }
    free(memory);
    return exitCode;
}

static int RunUnblockCr(const DLG_FunctionList* dialogs, int argc, char** argv) {
    UnlockOptions* const options = calloc(1, sizeof *options);
    if (options == NULL) {
        fprintf(stderr, "no memory\n");
        return EXIT_USAGE;
    }
    ParseUnlockOptions(options, argc, argv);
    const int exitCode = AskAndReport(dialogs, options);
    free(options);
    return exitCode;
}

const Command kUnblockMethodCommand = {
    .name = "unblock-method",
    .synopsis = "unblock-method [OPTION...]",
    .summary = "Let the user choose how to unblock a PIN",
    .options =
        "  --no-puk           the PUK is not offered\n"
        "  --algorithm CODE   one algorithm; may be repeated (default: 0 and 1)\n"
        "  --no-algorithms    no off-line unlock\n",
    .run = RunUnblockMethod,
};

const Command kUnblockCrCommand = {
    .name = "unblock-cr",
    .synopsis = "unblock-cr [OPTION...]",
    .summary = "Unblock a PIN off-line, with challenge and response",
    .options =
        "  --label TEXT       label of the token (default: My card)\n"
        "  --serial TEXT      serial number of the token\n"
        "  --challenge HEX    the challenge (default: 8 bytes)\n"
        "  --length N         length of the response in bytes (default: 8)\n"
        "  --new-pin          ask for a new PIN as well\n"
        "  --min N, --max N   bounds of its length in bytes (default: 4 and 8)\n"
        "  --capacity N       bytes in each of the host's buffers (default: 256)\n"
        "  --reveal           print the values; without it only their lengths\n",
    .run = RunUnblockCr,
};
