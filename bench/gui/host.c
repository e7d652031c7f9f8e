/* zeldlg_bench_host LIBRARY COMMAND [NUMBER...]
 * zeldlg_bench_host --run PROGRAM [ARGUMENT...]    becomes that program, to compare with */
#include "host.h"

#include <dlfcn.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include "note.h"

static const struct {
    const char* name;
    int (*measure)(const Host*);
} kCommands[] = {{"dialogs", MeasureDialogs},       {"roundtrips", MeasureRoundTrips},
                 {"throughput", MeasureThroughput}, {"idle", MeasureIdle},
                 {"animation", MeasureAnimation},   {"loss", MeasureLoss},
                 {"tokens", MeasureTokens},         {"ids", MeasureIds},
                 {"algorithms", MeasureAlgorithms}, {"label", MeasureLabel}};

void RoundTrip(const Host* host) {
    wchar_t name[32];
    uint32_t size = sizeof name;
    if (host->dialogs->GetLocale(name, &size) != ZELDLG_OK) {
        fputs("DLG_GetLocale failed\n", stderr);
        exit(EXIT_FAILURE);
    }
}

long Argument(const Host* host, int place) {
    for (int i = 0; i < place; ++i) {
        if (host->arguments[i] == NULL) {
            return 0;
        }
    }
    return host->arguments[place] == NULL ? 0 : strtol(host->arguments[place], NULL, 10);
}

static const DLG_FunctionList* Load(const char* library) {
    void* const handle = dlopen(library, RTLD_NOW | RTLD_LOCAL);
    const DLG_FunctionList* (*getFunctionList)(void) = NULL;
    void* const symbol = handle == NULL ? NULL : dlsym(handle, "DLG_GetFunctionList");
    if (symbol == NULL) {
        fprintf(stderr, "%s\n", dlerror());
        exit(EXIT_FAILURE);
    }
    /* ISO C has no conversion from an object pointer to a function pointer. */
    memcpy(&getFunctionList, &symbol, sizeof getFunctionList);
    return getFunctionList();
}

int main(int argumentCount, char** arguments) {
    if (argumentCount < 3) {
        fputs("usage: zeldlg_bench_host LIBRARY COMMAND [NUMBER...]\n", stderr);
        return EXIT_FAILURE;
    }
    Note("start");
    if (strcmp(arguments[1], "--run") == 0) {
        execv(arguments[2], arguments + 2);
        perror(arguments[2]);
        return EXIT_FAILURE;
    }
    const Host host = {Load(arguments[1]), arguments + 3};
    Note("loaded");
    for (size_t i = 0; i < sizeof kCommands / sizeof kCommands[0]; ++i) {
        if (strcmp(arguments[2], kCommands[i].name) == 0) {
            return kCommands[i].measure(&host);
        }
    }
    fprintf(stderr, "unknown command %s\n", arguments[2]);
    return EXIT_FAILURE;
}
