/* The commands that show a message box: notices and questions about a token. */
#include <getopt.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "command.h"

/* The library reports that a box was shown, not what was answered: none of these is a failure. */
static int ReportShown(uint32_t result) {
    const int shown = result != ZELDLG_FAILED;
    printf("result 0x%08x (%s)\n", (unsigned)result, shown ? "shown" : "failed");
    return shown ? EXIT_CONFIRMED : EXIT_NOT_CONFIRMED;
}

/* Ends the program unless there are `count` words behind the command's name. */
static void ExpectWords(int count, int argc, char** argv) {
    if (argc != count + 1) {
        fprintf(stderr, "%s: %d word%s expected (see --help)\n", argv[0], count,
                count == 1 ? "" : "s");
        exit(EXIT_USAGE);
    }
}

static int RunLocked(const DLG_FunctionList* dialogs, int argc, char** argv) {
    ExpectWords(1, argc, argv);
    return ReportShown(dialogs->ShowLockedDialog(argv[1]));
}

static int RunBiometricError(const DLG_FunctionList* dialogs, int argc, char** argv) {
    ExpectWords(1, argc, argv);
    return ReportShown(dialogs->ShowSupertokenError(ParseNumber("CODE", argv[1])));
}

static int RunRetry(const DLG_FunctionList* dialogs, int argc, char** argv) {
    ExpectWords(1, argc, argv);
    if (strcmp(argv[1], "auth") == 0) {
        return ReportShown(dialogs->AuthFailRetryDialog());
    }
    if (strcmp(argv[1], "enrol") == 0) {
        return ReportShown(dialogs->EnrolFailRetryDialog());
    }
    fprintf(stderr, "retry: '%s' is neither auth nor enrol\n", argv[1]);
    return EXIT_USAGE;
}

/* One box of each kind; no call of a host takes a text of its own. */
static int RunMessage(const DLG_FunctionList* dialogs, int argc, char** argv) {
    ExpectWords(1, argc, argv);
    if (strcmp(argv[1], "error") == 0) {
        return ReportShown(dialogs->ShowPUKIsLocked());
    }
    if (strcmp(argv[1], "question") == 0) {
        return ReportShown(dialogs->ShowUnlockTokenDialog());
    }
    fprintf(stderr, "message: '%s' is neither error nor question\n", argv[1]);
    return EXIT_USAGE;
}

static int RunAskUnlock(const DLG_FunctionList* dialogs, int argc, char** argv) {
    ExpectWords(0, argc, argv);
    return ReportShown(dialogs->ShowUnlockTokenDialog());
}

static int RunAskTransportPin(const DLG_FunctionList* dialogs, int argc, char** argv) {
    ExpectWords(0, argc, argv);
    return ReportShown(dialogs->AskChangeTransportPIN());
}

static int RunAskExpiry(const DLG_FunctionList* dialogs, int argc, char** argv) {
    ExpectWords(1, argc, argv);
    return ReportShown(dialogs->AskEarlyUnexpirePin(ParseNumber("DAYS", argv[1])));
}

static int RunCrFailed(const DLG_FunctionList* dialogs, int argc, char** argv) {
    ExpectWords(0, argc, argv);
    return ReportShown(dialogs->ShowCRUnblockFailed());
}

static int RunPukLocked(const DLG_FunctionList* dialogs, int argc, char** argv) {
    ExpectWords(0, argc, argv);
    return ReportShown(dialogs->ShowPUKIsLocked());
}

enum { kApplication, kLabel, kIssuedTo, kIssuedBy, kFrom, kTo, kTextCount };

static const struct option kCertificateOptions[] = {
    {"application", required_argument, NULL, kApplication},
    {"label", required_argument, NULL, kLabel},
    {"issued-to", required_argument, NULL, kIssuedTo},
    {"issued-by", required_argument, NULL, kIssuedBy},
    {"from", required_argument, NULL, kFrom},
    {"to", required_argument, NULL, kTo},
    {NULL, 0, NULL, 0}};

