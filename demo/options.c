/* The options of all commands, and how a command line is taken apart. */
#include <errno.h>
#include <stdarg.h>
#include <stddef.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "command.h"

typedef enum OptionType { kFlag, kText, kNumber, kByte, kItem } OptionType;

typedef struct Option {
    const char* name;
    const char* argument; /* what follows it, for the help; "a|b" allows just these */
    OptionType type;
    size_t field; /* offset in Options */
    const char* fallback;
    const char* help;
} Option;

// Versions of clang-format set these braces differently.
// clang-format off
#define FLAG(name, field, help) {name, NULL, kFlag, offsetof(Options, field), NULL, help}
#define TEXT(name, argument, field, fallback, help) \
    {name, argument, kText, offsetof(Options, field), fallback, help}
#define NUMBER(name, field, fallback, help) \
    {name, "N", kNumber, offsetof(Options, field), fallback, help}
#define BYTE(name, argument, field, help) \
    {name, argument, kByte, offsetof(Options, policy.field), "0", help}
#define ITEM(name, argument, help) {name, argument, kItem, 0, NULL, help}
// clang-format on

static const Option kOptions[] = {
    TEXT("application", "TEXT", application, "Certificate manager", "name of the application"),
    TEXT("label", "TEXT", label, "My card", "label of the token"),
    NUMBER("min", minLength, "4", "minimum length of the PIN in bytes"),
    NUMBER("max", maxLength, "8", "maximum length of the PIN in bytes"),
    NUMBER("old-min", oldMinLength, "0", "minimum length of the old value"),
    NUMBER("old-max", oldMaxLength, "0", "its maximum length; both 0: the bounds of the new value"),
    FLAG("failed", failed, "a failed attempt is on record"),
    FLAG("final-try", finalTry, "the next wrong value locks"),
    FLAG("failed-earlier", failedEarlier, "the failure happened before this prompt"),
    NUMBER("max-tries", maxTries, "3", "the full retry counter"),
    NUMBER("tries-left", triesLeft, "3", "tries remaining"),
    FLAG("puk", changePuk, "it is the PUK that is changed"),
    FLAG("initialise", initialise, "set the initialise flag (without visible effect)"),

    TEXT("kind", "verification|modification|legal|no-pin|legal-no-pin", kind, "verification",
         "what the reader is asked for"),
    FLAG("abort", allowAbort, "with an Abort button; pressing it ends the script"),
    TEXT("script", "LETTERS", script, "n1234a...", "what happens at the reader"),
    {"delay", "MS", kNumber, offsetof(Options, delay), "400", "milliseconds after each letter"},

    ITEM("entry", "NAME=DETAIL", "one token; may be repeated"),
    TEXT("name", "TEXT", name, "Jane Example", "name of every row"),
    TEXT("issued-to", "TEXT", issuedTo, "Jane Example", "name in the certificate"),
    TEXT("issued-by", "TEXT", issuedBy, "Example CA", "name of who made it"),
    TEXT("from", "DATE", from, "2024-01-01 00:00:00", "begin of its validity"),
    TEXT("to", "DATE", to, "2034-01-01 00:00:00", "end of its validity"),
    NUMBER("count", count, "3", "as many samples"),
    NUMBER("default", defaultIndex, "0", "row that is selected at the start, from 0"),
    TEXT("directory", "TEXT", directory, "", "domain that the computer belongs to"),
    FLAG("always", alwaysUse, "the box for using it always starts checked"),
    FLAG("auto", autoSelect, "the default is confirmed after a count-down"),

    FLAG("no-puk", noPuk, "the PUK is not offered"),
    ITEM("algorithm", "CODE", "one algorithm; may be repeated (default: 0 and 1)"),
    FLAG("no-algorithms", noAlgorithms, "no off-line unlock"),
    TEXT("serial", "TEXT", serial, "4711-0815", "serial number of the token"),
    TEXT("challenge", "HEX", challenge, "5AC01F99E20734BD", "the challenge"),
    NUMBER("length", responseLength, "8", "length of the response in bytes"),
    FLAG("new-pin", askNewPin, "ask for a new PIN as well"),

    NUMBER("seconds", seconds, "5", "how long the window stays; Ctrl-C removes it earlier"),
    NUMBER("scans", scans, "3", "scans of an enrolment within that time"),

    NUMBER("capacity", capacity, "256", "bytes in each of the host's buffers"),
    FLAG("reveal", reveal, "print values; without it only their lengths"),

    FLAG("no-policy", noPolicy, "the token has no policy"),
    BYTE("enabled", "MASK", enabledMask, "1 distance, 2 classes, 4 history, 8 characters"),
    BYTE("p1-threshold", "N", p1Threshold, "largest distance of neighbours that is refused"),
    BYTE("p1-case-sensitive", "0|1", p1CaseSensitive, "0: the PIN is lower-cased first"),
    BYTE("p1-full-pin-check", "0|1", p1FullPinCheck, "1: refuse only one single arithmetic run"),
    BYTE("p2-classes", "N", p2NbClass, "minimum number of character classes"),
    BYTE("p2-population", "N", p2PopMin, "minimum number of characters in each used class"),
    BYTE("p2-min-length", "N", p2MinLen, "minimum length in bytes"),
    BYTE("p2-class-mask", "MASK", p2ClassMask,
         "1 lower, 2 upper, 4 digits, 8 punctuation, 16 other"),
    BYTE("p3-threshold", "N", p3Threshold, "similarity that the token's history check allows"),
    BYTE("p3-history-size", "N", p3HistorySize, "earlier PINs that the token remembers"),
    BYTE("p3-case-insensitive", "0|1", p3CaseInsensitive, "1: it ignores case"),
    BYTE("p3-length-normalize", "0|1", p3LengthNormalize, "1: the threshold is squared"),
    BYTE("p3-strict-only", "0|1", p3StrictOnly, "1: it refuses only equal PINs"),
    TEXT("p4-characters", "TEXT", characters, "", "characters of the restriction"),
    BYTE("p4-white-list", "0|1", p4IsWhiteList, "1: only these characters are allowed"),
};
enum { kOptionCount = sizeof kOptions / sizeof kOptions[0], kHelpColumn = 29 };

