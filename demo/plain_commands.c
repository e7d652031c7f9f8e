/* The commands that show a box or a list, or ask for a text. */
#define _POSIX_C_SOURCE 200809L
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "command.h"

int ReportResult(uint32_t result) {
    const char* const meaning = result == ZELDLG_OK          ? "confirmed"
                                : result == ZELDLG_CANCELLED ? "cancelled"
                                                             : "failed";
    printf("result 0x%08x (%s)\n", (unsigned)result, meaning);
    return result == ZELDLG_OK ? EXIT_CONFIRMED : EXIT_NOT_CONFIRMED;
}

/* ---------------------------------------------------------------- boxes */

/* The library reports that a box was shown, not what was answered: none of these is a failure. */
static int ReportShown(uint32_t result) {
    const bool shown = result != ZELDLG_FAILED;
    printf("result 0x%08x (%s)\n", (unsigned)result, shown ? "shown" : "failed");
    return shown ? EXIT_CONFIRMED : EXIT_NOT_CONFIRMED;
}

/* One box of each kind; no call of a host takes a text of its own. */
int RunMessage(const DLG_FunctionList* dialogs, const Options* options) {
    return ReportShown(strcmp(options->word, "error") == 0 ? dialogs->ShowPUKIsLocked()
                                                           : dialogs->ShowUnlockTokenDialog());
}

int RunLocked(const DLG_FunctionList* dialogs, const Options* options) {
    return ReportShown(dialogs->ShowLockedDialog(options->word));
}

int RunCrFailed(const DLG_FunctionList* dialogs, const Options* options) {
    (void)options;
    return ReportShown(dialogs->ShowCRUnblockFailed());
}

int RunPukLocked(const DLG_FunctionList* dialogs, const Options* options) {
    (void)options;
    return ReportShown(dialogs->ShowPUKIsLocked());
}

int RunAskUnlock(const DLG_FunctionList* dialogs, const Options* options) {
    (void)options;
    return ReportShown(dialogs->ShowUnlockTokenDialog());
}

int RunAskTransportPin(const DLG_FunctionList* dialogs, const Options* options) {
    (void)options;
    return ReportShown(dialogs->AskChangeTransportPIN());
}

int RunAskExpiry(const DLG_FunctionList* dialogs, const Options* options) {
    return ReportShown(
        dialogs->AskEarlyUnexpirePin(ParseNumber("DAYS", options->word, UINT32_MAX)));
}

int RunConfirmDelete(const DLG_FunctionList* dialogs, const Options* options) {
    return ReportShown(dialogs->ShowConfirmDeleteCertificate(options->application, options->label,
                                                             options->issuedTo, options->issuedBy,
                                                             options->from, options->to));
}

int RunBiometricError(const DLG_FunctionList* dialogs, const Options* options) {
    return ReportShown(
        dialogs->ShowSupertokenError(ParseNumber("CODE", options->word, UINT32_MAX)));
}

int RunRetry(const DLG_FunctionList* dialogs, const Options* options) {
    return ReportShown(strcmp(options->word, "auth") == 0 ? dialogs->AuthFailRetryDialog()
                                                          : dialogs->EnrolFailRetryDialog());
}

/* ---------------------------------------------------------------- lists */

int RunSelectToken(const DLG_FunctionList* dialogs, const Options* options) {
    static const char* const kSamples[] = {"Identity card=Contact reader",
                                           "Company badge=Contactless reader",
                                           "Signature card=Keyboard reader"};
    const bool given = options->itemCount != 0;
    const uint32_t count = given ? options->itemCount : options->count;
    if (count > kMaxItems) {
        Refuse("count: more than %d", kMaxItems);
    }
    TokenChoiceEntry entries[kMaxItems];
    char* names[kMaxItems] = {NULL};
    for (uint32_t i = 0; i < count; ++i) {
        const char* const item = given ? options->items[i] : kSamples[i % 3];
        const size_t length = strcspn(item, "=");
        names[i] = strndup(item, length);
        const TokenChoiceEntry entry = {names[i], item + length + (item[length] == '='), i + 1};
        entries[i] = entry;
    }
    const TokenChoiceList list = {.entries = entries, .count = count};
    uint64_t identifier = 0;
    const uint32_t result = dialogs->ShowTokenSelectionDialog(&list, &identifier);
    if (result == ZELDLG_OK) {
        printf("chosen: %s\n", names[identifier - 1]);
    }
    for (uint32_t i = 0; i < count; ++i) {
        free(names[i]);
    }
    return ReportResult(result);
}

int RunSelectId(const DLG_FunctionList* dialogs, const Options* options) {
    const DigitalIdTexts texts = {options->name, options->from, options->to, NULL};
    const DigitalIdChoice choice = {.texts = &texts,
                                    .count = options->count,
                                    .defaultIndex = options->defaultIndex,
                                    .presetAlwaysUse = options->alwaysUse,
                                    .autoSelect = options->autoSelect,
                                    .directory = options->directory};
    DigitalIdResult chosen = {0};
    const uint32_t result = dialogs->ShowDigitalIDSelection(&choice, &chosen);
    if (result == ZELDLG_OK) {
        printf("always use it: %s\n", chosen.alwaysUse != 0 ? "yes" : "no");
    }
    return ReportResult(result);
}

/* ---------------------------------------------------------------- texts */

int RunTranslate(const DLG_FunctionList* dialogs, const Options* options) {
    uint32_t size = 0;
    uint32_t result = dialogs->GetTranslationUTF8(options->word, NULL, &size);
    char* const text = result == ZELDLG_BUFFER_TOO_SMALL ? malloc(size) : NULL;
    if (text != NULL) {
        result = dialogs->GetTranslationUTF8(options->word, text, &size);
    }
    if (result == ZELDLG_OK) {
        puts(text);
    }
    free(text);
    return result == ZELDLG_OK ? EXIT_CONFIRMED : ReportResult(result);
}

int RunLocale(const DLG_FunctionList* dialogs, const Options* options) {
    (void)options;
    wchar_t name[64];
    uint32_t size = sizeof name / sizeof name[0];
    const uint32_t result = dialogs->GetLocale(name, &size);
    if (result != ZELDLG_OK) {
        return ReportResult(result);
    }
    printf("%ls\n", name);
    return EXIT_CONFIRMED;
}
