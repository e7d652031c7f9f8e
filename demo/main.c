/* zeldlg-demo: a host that finds the library at run time, as a token library does. It shows the
 * dialogs and prints what a host receives. */
#include <dlfcn.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/prctl.h>

#include "command.h"

#define PIN "label min max capacity reveal failed-earlier "
#define CHANGE "label min max failed final-try puk capacity reveal "
#define POLICY                                                                       \
    "no-policy enabled p1-threshold p1-case-sensitive p1-full-pin-check p2-classes " \
    "p2-population p2-min-length p2-class-mask p3-threshold p3-history-size "        \
    "p3-case-insensitive p3-length-normalize p3-strict-only p4-characters p4-white-list "
#define NO_ANSWER \
    "The library reports that the box was shown (exit code 0), not what was answered.\n"

static const Command kCommands[] = {
    {"pin", RunPin, NULL, PIN "failed final-try", "Ask for the PIN of a token", ""},
    {"pin-ex", RunPinEx, NULL, PIN "max-tries tries-left",
     "Ask for the PIN of a token, with its retry counter", ""},
    {"legal-pin", RunLegalPin, NULL, PIN "failed final-try",
     "Ask for the PIN of a legally binding signature", ""},
    {"legal-pin-ex", RunLegalPinEx, NULL, PIN "max-tries tries-left",
     "Ask for the PIN of a legally binding signature, with its retry counter", ""},
    {"pin-pad", RunPinPad, NULL, "kind abort script delay",
     "Show what goes with a reader's own keys, and play the reader",
     "Letters of a script:\n"
     "  n     the reader waits for the next PIN\n"
     "  0-9   a digit is typed\n"
     "  d c   the last digit, all digits are deleted\n"
     "  a     the PIN is accepted\n"
     "  x     Cancel is pressed\n"
     "  t     the time is over\n"
     "  .     nothing happens\n"
     "  ?     print whether Abort has been pressed\n"
     "  !     wait until Abort is pressed\n"},
    {"change-pin", RunChangePin, NULL, CHANGE, "Change the PIN", ""},
    {"change-transport-pin", RunChangeTransportPin, NULL, CHANGE, "Change the transport PIN", ""},
    {"change-policed-pin", RunChangePolicedPin, NULL,
     CHANGE "old-min old-max tries-left initialise " POLICY, "Change the PIN under a policy", ""},
    {"select-token", RunSelectToken, NULL, "entry count", "Let the user pick a token", ""},
    {"select-id", RunSelectId, NULL, "name from to count default directory always auto",
     "Let the user pick a digital ID", ""},
    {"unblock-method", RunUnblockMethod, NULL, "no-puk algorithm no-algorithms",
     "Let the user choose how to unblock a PIN", ""},
    {"unblock-puk", RunUnblockPuk, NULL, CHANGE, "Unblock the PIN with the PUK", ""},
    {"unblock-cr", RunUnblockCr, NULL,
     "label serial challenge length new-pin min max capacity reveal",
     "Unblock a PIN off-line, with challenge and response", ""},
    {"message", RunMessage, "error|question", "",
     "Show a box of one kind, with one of the library's texts", NO_ANSWER},
    {"locked", RunLocked, "LABEL", "", "Say that a token is locked", ""},
    {"cr-failed", RunCrFailed, NULL, "", "Say that an off-line unlock has failed", ""},
    {"puk-locked", RunPukLocked, NULL, "", "Say that the PUK is locked", ""},
    {"ask-unlock", RunAskUnlock, NULL, "", "Ask whether to unlock a token", NO_ANSWER},
    {"ask-transport-pin", RunAskTransportPin, NULL, "", "Ask whether to change the transport PIN",
     NO_ANSWER},
    {"ask-expiry", RunAskExpiry, "DAYS", "",
     "Ask whether to change a PIN that expires in so many days", NO_ANSWER},
    {"confirm-delete", RunConfirmDelete, NULL, "application label issued-to issued-by from to",
     "Ask whether a certificate may be deleted", NO_ANSWER},
    {"biometric", RunBiometric, "auth|enrol", "seconds scans",
     "Ask for a finger, to authenticate or to enrol it",
     "An enrolment is explained first, unless the setting ShowEnrolmentHint is 0.\n"},
    {"biometric-error", RunBiometricError, "CODE", "", "Show an error of the biometric token",
     "Codes are 0xA712, 0x63C1 or 0x6983, for example.\n"},
    {"retry", RunRetry, "auth|enrol", "", "Ask whether to try again with the biometric token",
     NO_ANSWER},
    {"keygen", RunKeyGeneration, NULL, "seconds", "Show that a key pair is being generated", ""},
    {"translate", RunTranslate, "TEXT", "", "Print a text of the library in the user's language",
     "A text without translation is printed as it is.\n"},
    {"probe", RunProbe, NULL, "", "Say whether a dialog could be shown now",
     "Looks at the display, the fonts and the place of the user's settings, and starts nothing. "
     "The\n"
     "exit code is 0 when a dialog could be shown, else 1.\n"},
    {"locale", RunLocale, NULL, "", "Print the name of the dialogs' locale", ""},
    {"all", RunAll, NULL, "", "A guided tour through every dialog",
     "Shows one dialog after the other, with the command that shows it alone. Answer, or close\n"
     "it with Escape, to see the next. Windows without an answer stay for some seconds.\n"},
};
enum { kCommandCount = sizeof kCommands / sizeof kCommands[0] };

