// Makes one chosen system call or allocation fail, the first, the second, and so on, until one run
// passes without: then every occurrence has been tried.
#pragma once

#include <cerrno>
#include <cstddef>
#include <functional>
#include <ostream>
#include <string>

namespace zeldlg::faults {

enum class FaultyCall {
    kOpen,
    kFstat,
    kStat,
    kRead,
    kWrite,
    kFsync,
    kSendfile,
    kMkdir,
    kUnlink,
    kClose,
    kNew,
};

/// Instead of an error number: the call does half of what it was asked for, which is no error.
inline constexpr int kShort = -1;

struct Fault {
    FaultyCall call = FaultyCall::kOpen;
    unsigned occurrence = 1;  ///< counted from 1
    int error = EIO;          ///< or kShort; allocations just fail

    /// True for faults after which everything must go on as if nothing had happened.
    bool IsHarmless() const { return error == kShort || error == EINTR; }
};

void PrintTo(const Fault& fault, std::ostream* out);

/// While it lives, counts calls and lets the one that the fault names fail.
class FaultScope {
public:
    explicit FaultScope(const Fault& fault);
    ~FaultScope();
    FaultScope(const FaultScope&) = delete;
    FaultScope& operator=(const FaultScope&) = delete;

    /// Whether there was such a call.
    bool Fired() const;
};

/// Allocations by operator new that have not been given back.
size_t LiveAllocations();

/// Files that the process has open.
size_t OpenFiles();

/// Runs `once` with the fault at every occurrence. @return how many there were
unsigned ForEachOccurrence(FaultyCall call, int error,
                           const std::function<bool(const Fault& fault)>& once);

}  // namespace zeldlg::faults
