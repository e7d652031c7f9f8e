/* zeldlg-demo: shows the library's dialogs and prints what a host receives. */
#include <dlfcn.h>
#include <errno.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/prctl.h>

#include "command.h"

static const Command* const kCommands[] = {
    &kPinCommand,
    &kPinExCommand,
    &kLegalPinCommand,
    &kLegalPinExCommand,
    &kPinPadCommand,
    &kTranslateCommand,
    &kLocaleCommand,
    &kChangePinCommand,
    &kChangeTransportPinCommand,
    &kUnblockPukCommand,
    &kChangePolicedPinCommand,
    &kMessageCommand,
    &kLockedCommand,
    &kConfirmDeleteCommand,
    &kAskUnlockCommand,
    &kAskTransportPinCommand,
    &kAskExpiryCommand,
    &kCrFailedCommand,
    &kPukLockedCommand,
    &kBiometricErrorCommand,
    &kRetryCommand,
    &kSelectTokenCommand,
    &kSelectIdCommand,
    &kUnblockMethodCommand,
    &kUnblockCrCommand,
    &kBiometricCommand,
    &kKeygenCommand,
    &kAllCommand,
};
enum { kCommandCount = sizeof kCommands / sizeof kCommands[0] };

static const char kDefaultLibrary[] = "libzeldlglib.so.3";

/* Written by main() before any command runs. */
static const char* g_library = kDefaultLibrary;

static void PrintUsage(FILE* out) {
    fprintf(out,
            "Usage: zeldlg-demo [--library FILE] COMMAND [OPTION...]\n"
            "       zeldlg-demo --help | COMMAND --help\n"
            "\n"
            "Shows a dialog of the library and prints what a host receives.\n"
            "\n"
            "  --library FILE   load this library (default: %s)\n"
            "  --help           print this help, or that of a command\n"
            "\n"
            "Commands:\n",
            kDefaultLibrary);
    for (size_t i = 0; i < kCommandCount; ++i) {
        fprintf(out, "  %-21s %s\n", kCommands[i]->name, kCommands[i]->summary);
    }
    fprintf(out,
            "\n"
            "Exit codes: 0 confirmed, 1 cancelled or failed, 2 wrong usage, 3 no library.\n");
}

static void PrintCommandHelp(const Command* command) {
    printf("Usage: zeldlg-demo %s\n\n%s\n\n%s", command->synopsis, command->summary,
           command->options);
}

static const Command* FindCommand(const char* name) {
    for (size_t i = 0; i < kCommandCount; ++i) {
        if (strcmp(kCommands[i]->name, name) == 0) {
            return kCommands[i];
        }
    }
    return NULL;
}

static const DLG_FunctionList* LoadDialogs(void) {
    void* const handle = dlopen(g_library, RTLD_NOW | RTLD_LOCAL);
    if (handle == NULL) {
        fprintf(stderr, "zeldlg-demo: %s\n", dlerror());
        return NULL;
    }
    /* ISO C has no conversion from an object pointer to a function pointer. */
    const DLG_FunctionList* (*getFunctionList)(void) = NULL;
    void* const symbol = dlsym(handle, "DLG_GetFunctionList");
    memcpy(&getFunctionList, &symbol, sizeof getFunctionList);
    if (getFunctionList == NULL) {
        fprintf(stderr, "zeldlg-demo: %s: no DLG_GetFunctionList\n", g_library);
        return NULL;
    }
    const DLG_FunctionList* const dialogs = getFunctionList();
    if (dialogs->version != ZELDLG_FUNCTION_LIST_VERSION) {
        fprintf(stderr, "zeldlg-demo: %s: unknown version of the function table\n", g_library);
        return NULL;
    }
    return dialogs;
}

static int RunCommand(const Command* command, int argc, char** argv) {
    const DLG_FunctionList* const dialogs = LoadDialogs();
    if (dialogs == NULL) {
        return EXIT_NO_LIBRARY;
    }
    const int exitCode = command->run(dialogs, argc, argv);
    dialogs->Finalize();
    return exitCode;
}

int ReportResult(uint32_t result) {
    const char* const meaning = result == ZELDLG_OK          ? "confirmed"
                                : result == ZELDLG_CANCELLED ? "cancelled"
                                                             : "failed";
    printf("result 0x%08x (%s)\n", (unsigned)result, meaning);
    return result == ZELDLG_OK ? EXIT_CONFIRMED : EXIT_NOT_CONFIRMED;
}

uint32_t ParseNumber(const char* option, const char* text) {
    char* end = NULL;
    errno = 0;
    const unsigned long long value = strtoull(text, &end, 0);
    if (errno != 0 || end == text || *end != '\0' || strchr(text, '-') != NULL ||
        value > UINT32_MAX) {
        fprintf(stderr, "zeldlg-demo: %s: '%s' is not a number from 0 to %lu\n", option, text,
                (unsigned long)UINT32_MAX);
        exit(EXIT_USAGE);
    }
    return (uint32_t)value;
}

int main(int argc, char** argv) {
    /* PINs are in our memory: it must not end in a core file, nor be read by other programs. */
    prctl(PR_SET_DUMPABLE, 0);
    int next = 1;
    if (argc > 2 && strcmp(argv[1], "--library") == 0) {
        g_library = argv[2];
        next = 3;
    }
    if (next >= argc || strcmp(argv[next], "--help") == 0) {
        PrintUsage(next >= argc ? stderr : stdout);
        return next >= argc ? EXIT_USAGE : EXIT_SUCCESS;
    }
    const Command* const command = FindCommand(argv[next]);
    if (command == NULL) {
        fprintf(stderr, "zeldlg-demo: unknown command '%s' (see --help)\n", argv[next]);
        return EXIT_USAGE;
    }
    for (int i = next + 1; i < argc; ++i) {
        if (strcmp(argv[i], "--help") == 0) {
            PrintCommandHelp(command);
            return EXIT_SUCCESS;
        }
    }
    return RunCommand(command, argc - next, argv + next);
}
