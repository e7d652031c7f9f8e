/* The commands that ask for a PIN, change it or unblock it. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "command.h"

/* One byte more, so that a capacity of 0 is a buffer too. */
static uint8_t* MakeBuffer(uint32_t capacity) {
    uint8_t* const buffer = malloc((size_t)capacity + 1);
    if (buffer == NULL) {
        Refuse("no memory for %lu bytes", (unsigned long)capacity);
    }
    return buffer;
}

static void PrintValue(const char* name, const uint8_t* bytes, uint64_t length, bool reveal) {
    printf("%s of %lu bytes", name, (unsigned long)length);
    if (reveal) {
        printf(": %.*s", (int)length, (const char*)bytes);
    }
    putchar('\n');
}

/* ---------------------------------------------------------------- a PIN */

typedef uint32_t AskFunction(const PinDialogRequest* request, PinBuffer* pin);
typedef uint32_t AskExFunction(const PinDialogRequestEx* request, PinBuffer* pin);

/* Exactly one of the functions is given. */
static int AskForPin(const Options* options, AskFunction* ask, AskExFunction* askEx) {
    const PinDialogRequest request = {.tokenLabel = options->label,
                                      .minPinLength = options->minLength,
                                      .maxPinLength = options->maxLength,
                                      .noFailure = !options->failed,
                                      .finalTry = options->finalTry,
                                      .failedEarlier = options->failedEarlier};
    const PinDialogRequestEx requestEx = {.tokenLabel = options->label,
                                          .minPinLength = options->minLength,
                                          .maxPinLength = options->maxLength,
                                          .failedEarlier = options->failedEarlier,
                                          .maxTries = options->maxTries,
                                          .triesLeft = options->triesLeft};
    PinBuffer pin = {MakeBuffer(options->capacity), options->capacity};
    const uint32_t result = ask != NULL ? ask(&request, &pin) : askEx(&requestEx, &pin);
    const int exitCode = ReportResult(result);
    if (result == ZELDLG_OK) {
        PrintValue("PIN", pin.pin, pin.pinLength, options->reveal);
    }
    free(pin.pin);
    return exitCode;
}

int RunPin(const DLG_FunctionList* dialogs, const Options* options) {
    return AskForPin(options, dialogs->ShowPinDialog, NULL);
}

int RunPinEx(const DLG_FunctionList* dialogs, const Options* options) {
    return AskForPin(options, NULL, dialogs->ShowPinDialogEx);
}

int RunLegalPin(const DLG_FunctionList* dialogs, const Options* options) {
    return AskForPin(options, dialogs->ShowLegalPinDialog, NULL);
}

int RunLegalPinEx(const DLG_FunctionList* dialogs, const Options* options) {
    return AskForPin(options, NULL, dialogs->ShowLegalPinDialogEx);
}

/* ---------------------------------------------------------------- another PIN */

typedef uint32_t ChangeFunction(const PinChangeRequest* request, PinChangeBuffers* buffers);

static PinChangeBuffers MakeBuffers(const Options* options) {
    const PinChangeBuffers buffers = {MakeBuffer(options->capacity), options->capacity,
                                      MakeBuffer(options->capacity), options->capacity};
    return buffers;
}

/* Frees the buffers, too. */
static int ReportChange(uint32_t result, const PinChangeBuffers* buffers, bool reveal) {
    const int exitCode = ReportResult(result);
    if (result == ZELDLG_OK) {
        PrintValue("old value", buffers->oldValue, buffers->oldLength, reveal);
        PrintValue("new value", buffers->newValue, buffers->newLength, reveal);
    }
    free(buffers->oldValue);
    free(buffers->newValue);
    return exitCode;
}

static int Change(const Options* options, ChangeFunction* change) {
    const PinChangeRequest request = {.tokenLabel = options->label,
                                      .minLength = options->minLength,
                                      .maxLength = options->maxLength,
                                      .noFailure = !options->failed,
                                      .finalTry = options->finalTry,
                                      .changePuk = options->changePuk};
    PinChangeBuffers buffers = MakeBuffers(options);
    return ReportChange(change(&request, &buffers), &buffers, options->reveal);
}

int RunChangePin(const DLG_FunctionList* dialogs, const Options* options) {
    return Change(options, dialogs->ShowChangePinDialog);
}

int RunChangeTransportPin(const DLG_FunctionList* dialogs, const Options* options) {
    return Change(options, dialogs->ShowChangeTransportPIN);
}

int RunUnblockPuk(const DLG_FunctionList* dialogs, const Options* options) {
    return Change(options, dialogs->ShowUnblockThroughPUK);
}