void Refuse(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    fputs("zeldlg-demo: ", stderr);
    vfprintf(stderr, format, arguments);
    fputc('\n', stderr);
    va_end(arguments);
    exit(EXIT_USAGE);
}

uint32_t ParseNumber(const char* name, const char* text, uint32_t largest) {
    char* end = NULL;
    errno = 0;
    const unsigned long long value = strtoull(text, &end, 0);
    if (errno != 0 || end == text || *end != '\0' || strchr(text, '-') != NULL || value > largest) {
        Refuse("%s: '%s' is not a number from 0 to %lu", name, text, (unsigned long)largest);
    }
    return (uint32_t)value;
}

static bool IsIn(const char* list, char separator, const char* name) {
    const size_t length = strlen(name);
    for (const char* at = list; at != NULL; at = strchr(at, separator)) {
        at += at != list;
        if (strncmp(at, name, length) == 0 && (at[length] == separator || at[length] == '\0')) {
            return true;
        }
    }
    return false;
}

static void CheckChoice(const char* what, const char* choices, const char* word) {
    if (strchr(choices, '|') != NULL && !IsIn(choices, '|', word)) {
        Refuse("%s: '%s' is not one of %s", what, word, choices);
    }
}

static void Set(Options* options, const Option* option, const char* text) {
    void* const field = (char*)options + option->field;
    switch (option->type) {
        case kFlag:
            *(bool*)field = true;
            break;
        case kText:
            *(const char**)field = text;
            break;
        case kNumber:
            *(uint32_t*)field = ParseNumber(option->name, text, UINT32_MAX);
            break;
        case kByte:
            *(uint8_t*)field = (uint8_t)ParseNumber(option->name, text, UINT8_MAX);
            break;
        case kItem:
            if (options->itemCount == kMaxItems) {
                Refuse("%s: more than %d", option->name, kMaxItems);
            }
            options->items[options->itemCount++] = text;
            break;
    }
}

static const Option* FindOption(const Command* command, const char* word) {
    for (const Option* option = kOptions; option < kOptions + kOptionCount; ++option) {
        if (strncmp(word, "--", 2) == 0 && strcmp(word + 2, option->name) == 0 &&
            IsIn(command->options, ' ', option->name)) {
            return option;
        }
    }
    return NULL;
}

Options ParseWords(const Command* command, const char* const* words) {
    Options options = {0};
    for (const Option* option = kOptions; option < kOptions + kOptionCount; ++option) {
        if (option->fallback != NULL) {
            Set(&options, option, option->fallback);
        }
    }
    for (; *words != NULL; ++words) {
        const Option* const option = FindOption(command, *words);
        if (option == NULL) {
            if (command->word == NULL || options.word != NULL || strncmp(*words, "--", 2) == 0) {
                Refuse("%s: unexpected word '%s'", command->name, *words);
            }
            CheckChoice(command->name, command->word, *words);
            options.word = *words;
        } else if (option->argument == NULL) {
            Set(&options, option, NULL);
        } else if (words[1] == NULL) {
            Refuse("%s: %s is missing", option->name, option->argument);
        } else {
            CheckChoice(option->name, option->argument, *++words);
            Set(&options, option, *words);
        }
    }
    if (command->word != NULL && options.word == NULL) {
        Refuse("%s: %s is missing", command->name, command->word);
    }
    return options;
}

static void PrintOptionHelp(const Option* option) {
    const char* const argument = option->argument != NULL ? option->argument : "";
    const int width = printf("  --%s %s", option->name, argument);
    if (width + 2 > kHelpColumn) {
        printf("\n%*s", kHelpColumn, "");
    } else {
        printf("%*s", kHelpColumn - width, "");
    }
    printf("%s", option->help);
    if (option->fallback != NULL && *option->fallback != '\0' && option->type != kByte) {
        printf(" (default: %s)", option->fallback);
    }
    putchar('\n');
}

void PrintCommandHelp(const Command* command) {
    printf("Usage: zeldlg-demo %s%s%s%s\n\n%s\n\n", command->name, command->word != NULL ? " " : "",
           command->word != NULL ? command->word : "",
           *command->options != '\0' ? " [OPTION...]" : "", command->summary);
    for (const Option* option = kOptions; option < kOptions + kOptionCount; ++option) {
        if (IsIn(command->options, ' ', option->name)) {
            PrintOptionHelp(option);
        }
    }
    printf("%s%s", *command->options != '\0' && *command->notes != '\0' ? "\n" : "",
           command->notes);
}
