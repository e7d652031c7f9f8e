/* idle ROUNDS MILLISECONDS: what the started library costs while nothing is open, each round that
 * long: nanoseconds of processor time, wake-ups, calls of the allocator. */
#include <stdlib.h>
#include <unistd.h>

#include "cost.h"
#include "host.h"
#include "note.h"

int MeasureIdle(const Host* host) {
    const long milliseconds = Argument(host, 1);
    RoundTrip(host);
    usleep(500000); /* what the toolkit's start left to do */
    for (long round = Argument(host, 0); round > 0; --round) {
        const Cost before = CostSoFar();
        const uint64_t allocations = CountAllocations();
        usleep((useconds_t)milliseconds * 1000);
        const int64_t allocated = (int64_t)(CountAllocations() - allocations);
        NoteCostSince(&before);
        NoteValue("allocations", allocated);
    }
    return EXIT_SUCCESS;
}
