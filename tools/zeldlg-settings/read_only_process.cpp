#include "read_only_process.h"

#include <fcntl.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <vector>

namespace admin {

namespace {

using Clock = std::chrono::steady_clock;
using Filter = std::vector<sock_filter>;

constexpr int kNoFilter = 125;

constexpr uint32_t kRefused = SECCOMP_RET_ERRNO | EROFS;

// The low half of an argument, which holds an int.
constexpr uint32_t ArgumentOffset(unsigned index) {
    constexpr unsigned kLowHalf = __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__ ? 4 : 0;
    return static_cast<uint32_t>(offsetof(seccomp_data, args) + index * sizeof(uint64_t)) +
           kLowHalf;
}

void LoadNumber(Filter& filter) {
    filter.push_back(BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)));
}

void Refuse(Filter& filter, uint32_t call) {
    filter.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, call, 0, 1));
    filter.push_back(BPF_STMT(BPF_RET | BPF_K, kRefused));
}

void RefuseToWrite(Filter& filter, uint32_t openCall, unsigned flagsArgument) {
    filter.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, openCall, 0, 7));
    filter.push_back(BPF_STMT(BPF_LD | BPF_W | BPF_ABS, ArgumentOffset(flagsArgument)));
    filter.push_back(BPF_JUMP(BPF_JMP | BPF_JSET | BPF_K, O_CREAT | O_TRUNC, 2, 0));
    filter.push_back(BPF_STMT(BPF_ALU | BPF_AND | BPF_K, O_ACCMODE));
    filter.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, O_WRONLY, 0, 1));
    filter.push_back(BPF_STMT(BPF_RET | BPF_K, kRefused));
    filter.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW));
    LoadNumber(filter);
}

// No fence against malice: calls of another architecture are not looked at.
Filter MakeFilter() {
    Filter filter;
    LoadNumber(filter);
    for (const uint32_t call : {
#ifdef SYS_open  // newer architectures have none of these
             SYS_creat, SYS_mkdir, SYS_rmdir, SYS_mknod, SYS_unlink, SYS_link, SYS_symlink,
             SYS_rename,
#endif
             SYS_mkdirat, SYS_mknodat, SYS_unlinkat, SYS_linkat, SYS_symlinkat, SYS_renameat,
             SYS_renameat2, SYS_truncate}) {
        Refuse(filter, call);
    }
#ifdef SYS_open
    RefuseToWrite(filter, SYS_open, 1);
#endif
    RefuseToWrite(filter, SYS_openat, 2);
    filter.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW));
    return filter;
}

bool BecomeReadOnly() {
    Filter filter = MakeFilter();
    const sock_fprog program = {static_cast<unsigned short>(filter.size()), filter.data()};
    return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
           prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
}

[[noreturn]] void RunInChild(const std::function<int()>& action, int output, int errors) {
    dup2(output, STDOUT_FILENO);
    dup2(errors, STDERR_FILENO);
    // It must not outlive the doctor, who may be interrupted.
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (!BecomeReadOnly()) {
        _exit(kNoFilter);
    }
    int code = 1;
    try {
        code = action();
    } catch (const std::exception& error) {
        fprintf(stderr, "%s\n", error.what());
    }
    fflush(stdout);
    fflush(stderr);
    _exit(code);
}

class Pipe {
public:
    Pipe() {
        int ends[2] = {-1, -1};
        if (pipe2(ends, O_CLOEXEC) == 0) {
            m_read = ends[0];
            m_write = ends[1];
        }
    }
    ~Pipe() {
        close(m_read);
        CloseWriting();
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;

    bool IsOpen() const { return m_read >= 0; }
    int Reading() const { return m_read; }
    int Writing() const { return m_write; }
    void CloseWriting() {
        close(m_write);
        m_write = -1;
    }

private:
    int m_read = -1;
    int m_write = -1;
};

// Reads once what is there. Returns false at the end.
bool Collect(pollfd& source, std::string& text) {
    if (source.fd < 0 || source.revents == 0) {
        return source.fd >= 0;
    }
    char buffer[4096];
    const ssize_t count = read(source.fd, buffer, sizeof buffer);
    if (count > 0) {
        text.append(buffer, static_cast<size_t>(count));
    }
    return count > 0 || (count < 0 && errno == EINTR);
}

// A program that the child has started may hold the pipes after it: its end counts as well.
bool HasEnded(pid_t child) {
    siginfo_t info{};
    return waitid(P_PID, static_cast<id_t>(child), &info, WEXITED | WNOHANG | WNOWAIT) == 0 &&
           info.si_pid == child;
}

// Returns false when the time is over.
bool ReadUntil(Clock::time_point end, pid_t child, const Pipe& output, const Pipe& errors,
               ProcessResult& result) {
    constexpr int kTurnMilliseconds = 50;
    pollfd sources[] = {{output.Reading(), POLLIN, 0}, {errors.Reading(), POLLIN, 0}};
    while (sources[0].fd >= 0 || sources[1].fd >= 0 || !HasEnded(child)) {
        if (Clock::now() >= end) {
            return false;
        }
        const bool ended = HasEnded(child);
        const int ready = poll(sources, 2, ended ? 0 : kTurnMilliseconds);
        if (ended && ready == 0) {
            return true;
        }
        for (pollfd& source : sources) {
            if (ready > 0 &&
                !Collect(source, &source == &sources[0] ? result.output : result.errors)) {
                source.fd = -1;
            }
        }
    }
    return true;
}

void Judge(int status, bool inTime, ProcessResult& result) {
    using End = ProcessResult::End;
    if (!inTime) {
        result.end = End::TooLong;
    } else if (WIFSIGNALED(status)) {
        result.end = End::Died;
        result.code = WTERMSIG(status);
    } else {
        result.code = WEXITSTATUS(status);
        result.end = result.code == kNoFilter ? End::NotStarted : End::Exited;
    }
}

}  // namespace

ProcessResult RunReadOnly(const std::function<int()>& action, int seconds) {
    ProcessResult result;
    Pipe output;
    Pipe errors;
    fflush(stdout);
    const pid_t child = output.IsOpen() && errors.IsOpen() ? fork() : -1;
    if (child < 0) {
        return result;
    }
    if (child == 0) {
        RunInChild(action, output.Writing(), errors.Writing());
    }
    output.CloseWriting();
    errors.CloseWriting();
    const bool inTime =
        ReadUntil(Clock::now() + std::chrono::seconds(seconds), child, output, errors, result);
    if (!inTime) {
        kill(child, SIGKILL);
    }
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    Judge(status, inTime, result);
    return result;
}

}  // namespace admin
