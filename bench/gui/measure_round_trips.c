/* roundtrips ROUNDS REQUESTS: requests without a window, one after the other, and, alternately,
 * what they cannot be faster than: two threads of this process that wake each other; or two
 * processes, which the library's helper makes of it.
 * throughput ROUNDS MILLISECONDS: the requests that 1, 2, 4 and 8 threads complete in that time. */
#include <pthread.h>
#include <stdatomic.h>
#include <stdlib.h>
#include <sys/socket.h>
#include <unistd.h>

#include "host.h"
#include "note.h"

enum { kSpacedMicroseconds = 25000, kSpacedShare = 100, kMostThreads = 8 };

/* Two processes that wake each other: the other sends back what it gets. */
static int StartEcho(void) {
    int ends[2];
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) {
        exit(EXIT_FAILURE);
    }
    if (fork() == 0) {
        char byte = 0;
        close(ends[0]);
        while (read(ends[1], &byte, 1) == 1 && write(ends[1], &byte, 1) == 1) {
        }
        _exit(EXIT_SUCCESS);
    }
    close(ends[1]);
    return ends[0];
}

static void DoEcho(void* argument) {
    const int* const echo = argument;
    char byte = 1;
    if (write(*echo, &byte, 1) != 1 || read(*echo, &byte, 1) != 1) {
        exit(EXIT_FAILURE);
    }
}

/* Two threads in turns, each woken by the other. */
typedef struct PingPong {
    pthread_mutex_t mutex;
    pthread_cond_t changed;
    int asked;
    int ended;
} PingPong;

static void* Pong(void* argument) {
    PingPong* const pair = argument;
    pthread_mutex_lock(&pair->mutex);
    for (;;) {
        while (!pair->asked && !pair->ended) {
            pthread_cond_wait(&pair->changed, &pair->mutex);
        }
        if (pair->ended) {
            break;
        }
        pair->asked = 0;
        pthread_cond_signal(&pair->changed);
    }
    pthread_mutex_unlock(&pair->mutex);
    return NULL;
}

static void Ping(PingPong* pair) {
    pthread_mutex_lock(&pair->mutex);
    pair->asked = 1;
    pthread_cond_signal(&pair->changed);
    while (pair->asked) {
        pthread_cond_wait(&pair->changed, &pair->mutex);
    }
    pthread_mutex_unlock(&pair->mutex);
}

typedef void Action(void* argument);

static void DoPing(void* argument) { Ping(argument); }

static void DoRoundTrip(void* argument) { RoundTrip(argument); }

/* Notes how long each of `count` actions took, with a pause before each. */
static void Time(const char* what, Action* action, void* argument, long count, useconds_t pause) {
    int64_t* const times = calloc((size_t)count, sizeof *times);
    for (long i = 0; times != NULL && i < count; ++i) {
        if (pause > 0) {
            usleep(pause);
        }
        const int64_t start = NoteClock();
        action(argument);
        times[i] = NoteClock() - start;
    }
    for (long i = 0; times != NULL && i < count; ++i) {
        NoteValue(what, times[i]);
    }
    free(times);
}

int MeasureRoundTrips(const Host* host) {
    Host caller = *host;
    int echo = StartEcho();
    PingPong pair = {PTHREAD_MUTEX_INITIALIZER, PTHREAD_COND_INITIALIZER, 0, 0};
    pthread_t thread;
    if (pthread_create(&thread, NULL, Pong, &pair) != 0) {
        return EXIT_FAILURE;
    }
    RoundTrip(host);
    const long requests = Argument(host, 1);
    const uint64_t before = CountAllocations();
    RoundTrip(host);
    NoteValue("allocations", (int64_t)(CountAllocations() - before));
    for (long round = Argument(host, 0); round > 0; --round) {
        Time("pingpong", DoPing, &pair, requests, 0);
        Time("echo", DoEcho, &echo, requests, 0);
        Time("request", DoRoundTrip, &caller, requests, 0);
        Time("pingpong-spaced", DoPing, &pair, requests / kSpacedShare, kSpacedMicroseconds);
        Time("request-spaced", DoRoundTrip, &caller, requests / kSpacedShare, kSpacedMicroseconds);
    }
    close(echo);
    pthread_mutex_lock(&pair.mutex);
    pair.ended = 1;
    pthread_cond_signal(&pair.changed);
    pthread_mutex_unlock(&pair.mutex);
    pthread_join(thread, NULL);
    return EXIT_SUCCESS;
}

typedef struct Crowd {
    const Host* host;
    atomic_bool stop;
    atomic_long served;
} Crowd;

static void* CallUntilStopped(void* argument) {
    Crowd* const crowd = argument;
    long served = 0;
    while (!atomic_load_explicit(&crowd->stop, memory_order_relaxed)) {
        RoundTrip(crowd->host);
        ++served;
    }
    atomic_fetch_add(&crowd->served, served);
    return NULL;
}

/* Requests a second. */
static int64_t ServedBy(const Host* host, int threadCount, long milliseconds) {
    Crowd crowd = {.host = host};
    pthread_t threads[kMostThreads];
    const int64_t start = NoteClock();
    for (int i = 0; i < threadCount; ++i) {
        if (pthread_create(&threads[i], NULL, CallUntilStopped, &crowd) != 0) {
            exit(EXIT_FAILURE);
        }
    }
    usleep((useconds_t)milliseconds * 1000);
    atomic_store(&crowd.stop, 1);
    for (int i = 0; i < threadCount; ++i) {
        pthread_join(threads[i], NULL);
    }
    return atomic_load(&crowd.served) * 1000000000 / (NoteClock() - start);
}

int MeasureThroughput(const Host* host) {
    static const char* const kNames[] = {"threads1", "threads2", "threads4", "threads8"};
    RoundTrip(host);
    for (long round = Argument(host, 0); round > 0; --round) {
        for (int i = 0; i < 4; ++i) {
            NoteValue(kNames[i], ServedBy(host, 1 << i, Argument(host, 1)));
        }
    }
    return EXIT_SUCCESS;
}
