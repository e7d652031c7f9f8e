/* Time stamps of what happens, one line each, for the driver to read. The host, its helper, the
 * bare program and the probe inside each write them to one pipe, with one clock. */
#pragma once

#include <fcntl.h>
#include <inttypes.h>
#include <stdio.h>
#include <stdlib.h>
#include <time.h>

/* The pipe's name stands in this variable; without it nothing is noted. */
#define BENCH_NOTES "ZELDLG_BENCH_NOTES"

/* Microseconds before each dialog: what the one before left to do is done. */
#define BENCH_PAUSE 30000

/* Nanoseconds of the monotonic clock. */
static inline int64_t NoteClock(void) {
    struct timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    return now.tv_sec * INT64_C(1000000000) + now.tv_nsec;
}

/* Writes "what value". One write for each line: several threads may note at a time. */
static inline void NoteValue(const char* what, int64_t value) {
    static int pipe = -1;
    const char* const name = getenv(BENCH_NOTES);
    if (pipe < 0 && name != NULL) {
        pipe = open(name, O_WRONLY | O_CLOEXEC);
    }
    if (pipe >= 0) {
        dprintf(pipe, "%s %" PRId64 "\n", what, value);
    }
}

/* Notes that something happens now. */
static inline void Note(const char* what) { NoteValue(what, NoteClock()); }
