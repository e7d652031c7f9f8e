/* The commands that let a user pick a token or a digital ID. */
#include <getopt.h>
#include <stdbool.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "command.h"

enum { kMaxEntries = 1000 };

static void ExpectNoWord(int argc, char** argv) {
    if (optind < argc) {
        fprintf(stderr, "%s: unexpected word '%s'\n", argv[0], argv[optind]);
        exit(EXIT_USAGE);
    }
}

/* ---------------------------------------------------------------- select-token */

typedef struct TokenOptions {
    TokenChoiceEntry entries[kMaxEntries];
    uint32_t count;
} TokenOptions;

/* Takes "NAME=DETAIL" apart, in place. */
static void AddEntry(TokenOptions* options, char* text) {
    if (options->count == kMaxEntries) {
        fprintf(stderr, "select-token: more than %d entries\n", kMaxEntries);
        exit(EXIT_USAGE);
    }
    char* const separator = strchr(text, '=');
    if (separator != NULL) {
        *separator = '\0';
    }
    TokenChoiceEntry* const entry = &options->entries[options->count];
    entry->name = text;
    entry->detail = separator != NULL ? separator + 1 : "";
    entry->identifier = ++options->count;
}

static void Repeat(TokenOptions* options, uint32_t count) {
    static const TokenChoiceEntry kSamples[] = {{"Identity card", "Contact reader", 0},
                                                {"Company badge", "Contactless reader", 0},
                                                {"Signature card", "Keyboard reader", 0}};
    if (count > kMaxEntries) {
        fprintf(stderr, "select-token: more than %d entries\n", kMaxEntries);
        exit(EXIT_USAGE);
    }
    for (options->count = 0; options->count < count;) {
        TokenChoiceEntry* const entry = &options->entries[options->count];
        *entry = kSamples[options->count % (sizeof kSamples / sizeof kSamples[0])];
        entry->identifier = ++options->count;
    }
}

static void ParseTokenOptions(TokenOptions* options, int argc, char** argv) {
    static const struct option kKnown[] = {{"entry", required_argument, NULL, 'e'},
                                           {"count", required_argument, NULL, 'c'},
                                           {NULL, 0, NULL, 0}};
    bool given = false;
    for (int option = 0; (option = getopt_long(argc, argv, "", kKnown, NULL)) != -1;) {
        given = true;
        if (option == 'e') {
            AddEntry(options, optarg);
        } else if (option == 'c') {
            Repeat(options, ParseNumber("count", optarg));
        } else {
            exit(EXIT_USAGE); /* getopt_long has said why */
        }
    }
    ExpectNoWord(argc, argv);
    if (!given) {
        Repeat(options, 3);
    }
}

static int RunSelectToken(const DLG_FunctionList* dialogs, int argc, char** argv) {
    TokenOptions* const options = calloc(1, sizeof *options);
    if (options == NULL) {
        fprintf(stderr, "no memory\n");
        return EXIT_USAGE;
    }
    ParseTokenOptions(options, argc, argv);
    const TokenChoiceList list = {.entries = options->entries, .count = options->count};
    uint64_t identifier = 0;
    const uint32_t result = dialogs->ShowTokenSelectionDialog(&list, &identifier);
    if (result == ZELDLG_OK) {
        printf("chosen: %s\n", options->entries[identifier - 1].name);
    }
    free(options);
    return ReportResult(result);
}

/* ---------------------------------------------------------------- select-id */

enum { kName = 1, kFrom, kTo, kCount, kDefault, kDirectory, kAlways, kAuto };

static const struct option kIdOptions[] = {{"name", required_argument, NULL, kName},
                                           {"from", required_argument, NULL, kFrom},
                                           {"to", required_argument, NULL, kTo},
                                           {"count", required_argument, NULL, kCount},
                                           {"default", required_argument, NULL, kDefault},
                                           {"directory", required_argument, NULL, kDirectory},
                                           {"always", no_argument, NULL, kAlways},
                                           {"auto", no_argument, NULL, kAuto},
                                           {NULL, 0, NULL, 0}};

static void SetIdOption(DigitalIdTexts* texts, DigitalIdChoice* choice, int option) {
    switch (option) {
        case kName:
            texts->name = optarg;
            break;
        case kFrom:
            texts->validFrom = optarg;
            break;
        case kTo:
            texts->validTo = optarg;
            break;
        case kCount:
            choice->count = ParseNumber("count", optarg);
            break;
        case kDefault:
            choice->defaultIndex = ParseNumber("default", optarg);
            break;
        case kDirectory:
            choice->directory = optarg;
            break;
        case kAlways:
            choice->presetAlwaysUse = 1;
            break;
        case kAuto:
            choice->autoSelect = 1;
            break;
        default:
            exit(EXIT_USAGE); /* getopt_long has said why */
    }
}

static int RunSelectId(const DLG_FunctionList* dialogs, int argc, char** argv) {
    DigitalIdTexts texts = {"Jane Example", "2024-01-01 00:00:00", "2034-01-01 00:00:00", NULL};
    DigitalIdChoice choice = {.texts = &texts, .count = 3, .directory = ""};
    for (int option = 0; (option = getopt_long(argc, argv, "", kIdOptions, NULL)) != -1;) {
        SetIdOption(&texts, &choice, option);
    }
    ExpectNoWord(argc, argv);
    DigitalIdResult chosen = {0};
    const uint32_t result = dialogs->ShowDigitalIDSelection(&choice, &chosen);
    if (result == ZELDLG_OK) {
        printf("always use it: %s\n", chosen.alwaysUse != 0 ? "yes" : "no");
    }
    return ReportResult(result);
}

const Command kSelectTokenCommand = {
    .name = "select-token",
    .synopsis = "select-token [OPTION...]",
    .summary = "Let the user pick a token",
    .options =
        "  --entry NAME=DETAIL  one token; may be repeated\n"
        "  --count N            as many sample tokens, up to 1000 (default: 3)\n",
    .run = RunSelectToken,
};

const Command kSelectIdCommand = {
    .name = "select-id",
    .synopsis = "select-id [OPTION...]",
    .summary = "Let the user pick a digital ID",
    .options =
        "  --name TEXT        name of every row (default: Jane Example)\n"
        "  --from DATE        --to DATE\n"
        "  --count N          rows (default: 3)\n"
        "  --default N        row that is selected at the start, from 0\n"
        "  --directory TEXT   domain that the computer belongs to (default: none)\n"
        "  --always           the box for using it always starts checked\n"
        "  --auto             the default is confirmed after a count-down\n",
    .run = RunSelectId,
};
