#include "thread_faults.h"

#include <dlfcn.h>
#include <pthread.h>
#include <unistd.h>

#include <cerrno>
#include <mutex>

namespace testhost {

namespace {

struct Faults {
    std::mutex mutex;
    ThreadFault fault = ThreadFault::None;
    std::string path;
};

// Never destroyed: threads may still be created while the process exits.
Faults& TheFaults() {
    static auto* const faults = new Faults;
    return *faults;
}

using ThreadFunction = void* (*)(void*);

ThreadFault FaultOf(ThreadFunction function) {
    Faults& faults = TheFaults();
    const std::lock_guard lock(faults.mutex);
    Dl_info where{};
    const bool isMeant = faults.fault != ThreadFault::None &&
                         dladdr(reinterpret_cast<void*>(function), &where) != 0 &&
                         faults.path == where.dli_fname;
    return isMeant ? faults.fault : ThreadFault::None;
}

struct LateThread {
    ThreadFunction function;
    void* argument;
};

void* BeginLate(void* late) {
    const LateThread thread = *static_cast<LateThread*>(late);
    delete static_cast<LateThread*>(late);
    usleep(kLateMs * 1000);
    return thread.function(thread.argument);
}

}  // namespace

void SetThreadFault(ThreadFault fault, const std::string& path) {
    Faults& faults = TheFaults();
    const std::lock_guard lock(faults.mutex);
    faults.fault = fault;
    faults.path = path;
}

}  // namespace testhost

/// Found before the C library's own: the program exports it.
extern "C" __attribute__((visibility("default"))) int pthread_create(
    pthread_t* thread, const pthread_attr_t* attributes, testhost::ThreadFunction function,
    void* argument) {
    using Create = int (*)(pthread_t*, const pthread_attr_t*, testhost::ThreadFunction, void*);
    static const auto create = reinterpret_cast<Create>(dlsym(RTLD_NEXT, "pthread_create"));
    switch (testhost::FaultOf(function)) {
        case testhost::ThreadFault::Fail:
            return EAGAIN;
        case testhost::ThreadFault::BeginLate:
            return create(thread, attributes, testhost::BeginLate,
                          new testhost::LateThread{function, argument});
        case testhost::ThreadFault::None:
            break;
    }
    return create(thread, attributes, function, argument);
}
