/* The command that goes through every dialog, one after the other. */
#include <stdio.h>
#include <string.h>

#include "command.h"

/* The words of a command, up to a null pointer. */
static const char* const kStops[][16] = {
    {"pin", "--label", "Identity card"},
    {"pin-ex", "--label", "Company badge", "--tries-left", "2"},
    {"legal-pin", "--label", "Identity card"},
    {"legal-pin-ex", "--label", "Identity card", "--tries-left", "1"},
    {"pin-pad", "--kind", "modification", "--abort", "--script", "n1234a.n56d6a.n56a."},
    {"pin-pad", "--kind", "legal", "--script", "n1234a."},
    {"change-pin", "--label", "Identity card"},
    {"change-pin", "--label", "Identity card", "--puk"},
    {"change-transport-pin", "--label", "Identity card"},
    {"change-policed-pin", "--label", "Company badge", "--enabled", "15", "--p1-threshold", "1",
     "--p2-min-length", "6", "--p2-class-mask", "31", "--p4-characters", "0"},
    {"select-token"},
    {"select-id", "--directory", "corp.example"},
    {"unblock-method"},
    {"unblock-puk", "--label", "Identity card"},
    {"unblock-cr"},
    {"cr-failed"},
    {"puk-locked"},
    {"locked", "Identity card"},
    {"ask-unlock"},
    {"ask-transport-pin"},
    {"ask-expiry", "3"},
    {"confirm-delete"},
    {"biometric", "auth", "--seconds", "3"},
    {"biometric", "enrol", "--seconds", "3"},
    {"biometric-error", "0x63C1"},
    {"retry", "auth"},
    {"retry", "enrol"},
    {"keygen", "--seconds", "3"},
};
enum { kStopCount = sizeof kStops / sizeof kStops[0] };

int RunAll(const DLG_FunctionList* dialogs, const Options* options) {
    (void)options;
    for (size_t i = 0; i < kStopCount; ++i) {
        const char* const* const words = kStops[i];
        const Command* const command = FindCommand(words[0]);
        printf("\n%zu/%d  %s: %s", i + 1, (int)kStopCount, command->summary, words[0]);
        for (const char* const* word = words + 1; *word != NULL; ++word) {
            printf(strchr(*word, ' ') != NULL ? " '%s'" : " %s", *word);
        }
        putchar('\n');
        fflush(stdout);
        const Options parsed = ParseWords(command, words + 1);
        command->run(dialogs, &parsed);
    }
    return EXIT_CONFIRMED;
}