static int RunConfirmDelete(const DLG_FunctionList* dialogs, int argc, char** argv) {
    const char* texts[kTextCount] = {"Certificate manager", "My card",    "Jane Example",
                                     "Example CA",          "2024-01-01", "2034-01-01"};
    for (int option = 0; (option = getopt_long(argc, argv, "", kCertificateOptions, NULL)) != -1;) {
        if (option < 0 || option >= kTextCount) {
            return EXIT_USAGE; /* getopt_long has said why */
        }
        texts[option] = optarg;
    }
    if (optind < argc) {
        fprintf(stderr, "%s: unexpected word '%s'\n", argv[0], argv[optind]);
        return EXIT_USAGE;
    }
    return ReportShown(dialogs->ShowConfirmDeleteCertificate(texts[kApplication], texts[kLabel],
                                                             texts[kIssuedTo], texts[kIssuedBy],
                                                             texts[kFrom], texts[kTo]));
}

#define ANSWER_HELP \
    "The library reports that the box was shown (exit code 0), not what was answered.\n"

const Command kMessageCommand = {
    .name = "message",
    .synopsis = "message error|question",
    .summary = "Show a box of one kind, with one of the library's texts",
    .options = ANSWER_HELP,
    .run = RunMessage,
};

const Command kLockedCommand = {
    .name = "locked",
    .synopsis = "locked LABEL",
    .summary = "Say that a token is locked",
    .options = "  LABEL              label of the token\n",
    .run = RunLocked,
};

const Command kBiometricErrorCommand = {
    .name = "biometric-error",
    .synopsis = "biometric-error CODE",
    .summary = "Show an error of the biometric token",
    .options = "  CODE               for example 0xA712, 0x63C1, 0x6983\n" ANSWER_HELP,
    .run = RunBiometricError,
};

const Command kRetryCommand = {
    .name = "retry",
    .synopsis = "retry auth|enrol",
    .summary = "Ask whether to try again with the biometric token",
    .options = ANSWER_HELP,
    .run = RunRetry,
};

const Command kConfirmDeleteCommand = {
    .name = "confirm-delete",
    .synopsis = "confirm-delete [OPTION...]",
    .summary = "Ask whether a certificate may be deleted",
    .options =
        "  --application TEXT  name of the application\n"
        "  --label TEXT        label of the token\n"
        "  --issued-to TEXT, --issued-by TEXT\n"
        "                      names in the certificate\n"
        "  --from DATE, --to DATE\n"
        "                      bounds of its validity\n" ANSWER_HELP,
    .run = RunConfirmDelete,
};

const Command kAskUnlockCommand = {
    .name = "ask-unlock",
    .synopsis = "ask-unlock",
    .summary = "Ask whether to unlock a token",
    .options = ANSWER_HELP,
    .run = RunAskUnlock,
};

const Command kAskTransportPinCommand = {
    .name = "ask-transport-pin",
    .synopsis = "ask-transport-pin",
    .summary = "Ask whether to change the transport PIN",
    .options = ANSWER_HELP,
    .run = RunAskTransportPin,
};

const Command kAskExpiryCommand = {
    .name = "ask-expiry",
    .synopsis = "ask-expiry DAYS",
    .summary = "Ask whether to change a PIN that is about to expire",
    .options = "  DAYS               until the PIN expires\n" ANSWER_HELP,
    .run = RunAskExpiry,
};

const Command kCrFailedCommand = {
    .name = "cr-failed",
    .synopsis = "cr-failed",
    .summary = "Say that an off-line unlock has failed",
    .options = "",
    .run = RunCrFailed,
};

const Command kPukLockedCommand = {
    .name = "puk-locked",
    .synopsis = "puk-locked",
    .summary = "Say that the PUK is locked",
    .options = "",
    .run = RunPukLocked,
};
