#include "runtime/remote/helper_process.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <pthread.h>
#include <sched.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "platform/scope_exit.h"

// The other name of clone(). By its usual one the thread sanitizer takes note, in memory that is
// this process's as well, that it runs in a new process, and from then on sees races where none
// are.
// NOLINTNEXTLINE(bugprone-reserved-identifier,readability-identifier-naming)
extern "C" int __clone(int (*run)(void*), void* stack, int flags, void* context, ...);

namespace zeldlg::remote {

namespace {

std::string RealName(const std::string& name) {
    const std::unique_ptr<char, decltype(&free)> real(realpath(name.c_str(), nullptr), free);
    return real != nullptr ? real.get() : name;
}

// Found when the library is loaded: a name that is relative is so to the folder of that moment.
const std::string& LibraryFile() {
    static const auto* const file = [] {
        Dl_info info;
        const bool known = dladdr(reinterpret_cast<const void*>(&RealName), &info) != 0 &&
                           info.dli_fname != nullptr;
        const std::string name = known ? info.dli_fname : "";
        return new std::string(name.empty() || name.front() == '/' ? name : RealName(name));
    }();
    return *file;
}

__attribute__((constructor)) void FindLibraryFile() { LibraryFile(); }

// What the two processes on the way to the program share with the thread that waits for them.
struct Launch {
    const char* path;
    char* const* arguments;
    int socket;
    char* stackOfProgram;
    int error;
};

constexpr size_t kStackSize = size_t{64} << 10;

// These run in processes that share this one's memory, its locks and the state of its thread:
// system calls only, and nothing that a sanitizer puts in between.
#define ZELDLG_BARE __attribute__((no_sanitize("address", "thread", "undefined")))

ZELDLG_BARE void SetDefaultSignals() {
    struct sigaction action = {};
    action.sa_handler = SIG_DFL;
    for (int number = 1; number < NSIG; ++number) {
        sigaction(number, &action, nullptr);
    }
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
}

ZELDLG_BARE void CloseFrom(unsigned int first) {
    if (close_range(first, ~0U, 0) != 0) {
        for (int file = static_cast<int>(sysconf(_SC_OPEN_MAX)); file >= static_cast<int>(first);
             --file) {
            close(file);
        }
    }
}

// Standard error stays the host's: messages of the library and the toolkit go there.
ZELDLG_BARE bool SetDescriptors(int socket) {
    const int high = fcntl(socket, F_DUPFD, kHelperSocket + 1);
    const int nothing = open("/dev/null", O_RDWR);
    const bool hasErrors = nothing != STDERR_FILENO && fcntl(STDERR_FILENO, F_GETFD) >= 0;
    if (high < 0 || nothing < 0 || dup2(nothing, STDIN_FILENO) < 0 ||
        dup2(nothing, STDOUT_FILENO) < 0 || (!hasErrors && dup2(nothing, STDERR_FILENO) < 0) ||
        dup2(high, kHelperSocket) < 0) {
        return false;
    }
    CloseFrom(kHelperSocket + 1);
    return true;
}

ZELDLG_BARE int RunProgram(void* context) {
    auto& launch = *static_cast<Launch*>(context);
    setsid();
    SetDefaultSignals();
    if (SetDescriptors(launch.socket)) {
        execve(launch.path, launch.arguments, environ);
    }
    launch.error = errno;
    syscall(SYS_exit_group, 1);
    return 1;
}

// The program's parent, which ends at once and leaves it to the system.
ZELDLG_BARE int RunBetween(void* context) {
    auto& launch = *static_cast<Launch*>(context);
    if (__clone(RunProgram, launch.stackOfProgram, CLONE_VM | CLONE_VFORK | SIGCHLD, context) < 0) {
        launch.error = errno;
    }
    syscall(SYS_exit_group, 0);
    return 0;
}

// Comes back when the program runs, or cannot.
bool Run(Launch& launch) {
    void* const stacks = mmap(nullptr, 2 * kStackSize, PROT_READ | PROT_WRITE,
                              MAP_PRIVATE | MAP_ANONYMOUS | MAP_STACK, -1, 0);
    if (stacks == MAP_FAILED) {
        return false;
    }
    const platform::ScopeExit freeStacks([stacks] { munmap(stacks, 2 * kStackSize); });
    launch.stackOfProgram = static_cast<char*>(stacks) + 2 * kStackSize;
    // The host's handlers must not run in the other two.
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_BLOCK, &all, &before);
    // No signal tells its end, and only who asks for such children finds it.
    const int between = __clone(RunBetween, static_cast<char*>(stacks) + kStackSize,
                                CLONE_VM | CLONE_VFORK, &launch);
    const int error = errno;
    while (between > 0 && waitpid(between, nullptr, __WALL) < 0 && errno == EINTR) {
    }
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    errno = error;
    return between > 0 && launch.error == 0;
}

}  // namespace

std::string HelperPath() {
    const std::string file = RealName(LibraryFile());
    return file.empty() ? file : file.substr(0, file.rfind('/') + 1) + kHelperName;
}

int StartHelper(const std::string& path) {
    std::array<int, 2> ends{};
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) {
        return -1;
    }
    std::string name = path.substr(path.rfind('/') + 1);
    std::string host = std::to_string(getpid());
    const std::array<char*, 3> arguments{name.data(), host.data(), nullptr};
    Launch launch{.path = path.c_str(),
                  .arguments = arguments.data(),
                  .socket = ends[1],
                  .stackOfProgram = nullptr,
                  .error = 0};
    const bool runs = Run(launch);
    close(ends[1]);
    if (!runs) {
        close(ends[0]);
        return -1;
    }
    return ends[0];
}

}  // namespace zeldlg::remote
