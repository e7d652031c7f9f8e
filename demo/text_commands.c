/* The commands that ask for texts: a translation, the name of the locale. */
#include <locale.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "command.h"

static int ReportFailure(uint32_t result) {
    printf("result 0x%08x (failed)\n", (unsigned)result);
    return EXIT_NOT_CONFIRMED;
}

static int RunTranslate(const DLG_FunctionList* dialogs, int argc, char** argv) {
    if (argc != 2) {
        fprintf(stderr, "translate: one text, please\n");
        return EXIT_USAGE;
    }
    uint32_t size = 0;
    uint32_t result = dialogs->GetTranslationUTF8(argv[1], NULL, &size);
    if (result != ZELDLG_BUFFER_TOO_SMALL) {
        return ReportFailure(result);
    }
    char* const text = malloc(size);
    if (text == NULL) {
        return ReportFailure(result);
    }
    result = dialogs->GetTranslationUTF8(argv[1], text, &size);
    if (result == ZELDLG_OK) {
        puts(text);
    }
    free(text);
    return result == ZELDLG_OK ? EXIT_CONFIRMED : ReportFailure(result);
}

static int RunLocale(const DLG_FunctionList* dialogs, int argc, char** argv) {
    (void)argv;
    if (argc != 1) {
        fprintf(stderr, "locale: takes no arguments\n");
        return EXIT_USAGE;
    }
    wchar_t name[64];
    uint32_t size = sizeof name / sizeof name[0];
    const uint32_t result = dialogs->GetLocale(name, &size);
    if (result != ZELDLG_OK) {
        return ReportFailure(result);
    }
    printf("%ls\n", name);
    return EXIT_CONFIRMED;
}

const Command kTranslateCommand = {
    .name = "translate",
    .synopsis = "translate TEXT",
    .summary = "Print a text of the library in the user's language",
    .options = "A text without translation is printed as it is.\n",
    .run = RunTranslate,
};

const Command kLocaleCommand = {
    .name = "locale",
    .synopsis = "locale",
    .summary = "Print the name of the dialogs' locale",
    .options = "",
    .run = RunLocale,
};
