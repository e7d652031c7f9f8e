/* tokens COUNT, ids COUNT, algorithms COUNT: lets the user choose one of so many, then asks for a
 * PIN: what comes next must not wait either. label BYTES: asks for a PIN of a label so long. */
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include "host.h"
#include "note.h"

static uint32_t AskForPin(const Host* host, const char* label) {
    const PinDialogRequest request = {label, 4, 8, 1, 0, 0};
    uint8_t bytes[64];
    PinBuffer pin = {bytes, sizeof bytes};
    return host->dialogs->ShowPinDialog(&request, &pin);
}

/* The first dialog pays for the toolkit's start. */
static int Begin(const Host* host) {
    const int begun = AskForPin(host, "Identity card") == ZELDLG_OK;
    usleep(BENCH_PAUSE);
    Note("call");
    return begun;
}

static int End(const Host* host, int begun, uint32_t result) {
    Note("return");
    return begun && result == ZELDLG_OK && AskForPin(host, "Identity card") == ZELDLG_OK
               ? EXIT_SUCCESS
               : EXIT_FAILURE;
}

int MeasureTokens(const Host* host) {
    const uint32_t count = (uint32_t)Argument(host, 0);
    TokenChoiceEntry* const entries = calloc(count, sizeof *entries);
    char(*const names)[24] = calloc(count, sizeof *names);
    if (entries == NULL || names == NULL) {
        return EXIT_FAILURE;
    }
    for (uint32_t i = 0; i < count; ++i) {
        snprintf(names[i], sizeof names[i], "Card %" PRIu32, i);
        entries[i] = (TokenChoiceEntry){names[i], "Reader", i};
    }
    const TokenChoiceList list = {entries, count};
    uint64_t identifier = 0;
    const int begun = Begin(host);
    const uint32_t result = host->dialogs->ShowTokenSelectionDialog(&list, &identifier);
    const int ended = End(host, begun, result);
    free(names);
    free(entries);
    return ended;
}

int MeasureIds(const Host* host) {
    const DigitalIdTexts texts = {"Jane", "2024-01-01", "2034-01-01", NULL};
    const DigitalIdChoice choice = {&texts, (uint32_t)Argument(host, 0), 0, "corp.example", 0, 0};
    DigitalIdResult chosen;
    const int begun = Begin(host);
    return End(host, begun, host->dialogs->ShowDigitalIDSelection(&choice, &chosen));
}

int MeasureAlgorithms(const Host* host) {
    const uint32_t count = (uint32_t)Argument(host, 0);
    uint32_t* const codes = calloc(count, sizeof *codes);
    if (codes == NULL) {
        return EXIT_FAILURE;
    }
    uint32_t method = 0;
    uint32_t algorithm = 0;
    const int begun = Begin(host);
    const uint32_t result =
        host->dialogs->ShowSelectUnblockMethod(0, codes, count, &method, &algorithm);
    const int ended = End(host, begun, result);
    free(codes);
    return ended;
}

int MeasureLabel(const Host* host) {
    const size_t length = (size_t)Argument(host, 0);
    char* const label = malloc(length + 1);
    if (label == NULL) {
        return EXIT_FAILURE;
    }
    memset(label, 'x', length);
    label[length] = '\0';
    const int begun = Begin(host);
    const int ended = End(host, begun, AskForPin(host, label));
    free(label);
    return ended;
}
