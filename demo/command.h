/* The sub-commands of zeldlg-demo: one for each dialog, kept in a table by main.c. */
#ifndef ZELDLG_DEMO_COMMAND_H
#define ZELDLG_DEMO_COMMAND_H

#include <stdbool.h>
#include <stdint.h>
#include <zeldlg/zeldlg.h>

/* Exit codes of the program. */
enum { EXIT_CONFIRMED = 0, EXIT_NOT_CONFIRMED = 1, EXIT_USAGE = 2, EXIT_NO_LIBRARY = 3 };

typedef struct Command {
    const char* name;
    const char* synopsis; /* its name with what follows it */
    const char* summary;  /* one line */
    const char* options;  /* for --help, a line each */
    /* Runs with the words behind the command's name in argv[1] and on. Returns an exit code. */
    int (*run)(const DLG_FunctionList* dialogs, int argc, char** argv);
} Command;

#ifdef __cplusplus
extern "C" {
#endif

extern const Command kPinCommand;
extern const Command kPinExCommand;
extern const Command kLegalPinCommand;
extern const Command kLegalPinExCommand;
extern const Command kPinPadCommand;
extern const Command kTranslateCommand;
extern const Command kLocaleCommand;
extern const Command kChangePinCommand;
extern const Command kChangeTransportPinCommand;
extern const Command kUnblockPukCommand;
extern const Command kChangePolicedPinCommand;
extern const Command kMessageCommand;
extern const Command kLockedCommand;
extern const Command kBiometricErrorCommand;
extern const Command kRetryCommand;
extern const Command kConfirmDeleteCommand;
extern const Command kAskUnlockCommand;
extern const Command kAskTransportPinCommand;
extern const Command kAskExpiryCommand;
extern const Command kCrFailedCommand;
extern const Command kPukLockedCommand;
extern const Command kSelectTokenCommand;
extern const Command kSelectIdCommand;
extern const Command kUnblockMethodCommand;
extern const Command kUnblockCrCommand;
extern const Command kBiometricCommand;
extern const Command kKeygenCommand;
extern const Command kAllCommand;

/* Prints a result code with its meaning. Returns the exit code that goes with it. */
int ReportResult(uint32_t result);

/* Parses a 32-bit number (decimal, 0x..., 0...). Ends the program with a message when it is none.
 */
uint32_t ParseNumber(const char* option, const char* text);

#ifdef __cplusplus
}
#endif

#endif
