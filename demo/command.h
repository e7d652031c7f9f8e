/* The sub-commands of zeldlg-demo, one for each dialog, and the options that they share. */
#ifndef ZELDLG_DEMO_COMMAND_H
#define ZELDLG_DEMO_COMMAND_H

#include <stdbool.h>
#include <stdint.h>
#include <zeldlg/zeldlg.h>

/* Exit codes of the program. */
enum { EXIT_CONFIRMED = 0, EXIT_NOT_CONFIRMED = 1, EXIT_USAGE = 2, EXIT_NO_LIBRARY = 3 };

enum { kMaxItems = 1000 };

/* What the command line says; the table in options.c has the default of each. */
typedef struct Options {
    const char* word;             /* what follows the command's name, where something does */
    const char* items[kMaxItems]; /* of the option that may be repeated */
    uint32_t itemCount;

    const char* label;
    uint32_t minLength;
    uint32_t maxLength;
    uint32_t oldMinLength;
    uint32_t oldMaxLength;
    uint32_t capacity;
    bool failed;
    bool finalTry;
    bool failedEarlier;
    uint32_t maxTries;
    uint32_t triesLeft;
    bool reveal;

    bool changePuk;
    bool initialise;
    bool noPolicy;
    PinPolicyWire policy; /* without its characters */
    const char* characters;

    const char* kind;
    const char* script;
    uint32_t delay;
    bool allowAbort;

    uint32_t count;
    const char* name;
    const char* from;
    const char* to;
    uint32_t defaultIndex;
    const char* directory;
    bool alwaysUse;
    bool autoSelect;
    const char* application;
    const char* issuedTo;
    const char* issuedBy;

    bool noPuk;
    bool noAlgorithms;
    const char* serial;
    const char* challenge;
    uint32_t responseLength;
    bool askNewPin;

    uint32_t seconds;
    uint32_t scans;
} Options;

/* Does what a command is for. Returns an exit code. */
typedef int Run(const DLG_FunctionList* dialogs, const Options* options);

typedef struct Command {
    const char* name;
    Run* run;
    const char* word;    /* that has to follow the name, for the help; "a|b" allows just these */
    const char* options; /* names of those that it takes, with a space after each */
    const char* summary; /* one line */
    const char* notes;   /* what else the help says */
} Command;

/* Null, when there is no such command. */
const Command* FindCommand(const char* name);

/* Takes apart what follows the command's name, up to a null pointer; the result points into it.
 * Ends the program with a message for a word that is wrong. */
Options ParseWords(const Command* command, const char* const* words);

void PrintCommandHelp(const Command* command);

/* Ends the program with a message in the manner of printf. */
_Noreturn void Refuse(const char* format, ...) __attribute__((format(printf, 1, 2)));

/* Parses a 32-bit number (decimal, 0x..., 0...). Ends the program with a message when it is none,
 * or a greater one than `largest`. */
uint32_t ParseNumber(const char* name, const char* text, uint32_t largest);

/* Prints a result code with its meaning. Returns the exit code that goes with it. */
int ReportResult(uint32_t result);

Run RunPin, RunPinEx, RunLegalPin, RunLegalPinEx;
Run RunChangePin, RunChangeTransportPin, RunUnblockPuk, RunChangePolicedPin;
Run RunPinPad, RunBiometric, RunKeyGeneration;
Run RunSelectToken, RunSelectId, RunUnblockMethod, RunUnblockCr;
Run RunMessage, RunLocked, RunConfirmDelete, RunAskUnlock, RunAskTransportPin, RunAskExpiry;
Run RunCrFailed, RunPukLocked, RunBiometricError, RunRetry;
Run RunTranslate, RunLocale, RunAll, RunProbe;

#endif
