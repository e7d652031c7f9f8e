/* The commands that show windows which stay until the host removes them: those of a fingerprint
 * token and of a key generation. */
#define _POSIX_C_SOURCE 199506L
#include <getopt.h>
#include <pthread.h>
#include <signal.h>
#include <stdbool.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <time.h>

#include "command.h"

typedef struct WindowOptions {
    uint32_t scans;
    uint32_t seconds;
} WindowOptions;

static const struct option kKnown[] = {{"seconds", required_argument, NULL, 'd'},
                                       {"scans", required_argument, NULL, 's'},
                                       {NULL, 0, NULL, 0}};

static WindowOptions ParseOptions(int argc, char** argv, const struct option* known) {
    WindowOptions options = {.scans = 3, .seconds = 5};
    for (int option = 0; (option = getopt_long(argc, argv, "", known, NULL)) != -1;) {
        switch (option) {
            case 's':
                options.scans = ParseNumber("scans", optarg);
                break;
            case 'd':
                options.seconds = ParseNumber("seconds", optarg);
                break;
            default:
                exit(EXIT_USAGE); /* getopt_long has said why */
        }
    }
    return options;
}

/* While a window is shown Ctrl-C ends a wait instead of the program, so that the window is removed
 * in order. */
typedef struct Interruption {
    sigset_t signals;
    sigset_t previous;
} Interruption;

static Interruption CatchInterruption(void) {
    Interruption interruption;
    sigemptyset(&interruption.signals);
    sigaddset(&interruption.signals, SIGINT);
    sigaddset(&interruption.signals, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &interruption.signals, &interruption.previous);
    return interruption;
}

static void ReleaseInterruption(const Interruption* interruption) {
    pthread_sigmask(SIG_SETMASK, &interruption->previous, NULL);
}

/* Waits; returns whether the time passed without an interruption. */
static bool Wait(const Interruption* interruption, uint64_t milliseconds) {
    const struct timespec time = {.tv_sec = (time_t)(milliseconds / 1000),
                                  .tv_nsec = (long)(milliseconds % 1000) * 1000000};
    return sigtimedwait(&interruption->signals, NULL, &time) < 0;
}

static int ReportEnd(bool undisturbed) {
    puts(undisturbed ? "hidden" : "interrupted");
    return undisturbed ? EXIT_CONFIRMED : EXIT_NOT_CONFIRMED;
}

static int ReportNotShown(void) {
    puts("not shown");
    return EXIT_NOT_CONFIRMED;
}

static bool ShowFor(const Interruption* interruption, const WindowOptions* options) {
    puts("shown");
    fflush(stdout);
    return Wait(interruption, (uint64_t)options->seconds * 1000);
}

/* Says which scan the window shows, and waits for its part of the time. */
static bool PlayScans(const DLG_FunctionList* dialogs, const Interruption* interruption,
                      const WindowOptions* options) {
    const uint64_t each = (uint64_t)options->seconds * 1000 / options->scans;
    for (uint32_t scan = 1; scan <= options->scans; ++scan) {
        if (scan > 1) { /* the window itself begins with the first */
            dialogs->UpdateSuperTokenEnrolDlg();
        }
        printf("scan %u\n", (unsigned)scan);
        fflush(stdout);
        if (!Wait(interruption, each)) {
            return false;
        }
    }
    return true;
}

static int RunBiometric(const DLG_FunctionList* dialogs, int argc, char** argv) {
    const WindowOptions options = ParseOptions(argc, argv, kKnown);
    const char* const what = optind + 1 == argc ? argv[optind] : "";
    const bool enrol = strcmp(what, "enrol") == 0;
    if ((!enrol && strcmp(what, "auth") != 0) || options.scans == 0) {
        fprintf(stderr, "biometric: either auth or enrol, and at least one scan (see --help)\n");
        return EXIT_USAGE;
    }
    uint64_t shown = 0;
    const uint32_t result =
        enrol ? dialogs->ShowSupertokenEnrolDlg(&shown) : dialogs->ShowSupertokenAuthDlg(&shown);
    if (result != ZELDLG_OK || shown == 0) {
        return ReportNotShown();
    }
    const Interruption interruption = CatchInterruption();
    const bool undisturbed =
        enrol ? PlayScans(dialogs, &interruption, &options) : ShowFor(&interruption, &options);
    dialogs->HideSupertokenDlg();
    ReleaseInterruption(&interruption);
    return ReportEnd(undisturbed);
}

static int RunKeyGeneration(const DLG_FunctionList* dialogs, int argc, char** argv) {
    static const struct option kSecondsOnly[] = {{"seconds", required_argument, NULL, 'd'},
                                                 {NULL, 0, NULL, 0}};
    const WindowOptions options = ParseOptions(argc, argv, kSecondsOnly);
    if (optind < argc) {
        fprintf(stderr, "%s: unexpected word '%s'\n", argv[0], argv[optind]);
        return EXIT_USAGE;
    }
    if (dialogs->ShowKeyGenerationProgressDialog() != ZELDLG_OK) {
        return ReportNotShown();
    }
    const Interruption interruption = CatchInterruption();
    const bool undisturbed = ShowFor(&interruption, &options);
    dialogs->HideKeyGenerationProgressDialog();
    ReleaseInterruption(&interruption);
    return ReportEnd(undisturbed);
}

const Command kBiometricCommand = {
    .name = "biometric",
    .synopsis = "biometric auth|enrol [OPTION...]",
    .summary = "Ask for a finger, to authenticate or to enrol it",
    .options =
        "  --seconds N        how long the window stays (default: 5); Ctrl-C removes it earlier\n"
        "  --scans N          scans of an enrolment within that time (default: 3)\n"
        "\n"
        "An enrolment is explained first, unless the setting ShowEnrolmentHint is 0.\n",
    .run = RunBiometric,
};

const Command kKeygenCommand = {
    .name = "keygen",
    .synopsis = "keygen [OPTION...]",
    .summary = "Show that a key pair is being generated",
    .options =
        "  --seconds N        how long the window stays (default: 5); Ctrl-C removes it earlier\n",
    .run = RunKeyGeneration,
};