int RunChangePolicedPin(const DLG_FunctionList* dialogs, const Options* options) {
    const PinPolicyCharList characters = {.length = (uint32_t)strlen(options->characters),
                                          .characters = options->characters};
    PinPolicyWire policy = options->policy;
    policy.charList = &characters;
    policy.source = -4; /* the card */
    const PinPolicyDescriptor descriptor = {.size = sizeof policy, .block = &policy};
    const PolicedPinChangeRequest request = {.tokenLabel = options->label,
                                             .minLength = options->minLength,
                                             .maxLength = options->maxLength,
                                             .noFailure = !options->failed,
                                             .finalTry = options->finalTry,
                                             .changePuk = options->changePuk,
                                             .initialisePin = options->initialise,
                                             .triesLeft = options->triesLeft,
                                             .policy = options->noPolicy ? NULL : &descriptor,
                                             .oldMinLength = options->oldMinLength,
                                             .oldMaxLength = options->oldMaxLength};
    PinChangeBuffers buffers = MakeBuffers(options);
    return ReportChange(dialogs->ShowChangePolicedPinDialog_func(&request, &buffers), &buffers,
                        options->reveal);
}

/* ---------------------------------------------------------------- without the old one */

int RunUnblockMethod(const DLG_FunctionList* dialogs, const Options* options) {
    uint32_t algorithms[kMaxItems] = {ZELDLG_ALGORITHM_3DES_CHALLENGE,
                                      ZELDLG_ALGORITHM_3DES_WITNESS};
    for (uint32_t i = 0; i < options->itemCount; ++i) {
        algorithms[i] = ParseNumber("algorithm", options->items[i], UINT32_MAX);
    }
    const uint32_t given = options->itemCount != 0 ? options->itemCount : 2;
    uint32_t method = 0;
    uint32_t algorithm = 0;
    const uint32_t result = dialogs->ShowSelectUnblockMethod(
        !options->noPuk, algorithms, options->noAlgorithms ? 0 : given, &method, &algorithm);
    const int exitCode = ReportResult(result);
    if (result == ZELDLG_OK) {
        printf("method %lu (%s)\nalgorithm at index %lu\n", (unsigned long)method,
               method == ZELDLG_UNBLOCK_WITH_PUK ? "PUK" : "off-line", (unsigned long)algorithm);
    }
    return exitCode;
}

/* The number of bytes; `bytes` has room for half as many as there are digits. */
static size_t ParseHex(const char* digits, uint8_t* bytes) {
    const size_t length = strlen(digits);
    if (length % 2 != 0 || strspn(digits, "0123456789abcdefABCDEF") != length) {
        Refuse("challenge: an even number of hexadecimal digits is expected");
    }
    for (size_t i = 0; i < length / 2; ++i) {
        const char byte[] = {digits[2 * i], digits[2 * i + 1], '\0'};
        bytes[i] = (uint8_t)strtoul(byte, NULL, 16);
    }
    return length / 2;
}

static int32_t SignedLength(uint32_t length) {
    if (length > INT32_MAX) {
        Refuse("a length of at most %ld is expected", (long)INT32_MAX);
    }
    return (int32_t)length;
}

static void PrintResponse(const ChallengeResponseBuffers* buffers, bool reveal) {
    printf("response of %lu bytes%s", (unsigned long)buffers->responseLength, reveal ? ": " : "");
    for (uint64_t i = 0; reveal && i < buffers->responseLength; ++i) {
        printf("%02x", buffers->response[i]);
    }
    putchar('\n');
}

int RunUnblockCr(const DLG_FunctionList* dialogs, const Options* options) {
    uint8_t* const bytes = MakeBuffer((uint32_t)strlen(options->challenge));
    const ByteBuffer challenge = {bytes, ParseHex(options->challenge, bytes)};
    const ChallengeResponseRequest request = {
        .tokenLabel = options->label,
        .challenge = &challenge,
        .serialNumber = options->serial,
        .responseLength = SignedLength(options->responseLength),
        .minPinLength = SignedLength(options->minLength),
        .maxPinLength = SignedLength(options->maxLength),
        .askNewPin = options->askNewPin};
    ChallengeResponseBuffers buffers = {MakeBuffer(options->capacity), options->capacity,
                                        MakeBuffer(options->capacity), options->capacity};
    const uint32_t result = dialogs->ShowUnblockThroughCR(&request, &buffers);
    const int exitCode = ReportResult(result);
    if (result == ZELDLG_OK) {
        PrintResponse(&buffers, options->reveal);
        if (options->askNewPin) {
            PrintValue("new PIN", buffers.newPin, buffers.newPinLength, options->reveal);
        }
    }
    free(bytes);
    free(buffers.response);
    free(buffers.newPin);
    return exitCode;
}
