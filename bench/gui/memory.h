/* The memory of this process, as the kernel counts it. */
#pragma once

#include <inttypes.h>
#include <stdio.h>

/* Resident memory in KiB; -1 when it cannot be read. */
static inline int64_t ResidentKb(void) {
    FILE* const status = fopen("/proc/self/status", "r");
    char line[256];
    long kb = -1;
    while (status != NULL && fgets(line, sizeof line, status) != NULL) {
        if (sscanf(line, "VmRSS: %ld", &kb) == 1) {
            break;
        }
    }
    if (status != NULL) {
        fclose(status);
    }
    return kb;
}
