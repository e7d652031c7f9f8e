/* The host of the measurements: a C program that loads the library as a token library does.
 * Every command prints notes (see note.h) to the descriptor that the driver gives it. */
#pragma once

#include <stdint.h>
#include <zeldlg/zeldlg.h>

typedef struct Host {
    const DLG_FunctionList* dialogs;
    char** arguments; /* the command's own, null at the end */
} Host;

/* Return the exit code. */
int MeasureDialogs(const Host* host);
int MeasureRoundTrips(const Host* host);
int MeasureThroughput(const Host* host);
int MeasureIdle(const Host* host);
int MeasureAnimation(const Host* host);
int MeasureLoss(const Host* host);
int MeasureTokens(const Host* host);
int MeasureIds(const Host* host);
int MeasureAlgorithms(const Host* host);
int MeasureLabel(const Host* host);

/* One request without a window; ends the program when it fails. */
void RoundTrip(const Host* host);

/* The command's argument at this place as a number; 0 without one. */
long Argument(const Host* host, int place);

/* How often the process has asked for memory so far. */
uint64_t CountAllocations(void);
