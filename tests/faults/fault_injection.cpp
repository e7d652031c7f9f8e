#include "fault_injection.h"

#include <sys/sendfile.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdarg>
#include <cstdlib>
#include <filesystem>
#include <new>

namespace zeldlg::faults {

namespace {

// Of one thread: the tests have no other.
bool g_armed = false;
bool g_fired = false;
unsigned g_seen = 0;
Fault g_fault;
size_t g_live = 0;

constexpr const char* kNames[] = {"open",     "fstat", "stat",   "read",  "write",       "fsync",
                                  "sendfile", "mkdir", "unlink", "close", "operator new"};

bool IsDue(FaultyCall call) {
    if (!g_armed || g_fired || call != g_fault.call || ++g_seen != g_fault.occurrence) {
        return false;
    }
    g_fired = true;
    return true;
}

}  // namespace

void PrintTo(const Fault& fault, std::ostream* out) {
    *out << kNames[static_cast<size_t>(fault.call)] << " no. " << fault.occurrence << ", error "
         << fault.error;
}

FaultScope::FaultScope(const Fault& fault) {
    g_fault = fault;
    g_seen = 0;
    g_fired = false;
    g_armed = true;
}

FaultScope::~FaultScope() { g_armed = false; }

bool FaultScope::Fired() const { return g_fired; }

size_t LiveAllocations() { return g_live; }

size_t OpenFiles() {
    size_t count = 0;
    for ([[maybe_unused]] const auto& entry :
         std::filesystem::directory_iterator("/proc/self/fd")) {
        ++count;
    }
    return count;
}

unsigned ForEachOccurrence(FaultyCall call, int error,
                           const std::function<bool(const Fault& fault)>& once) {
    unsigned occurrence = 1;
    while (once({call, occurrence, error})) {
        ++occurrence;
    }
    return occurrence - 1;
}

namespace {

void* Allocate(size_t size) {
    if (IsDue(FaultyCall::kNew)) {
        return nullptr;
    }
    void* const memory = std::malloc(size == 0 ? 1 : size);
    g_live += memory != nullptr ? 1 : 0;
    return memory;
}

void Release(void* memory) {
    g_live -= memory != nullptr ? 1 : 0;
    free(memory);
}

/// The call's own error, or -1 with that of the fault.
template <typename Function>
auto Faulty(FaultyCall call, Function function) -> decltype(function()) {
    if (IsDue(call)) {
        errno = g_fault.error;
        return -1;
    }
    return function();
}

/// For calls that say how much they did.
template <typename Function>
ssize_t FaultyTransfer(FaultyCall call, size_t size, Function function) {
    if (!IsDue(call)) {
        return function(size);
    }
    if (g_fault.error == kShort) {
        return function(size > 1 ? size / 2 : size);
    }
    errno = g_fault.error;
    return -1;
}

}  // namespace

}  // namespace zeldlg::faults

using zeldlg::faults::Allocate;
using zeldlg::faults::Faulty;
using zeldlg::faults::FaultyCall;
using zeldlg::faults::FaultyTransfer;
using zeldlg::faults::Release;

void* operator new(size_t size) {
    void* const memory = Allocate(size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

void* operator new[](size_t size) { return ::operator new(size); }
void* operator new(size_t size, const std::nothrow_t&) noexcept { return Allocate(size); }
void* operator new[](size_t size, const std::nothrow_t&) noexcept { return Allocate(size); }
void operator delete(void* memory) noexcept { Release(memory); }
void operator delete[](void* memory) noexcept { Release(memory); }
void operator delete(void* memory, size_t) noexcept { Release(memory); }
void operator delete[](void* memory, size_t) noexcept { Release(memory); }
void operator delete(void* memory, const std::nothrow_t&) noexcept { Release(memory); }
void operator delete[](void* memory, const std::nothrow_t&) noexcept { Release(memory); }

// What the linker puts in the place of the calls, and their own names for what was there.
// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming)
extern "C" {

int __real_open(const char* path, int flags, ...);
int __real_fstat(int file, struct stat* status);
int __real_stat(const char* path, struct stat* status);
ssize_t __real_read(int file, void* buffer, size_t size);
ssize_t __real_write(int file, const void* buffer, size_t size);
int __real_fsync(int file);
ssize_t __real_sendfile(int to, int from, off_t* offset, size_t size);
int __real_mkdir(const char* path, mode_t mode);
int __real_unlink(const char* path);
int __real_close(int file);

int __wrap_open(const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = va_arg(arguments, mode_t);
    va_end(arguments);
    return Faulty(FaultyCall::kOpen, [&] { return __real_open(path, flags, mode); });
}

int __wrap_fstat(int file, struct stat* status) {
    return Faulty(FaultyCall::kFstat, [&] { return __real_fstat(file, status); });
}

int __wrap_stat(const char* path, struct stat* status) {
    return Faulty(FaultyCall::kStat, [&] { return __real_stat(path, status); });
}

ssize_t __wrap_read(int file, void* buffer, size_t size) {
    return FaultyTransfer(FaultyCall::kRead, size,
                          [&](size_t part) { return __real_read(file, buffer, part); });
}

ssize_t __wrap_write(int file, const void* buffer, size_t size) {
    return FaultyTransfer(FaultyCall::kWrite, size,
                          [&](size_t part) { return __real_write(file, buffer, part); });
}

int __wrap_fsync(int file) {
    return Faulty(FaultyCall::kFsync, [&] { return __real_fsync(file); });
}

ssize_t __wrap_sendfile(int to, int from, off_t* offset, size_t size) {
    return FaultyTransfer(FaultyCall::kSendfile, size,
                          [&](size_t part) { return __real_sendfile(to, from, offset, part); });
}

int __wrap_mkdir(const char* path, mode_t mode) {
    return Faulty(FaultyCall::kMkdir, [&] { return __real_mkdir(path, mode); });
}

int __wrap_unlink(const char* path) {
    return Faulty(FaultyCall::kUnlink, [&] { return __real_unlink(path); });
}

// The file is closed whatever the system reports.
int __wrap_close(int file) {
    const int result = __real_close(file);
    return Faulty(FaultyCall::kClose, [&] { return result; });
}

}  // extern "C"
// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)