static const char kDefaultLibrary[] = "libzeldlglib.so.3";

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
        fprintf(out, "  %-21s %s\n", kCommands[i].name, kCommands[i].summary);
    }
    fputs("\nExit codes: 0 confirmed, 1 cancelled or failed, 2 wrong usage, 3 no library.\n", out);
}

const Command* FindCommand(const char* name) {
    for (size_t i = 0; i < kCommandCount; ++i) {
        if (strcmp(kCommands[i].name, name) == 0) {
            return &kCommands[i];
        }
    }
    return NULL;
}

/* Null, with a message, when there is no such library. */
static const DLG_FunctionList* LoadDialogs(const char* library) {
    void* const handle = dlopen(library, RTLD_NOW | RTLD_LOCAL);
    void* const symbol = handle == NULL ? NULL : dlsym(handle, "DLG_GetFunctionList");
    if (symbol == NULL) {
        fprintf(stderr, "zeldlg-demo: %s\n", dlerror());
        return NULL;
    }
    /* ISO C has no conversion from an object pointer to a function pointer. */
    const DLG_FunctionList* (*getFunctionList)(void) = NULL;
    memcpy(&getFunctionList, &symbol, sizeof getFunctionList);
    const DLG_FunctionList* const dialogs = getFunctionList();
    if (dialogs->version != ZELDLG_FUNCTION_LIST_VERSION) {
        fprintf(stderr, "zeldlg-demo: %s: unknown version of the function table\n", library);
        return NULL;
    }
    return dialogs;
}

int main(int argc, char** argv) {
    /* PINs are in our memory: it must not end in a core file, nor be read by other programs. */
    prctl(PR_SET_DUMPABLE, 0);
    const char* library = kDefaultLibrary;
    const char* const* words = (const char* const*)argv + 1;
    if (argc > 2 && strcmp(words[0], "--library") == 0) {
        library = words[1];
        words += 2;
    }
    if (*words == NULL || strcmp(*words, "--help") == 0) {
        PrintUsage(*words == NULL ? stderr : stdout);
        return *words == NULL ? EXIT_USAGE : EXIT_SUCCESS;
    }
    const Command* const command = FindCommand(*words);
    if (command == NULL) {
        Refuse("unknown command '%s' (see --help)", *words);
    }
    for (const char* const* word = ++words; *word != NULL; ++word) {
        if (strcmp(*word, "--help") == 0) {
            PrintCommandHelp(command);
            return EXIT_SUCCESS;
        }
    }
    const Options options = ParseWords(command, words);
    const DLG_FunctionList* const dialogs = LoadDialogs(library);
    if (dialogs == NULL) {
        return EXIT_NO_LIBRARY;
    }
    const int exitCode = command->run(dialogs, &options);
    dialogs->Finalize();
    return exitCode;
}
