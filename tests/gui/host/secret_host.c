/*
 * A host that is careful with PINs: it keeps none, so that whatever is found of one in its memory
 * was left there by the library. Takes the name of a dialog from each line of standard input, shows
 * it, and prints what it received as "RESULT LENGTH CHECKSUM...".
 */
#define _DEFAULT_SOURCE /* explicit_bzero */
#include <dlfcn.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>
#include <zeldlg/zeldlg.h>

enum { kCapacity = 256 };

static uint8_t g_first[kCapacity];
static uint8_t g_second[kCapacity];

/* FNV-1a, for the test to compare. */
static void Report(uint8_t* bytes, uint64_t length) {
    uint32_t checksum = 2166136261U;
    for (uint64_t i = 0; i < length; ++i) {
        checksum = (checksum ^ bytes[i]) * 16777619U;
    }
    explicit_bzero(bytes, kCapacity);
    printf(" %u %u", (unsigned)length, (unsigned)checksum);
}

typedef uint32_t (*AskForPin)(const PinDialogRequest*, PinBuffer*);

static void AskPin(AskForPin ask) {
    const PinDialogRequest request = {
        .tokenLabel = "Card", .minPinLength = 4, .maxPinLength = 100, .noFailure = 1};
    PinBuffer buffer = {.pin = g_first, .pinLength = kCapacity};
    const uint32_t result = ask(&request, &buffer);
    printf("%u", (unsigned)result);
    Report(g_first, result == ZELDLG_OK ? buffer.pinLength : 0);
}

static void AskChange(const DLG_FunctionList* library) {
    const PinChangeRequest request = {
        .tokenLabel = "Card", .minLength = 4, .maxLength = 100, .noFailure = 1};
    PinChangeBuffers buffers = {
        .oldValue = g_first, .oldLength = kCapacity, .newValue = g_second, .newLength = kCapacity};
    const uint32_t result = library->ShowChangePinDialog(&request, &buffers);
    printf("%u", (unsigned)result);
    Report(g_first, result == ZELDLG_OK ? buffers.oldLength : 0);
    Report(g_second, result == ZELDLG_OK ? buffers.newLength : 0);
}

static void AskUnlock(const DLG_FunctionList* library) {
    uint8_t challenge[] = {1, 2, 3, 4, 5, 6, 7, 8};
    const ByteBuffer asked = {.data = challenge, .length = sizeof challenge};
    const ChallengeResponseRequest request = {.tokenLabel = "Card",
                                              .challenge = &asked,
                                              .serialNumber = "0001",
                                              .responseLength = 4,
                                              .minPinLength = 4,
                                              .maxPinLength = 100,
                                              .askNewPin = 1};
    ChallengeResponseBuffers buffers = {.response = g_first,
                                        .responseLength = kCapacity,
                                        .newPin = g_second,
                                        .newPinLength = kCapacity};
    const uint32_t result = library->ShowUnblockThroughCR(&request, &buffers);
    printf("%u", (unsigned)result);
    Report(g_second, result == ZELDLG_OK ? buffers.newPinLength : 0);
}

int main(int argc, char** argv) {
    void* const handle = argc == 2 ? dlopen(argv[1], RTLD_NOW | RTLD_LOCAL) : NULL;
    if (handle == NULL) {
        fprintf(stderr, "usage: zeldlg_secret_host LIBRARY\n");
        return 2;
    }
    const DLG_FunctionList* (*list)(void) = NULL;
    *(void**)&list = dlsym(handle, "DLG_GetFunctionList");
    const DLG_FunctionList* const library = list();
    char name[32];
    while (fgets(name, sizeof name, stdin) != NULL) {
        name[strcspn(name, "\n")] = '\0';
        if (strcmp(name, "pin") == 0) {
            AskPin(library->ShowPinDialog);
        } else if (strcmp(name, "legal") == 0) {
            AskPin(library->ShowLegalPinDialog);
        } else if (strcmp(name, "change") == 0) {
            AskChange(library);
        } else if (strcmp(name, "unlock") == 0) {
            AskUnlock(library);
        } else {
            return 2;
        }
        printf("\n");
        fflush(stdout);
    }
    return 0;
}
