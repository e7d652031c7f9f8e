/* The program's own allocator functions come before those of the C library, for every library of
 * the process: they count and pass on. */
#include <stdatomic.h>
#include <stdlib.h>

#include "host.h"

void* __libc_malloc(size_t size);
void* __libc_calloc(size_t count, size_t size);
void* __libc_realloc(void* memory, size_t size);

#define EXPORTED __attribute__((visibility("default")))

static atomic_ulong g_count;

static void Count(void) { atomic_fetch_add_explicit(&g_count, 1, memory_order_relaxed); }

uint64_t CountAllocations(void) { return atomic_load(&g_count); }

EXPORTED void* malloc(size_t size) {
    Count();
    return __libc_malloc(size);
}

EXPORTED void* calloc(size_t count, size_t size) {
    Count();
    return __libc_calloc(count, size);
}

EXPORTED void* realloc(void* memory, size_t size) {
    Count();
    return __libc_realloc(memory, size);
}
