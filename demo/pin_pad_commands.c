/* The command that plays a reader with keys of its own. */
#define _POSIX_C_SOURCE 199309L
#include <getopt.h>
#include <stdbool.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <time.h>

#include "command.h"

typedef uint32_t (*ShowFunction)(void** handle, uint8_t allowAbort);

typedef struct Reader {
    const DLG_FunctionList* dialogs;
    void* pad;
    uint32_t delay; /* milliseconds after each letter of the script */
} Reader;

typedef struct PadOptions {
    const char* kind;
    const char* script;
    uint32_t delay;
    bool allowAbort;
} PadOptions;

static const char kLetters[] = "n0123456789dcaxt.?!";

static ShowFunction FindShow(const DLG_FunctionList* dialogs, const char* kind) {
    const struct {
        const char* name;
        ShowFunction show;
    } kinds[] = {{"verification", dialogs->PinPadShowVerificationDialog},
                 {"modification", dialogs->PinPadShowModificationDialog},
                 {"legal", dialogs->PinPadShowLegalVerificationDialog},
                 {"no-pin", dialogs->PinPadShowNoPinVerificationDialog},
                 {"legal-no-pin", dialogs->PinPadShowLegalNoPinVerificationDialog}};
    for (size_t i = 0; i < sizeof kinds / sizeof kinds[0]; ++i) {
        if (strcmp(kinds[i].name, kind) == 0) {
            return kinds[i].show;
        }
    }
    return NULL;
}

static void Wait(uint32_t milliseconds) {
    const struct timespec time = {.tv_sec = milliseconds / 1000,
                                  .tv_nsec = (long)(milliseconds % 1000) * 1000000};
    nanosleep(&time, NULL);
}

static bool IsAborted(const Reader* reader) {
    return reader->dialogs->PinPadKeyboardInputShouldAbort(reader->pad) != 0;
}

static void PlayLetter(const Reader* reader, char letter) {
    const DLG_FunctionList* const dialogs = reader->dialogs;
    switch (letter) {
        case 'n':
            dialogs->PinPadKeyboardInputNextPin(reader->pad);
            break;
        case 'd':
            dialogs->PinPadKeyboardInputDelChar(reader->pad);
            break;
        case 'c':
            dialogs->PinPadKeyboardInputClearChars(reader->pad);
            break;
        case 'a':
            dialogs->PinPadKeyboardInputAccept(reader->pad);
            break;
        case 'x':
            dialogs->PinPadKeyboardInputCancel(reader->pad);
            break;
        case 't':
            dialogs->PinPadKeyboardInputTimeout(reader->pad);
            break;
        case '.':
            break;
        case '?':
            printf("abort %d\n", IsAborted(reader));
            fflush(stdout);
            break;
        case '!':
            while (!IsAborted(reader)) {
                Wait(50);
            }
            break;
        default: /* a digit; which one is the reader's secret */
            dialogs->PinPadKeyboardInputAddChar(reader->pad);
            break;
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

static PadOptions ParseOptions(int argc, char** argv) {
    static const struct option kKnown[] = {{"kind", required_argument, NULL, 'k'},
                                           {"script", required_argument, NULL, 's'},
                                           {"delay", required_argument, NULL, 'd'},
                                           {"abort", no_argument, NULL, 'a'},
                                           {NULL, 0, NULL, 0}};
    PadOptions options = {.kind = "verification", .script = "n1234a...", .delay = 400};
    for (int option = 0; (option = getopt_long(argc, argv, "", kKnown, NULL)) != -1;) {
        switch (option) {
            case 'k':
                options.kind = optarg;
                break;
            case 's':
                options.script = optarg;
                break;
            case 'd':
                options.delay = ParseNumber("delay", optarg);
                break;
            case 'a':
                options.allowAbort = true;
                break;
            default:
                exit(EXIT_USAGE); /* getopt_long has said why */
        }
    }
    if (optind < argc) {
        fprintf(stderr, "%s: unexpected word '%s'\n", argv[0], argv[optind]);
        exit(EXIT_USAGE);
    }
    return options;
}

/* Says what is wrong with the words, if anything. */
static bool CheckOptions(const PadOptions* options, ShowFunction show) {
    if (show == NULL) {
        fprintf(stderr, "pin-pad: unknown kind '%s'\n", options->kind);
        return false;
    }
    const size_t valid = strspn(options->script, kLetters);
    if (options->script[valid] != '\0') {
        fprintf(stderr, "pin-pad: '%c' means nothing in a script\n", options->script[valid]);
        return false;
    }
    if (strchr(options->script, '!') != NULL && !options->allowAbort) {
        fprintf(stderr, "pin-pad: without --abort there is no button to wait for\n");
        return false;
    }
    return true;
}

static int RunPinPad(const DLG_FunctionList* dialogs, int argc, char** argv) {
    const PadOptions options = ParseOptions(argc, argv);
    const ShowFunction show = FindShow(dialogs, options.kind);
    if (!CheckOptions(&options, show)) {
        return EXIT_USAGE;
    }
    Reader reader = {.dialogs = dialogs, .delay = options.delay};
    if (show(&reader.pad, options.allowAbort) == 0) {
        puts("not shown");
        return EXIT_NOT_CONFIRMED;
    }
    const bool aborted = PlayScript(&reader, options.script);
    dialogs->PinPadHideDialog(reader.pad);
    puts(aborted ? "aborted" : "script played");
    return aborted ? EXIT_NOT_CONFIRMED : EXIT_CONFIRMED;
}

const Command kPinPadCommand = {
    .name = "pin-pad",
    .synopsis = "pin-pad [OPTION...]",
    .summary = "Show what goes with a reader's own keys, and play the reader",
    .options =
        "  --kind KIND        verification (default), modification, legal, no-pin, legal-no-pin\n"
        "  --abort            with an Abort button; pressing it ends the script\n"
        "  --script LETTERS   what happens at the reader (default: n1234a...)\n"
        "  --delay MS         milliseconds after each letter (default: 400)\n"
        "\n"
        "Letters of a script:\n"
        "  n     the reader waits for the next PIN\n"
        "  0-9   a digit is typed\n"
        "  d c   the last digit, all digits are deleted\n"
        "  a     the PIN is accepted\n"
        "  x     Cancel is pressed\n"
        "  t     the time is over\n"
        "  .     nothing happens\n"
        "  ?     print whether Abort has been pressed\n"
        "  !     wait until Abort is pressed\n",
    .run = RunPinPad,
};
