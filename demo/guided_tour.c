/* The command that goes through every dialog, one after the other. */
#define _POSIX_C_SOURCE 200809L
#include <getopt.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "command.h"

enum { kMaxWords = 16 };

typedef struct Stop {
    const Command* command;
    const char* words[kMaxWords]; /* behind the command's name; ended by a null pointer */
} Stop;

static const Stop kStops[] = {
    {&kPinCommand, {"--label", "Identity card"}},
    {&kPinExCommand, {"--label", "Company badge", "--tries-left", "2"}},
    {&kLegalPinCommand, {"--label", "Identity card"}},
    {&kLegalPinExCommand, {"--label", "Identity card", "--tries-left", "1"}},
    {&kPinPadCommand, {"--kind", "modification", "--abort", "--script", "n1234a.n56d6a.n56a."}},
    {&kPinPadCommand, {"--kind", "legal", "--script", "n1234a."}},
    {&kChangePinCommand, {"--label", "Identity card"}},
    {&kChangePinCommand, {"--label", "Identity card", "--puk"}},
    {&kChangeTransportPinCommand, {"--label", "Identity card"}},
    {&kChangePolicedPinCommand,
     {"--label", "Company badge", "--enabled", "15", "--p1-threshold", "1", "--p2-min-length", "6",
      "--p2-class-mask", "31", "--p4-characters", "0"}},
    {&kSelectTokenCommand, {NULL}},
    {&kSelectIdCommand, {"--directory", "corp.example"}},
    {&kUnblockMethodCommand, {NULL}},
    {&kUnblockPukCommand, {"--label", "Identity card"}},
    {&kUnblockCrCommand, {NULL}},
    {&kCrFailedCommand, {NULL}},
    {&kPukLockedCommand, {NULL}},
    {&kLockedCommand, {"Identity card"}},
    {&kAskUnlockCommand, {NULL}},
    {&kAskTransportPinCommand, {NULL}},
    {&kAskExpiryCommand, {"3"}},
    {&kConfirmDeleteCommand, {NULL}},
    {&kBiometricCommand, {"auth", "--seconds", "3"}},
    {&kBiometricCommand, {"enrol", "--seconds", "3"}},
    {&kBiometricErrorCommand, {"0x63C1"}},
    {&kRetryCommand, {"auth"}},
    {&kRetryCommand, {"enrol"}},
    {&kKeygenCommand, {"--seconds", "3"}},
};
enum { kStopCount = sizeof kStops / sizeof kStops[0] };

static void PrintStop(size_t number, const Stop* stop) {
    printf("\n%zu/%d  %s: %s", number, (int)kStopCount, stop->command->summary,
           stop->command->name);
    for (const char* const* word = stop->words; *word != NULL; ++word) {
        printf(strchr(*word, ' ') != NULL ? " '%s'" : " %s", *word);
    }
    putchar('\n');
    fflush(stdout);
}

/* Runs a command with copies of its words: options are parsed in place. */
static int RunStop(const DLG_FunctionList* dialogs, const Stop* stop) {
    char* words[kMaxWords + 2] = {strdup(stop->command->name)};
    int count = 1;
    for (const char* const* word = stop->words; *word != NULL; ++word) {
        words[count++] = strdup(*word);
    }
    optind = 0; /* parse from the start again */
    const int exitCode = stop->command->run(dialogs, count, words);
    for (int i = 0; i < count; ++i) {
        free(words[i]);
    }
    return exitCode;
}

static int RunAll(const DLG_FunctionList* dialogs, int argc, char** argv) {
    if (argc > 1) {
        fprintf(stderr, "%s: unexpected word '%s'\n", argv[0], argv[1]);
        return EXIT_USAGE;
    }
    for (size_t i = 0; i < kStopCount; ++i) {
        PrintStop(i + 1, &kStops[i]);
        if (RunStop(dialogs, &kStops[i]) == EXIT_USAGE) {
            return EXIT_USAGE;
        }
    }
    return EXIT_SUCCESS;
}

const Command kAllCommand = {
    .name = "all",
    .synopsis = "all",
    .summary = "A guided tour through every dialog",
    .options =
        "Shows one dialog after the other, with the command that shows it alone. Answer, or close\n"
        "it with Escape, to see the next. Windows without an answer stay for some seconds.\n",
    .run = RunAll,
};
