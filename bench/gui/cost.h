/* What a process costs over a time in which nothing happens. */
#pragma once

#include <inttypes.h>
#include <sys/resource.h>
#include <time.h>

#include "note.h"

typedef struct Cost {
    int64_t clock;     /* nanoseconds */
    int64_t processor; /* nanoseconds of processor time */
    int64_t sleeps;    /* how often a thread went to sleep: each of them is a wake-up later */
} Cost;

static inline Cost CostSoFar(void) {
    struct timespec used;
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &used);
    struct rusage usage;
    getrusage(RUSAGE_SELF, &usage);
    Cost cost;
    cost.clock = NoteClock();
    cost.processor = used.tv_sec * INT64_C(1000000000) + used.tv_nsec;
    cost.sleeps = usage.ru_nvcsw;
    return cost;
}

/* Notes the processor time in millionths, and the wake-ups in a second. */
static inline void NoteCostSince(const Cost* before) {
    const Cost now = CostSoFar();
    const int64_t elapsed = now.clock - before->clock;
    NoteValue("ppm", (now.processor - before->processor) * 1000000 / elapsed);
    NoteValue("wakeups", (now.sleeps - before->sleeps) * 1000000000 / elapsed);
}
