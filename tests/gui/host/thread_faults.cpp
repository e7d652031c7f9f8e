#include "thread_faults.h"

#include <dlfcn.h>
#include <pthread.h>

#include <cerrno>
#include <mutex>

namespace testhost {

namespace {

struct Failing {
    std::mutex mutex;
    std::string path;
};

// Never destroyed: threads may still be created while the process exits.
Failing& TheFailing() {
    static auto* const failing = new Failing;
    return *failing;
}

using ThreadFunction = void* (*)(void*);

bool IsToFail(ThreadFunction function) {
    Failing& failing = TheFailing();
    const std::lock_guard lock(failing.mutex);
    Dl_info where{};
    return !failing.path.empty() && dladdr(reinterpret_cast<void*>(function), &where) != 0 &&
           failing.path == where.dli_fname;
}

}  // namespace

void FailThreadsOf(const std::string& path) {
    Failing& failing = TheFailing();
    const std::lock_guard lock(failing.mutex);
    failing.path = path;
}

}  // namespace testhost

/// Found before the C library's own: the program exports it.
extern "C" __attribute__((visibility("default"))) int pthread_create(
    pthread_t* thread, const pthread_attr_t* attributes, testhost::ThreadFunction function,
    void* argument) {
    using Create = int (*)(pthread_t*, const pthread_attr_t*, testhost::ThreadFunction, void*);
    static const auto create = reinterpret_cast<Create>(dlsym(RTLD_NEXT, "pthread_create"));
    return testhost::IsToFail(function) ? EAGAIN : create(thread, attributes, function, argument);
}
