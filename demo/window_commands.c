/* The commands that show windows which stay until the host removes them: prompts beside a reader
 * with keys of its own, those of a fingerprint token, and of a key generation. */
#define _POSIX_C_SOURCE 199506L
#include <pthread.h>
#include <signal.h>
#include <stdio.h>
#include <string.h>
#include <time.h>

#include "command.h"

static int ReportNotShown(void) {
    puts("not shown");
    return EXIT_NOT_CONFIRMED;
}

/* While a window is shown Ctrl-C ends a wait instead of the program, so that the window is removed
 * in order. */
static sigset_t Interruptions(void) {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    return signals;
}

/* Waits; returns whether the time passed without an interruption. */
static bool Wait(uint64_t milliseconds) {
    const sigset_t signals = Interruptions();
    const struct timespec time = {.tv_sec = (time_t)(milliseconds / 1000),
                                  .tv_nsec = (long)(milliseconds % 1000) * 1000000};
    fflush(stdout);
    return sigtimedwait(&signals, NULL, &time) < 0;
}

static void HoldInterruptions(bool hold) {
    const sigset_t signals = Interruptions();
    pthread_sigmask(hold ? SIG_BLOCK : SIG_UNBLOCK, &signals, NULL);
}

/* ---------------------------------------------------------------- a reader with keys */

typedef uint32_t ShowFunction(void** handle, uint8_t allowAbort);

static ShowFunction* FindShow(const DLG_FunctionList* dialogs, const char* kind) {
    const struct {
        const char* name;
        ShowFunction* show;
    } kinds[] = {{"verification", dialogs->PinPadShowVerificationDialog},
                 {"modification", dialogs->PinPadShowModificationDialog},
                 {"legal", dialogs->PinPadShowLegalVerificationDialog},
                 {"no-pin", dialogs->PinPadShowNoPinVerificationDialog},
                 {"legal-no-pin", dialogs->PinPadShowLegalNoPinVerificationDialog}};
    size_t i = 0;
    while (strcmp(kinds[i].name, kind) != 0) { /* the options allow no other */
        ++i;
    }
    return kinds[i].show;
}

typedef struct Reader {
    const DLG_FunctionList* dialogs;
    void* pad;
    uint32_t delay; /* milliseconds after each letter of the script */
} Reader;

static bool IsAborted(const Reader* reader) {
    return reader->dialogs->PinPadKeyboardInputShouldAbort(reader->pad) != 0;
}

static void PlayLetter(const Reader* reader, char letter) {
    const DLG_FunctionList* const dialogs = reader->dialogs;
    const struct {
        const char* letters;
        void (*tell)(void* pad);
    } events[] = {{"n", dialogs->PinPadKeyboardInputNextPin},
                  /* which digit it is stays the reader's secret */
                  {"0123456789", dialogs->PinPadKeyboardInputAddChar},
                  {"d", dialogs->PinPadKeyboardInputDelChar},
                  {"c", dialogs->PinPadKeyboardInputClearChars},
                  {"a", dialogs->PinPadKeyboardInputAccept},
                  {"x", dialogs->PinPadKeyboardInputCancel},
                  {"t", dialogs->PinPadKeyboardInputTimeout}};
    for (size_t i = 0; i < sizeof events / sizeof events[0]; ++i) {
        if (strchr(events[i].letters, letter) != NULL) {
            events[i].tell(reader->pad);
        }
    }
    if (letter == '?') {
        printf("abort %d\n", IsAborted(reader));
        fflush(stdout);
    }
    while (letter == '!' && !IsAborted(reader)) {
        Wait(50);
    }
}

/* Returns whether Abort was pressed, which ends the script. */
static bool PlayScript(const Reader* reader, const char* script) {
    for (; *script != '\0'; ++script) {
        PlayLetter(reader, *script);
        Wait(reader->delay);
        if (IsAborted(reader)) {
            return true;
        }
    }
    return false;
}

int RunPinPad(const DLG_FunctionList* dialogs, const Options* options) {
    const size_t valid = strspn(options->script, "n0123456789dcaxt.?!");
    if (options->script[valid] != '\0') {
        Refuse("pin-pad: '%c' means nothing in a script", options->script[valid]);
    }
    if (strchr(options->script, '!') != NULL && !options->allowAbort) {
        Refuse("pin-pad: without --abort there is no button to wait for");
    }
    Reader reader = {.dialogs = dialogs, .delay = options->delay};
    if (FindShow(dialogs, options->kind)(&reader.pad, options->allowAbort) == 0) {
        return ReportNotShown();
    }
    const bool aborted = PlayScript(&reader, options->script);
    dialogs->PinPadHideDialog(reader.pad);
    puts(aborted ? "aborted" : "script played");
    return aborted ? EXIT_NOT_CONFIRMED : EXIT_CONFIRMED;
}

/* ---------------------------------------------------------------- a finger, a key pair */

static int ReportEnd(bool undisturbed) {
    HoldInterruptions(false);
    puts(undisturbed ? "hidden" : "interrupted");
    return undisturbed ? EXIT_CONFIRMED : EXIT_NOT_CONFIRMED;
}

static bool Show(const Options* options) {
    puts("shown");
    return Wait((uint64_t)options->seconds * 1000);
}

/* Says which scan the window shows, and waits for its part of the time. */
static bool PlayScans(const DLG_FunctionList* dialogs, const Options* options) {
    bool undisturbed = true;
    for (uint32_t scan = 1; undisturbed && scan <= options->scans; ++scan) {
        if (scan > 1) { /* the window itself begins with the first */
            dialogs->UpdateSuperTokenEnrolDlg();
        }
        printf("scan %u\n", (unsigned)scan);
        undisturbed = Wait((uint64_t)options->seconds * 1000 / options->scans);
    }
    return undisturbed;
}

int RunBiometric(const DLG_FunctionList* dialogs, const Options* options) {
    const bool enrol = strcmp(options->word, "enrol") == 0;
    if (options->scans == 0) {
        Refuse("biometric: at least one scan");
    }
    uint64_t shown = 0;
    const uint32_t result =
        enrol ? dialogs->ShowSupertokenEnrolDlg(&shown) : dialogs->ShowSupertokenAuthDlg(&shown);
    if (result != ZELDLG_OK || shown == 0) {
        return ReportNotShown();
    }
    HoldInterruptions(true);
    const bool undisturbed = enrol ? PlayScans(dialogs, options) : Show(options);
    dialogs->HideSupertokenDlg();
    return ReportEnd(undisturbed);
}

int RunKeyGeneration(const DLG_FunctionList* dialogs, const Options* options) {
    if (dialogs->ShowKeyGenerationProgressDialog() != ZELDLG_OK) {
        return ReportNotShown();
    }
    HoldInterruptions(true);
    const bool undisturbed = Show(options);
    dialogs->HideKeyGenerationProgressDialog();
    return ReportEnd(undisturbed);
}
