/* idle ROUNDS MILLISECONDS: what the started library costs while nothing is open, each round that
 * long: nanoseconds of processor time, wake-ups, calls of the allocator. */
#include <stdlib.h>
#include <sys/resource.h>
#include <time.h>
#include <unistd.h>

#include "host.h"
#include "note.h"

static int64_t ProcessorTime(void) {
    struct timespec used;
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &used);
    return (int64_t)used.tv_sec * 1000000000 + used.tv_nsec;
}

/* How often a thread of this process went to sleep: each of them is a wake-up later. */
static int64_t Sleeps(void) {
    struct rusage usage;
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_nvcsw;
}

int MeasureIdle(const Host* host) {
    const long milliseconds = Argument(host, 1);
    RoundTrip(host);
    usleep(500000); /* what the toolkit's start left to do */
    for (long round = Argument(host, 0); round > 0; --round) {
        const int64_t time = ProcessorTime();
        const int64_t sleeps = Sleeps();
        const uint64_t allocations = CountAllocations();
        const int64_t start = NoteClock();
        usleep((useconds_t)milliseconds * 1000);
        const int64_t elapsed = NoteClock() - start;
        const int64_t allocated = (int64_t)(CountAllocations() - allocations);
        NoteValue("ppm", (ProcessorTime() - time) * 1000000 / elapsed);
        /* One of them is this thread's own. */
        NoteValue("wakeups", (Sleeps() - sleeps - 1) * 1000000000 / elapsed);
        NoteValue("allocations", allocated);
    }
    return EXIT_SUCCESS;
}
