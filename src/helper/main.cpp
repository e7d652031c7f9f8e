// zeldlg-helper: shows the windows of the library for a process that cannot. Started by the library
// alone, with a connection to it.
#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <thread>

#include "helper/serve.h"
#include "registry/process_wish.h"
#include "runtime/gui_runner.h"
#include "runtime/remote/helper_process.h"

namespace {

using zeldlg::remote::kHelperSocket;

// PINs pass through here: they are not for core files and debuggers.
void KeepMemoryPrivate() {
    const rlimit none{.rlim_cur = 0, .rlim_max = 0};
    setrlimit(RLIMIT_CORE, &none);
    prctl(PR_SET_DUMPABLE, 0);
}

// The process at the other end; 0 when there is none, or it is another user's.
pid_t FindHost() {
    ucred host{};
    socklen_t size = sizeof host;
    const bool known = getsockopt(kHelperSocket, SOL_SOCKET, SO_PEERCRED, &host, &size) == 0 &&
                       size == sizeof host;
    return known && host.uid == geteuid() ? host.pid : 0;
}

// The windows must not outlive who asked for them, not even an open dialog. A child that the host
// forked may still have the connection, so that its end tells of the host's in many cases only.
void EndWithHost(pid_t host) {
    const int process = static_cast<int>(syscall(SYS_pidfd_open, host, 0));
    pollfd ends[] = {{kHelperSocket, POLLRDHUP, 0}, {process, POLLIN, 0}};
    while (poll(ends, 2, -1) < 0 && errno == EINTR) {
    }
    _exit(EXIT_SUCCESS);
}

}  // namespace

int main() {
    KeepMemoryPrivate();
    const pid_t host = FindHost();
    if (host == 0) {
        fputs("zeldlg-helper: is started by libzeldlglib, and by nothing else\n", stderr);
        return EXIT_FAILURE;
    }
    fcntl(kHelperSocket, F_SETFD, FD_CLOEXEC);
    signal(SIGPIPE, SIG_IGN);  // nobody may read the host's standard error any more
    zeldlg::registry::KeepProcessWish(zeldlg::registry::ProcessWish::Own);
    try {
        std::thread(EndWithHost, host).detach();
        zeldlg::GetGuiRunner();
        if (zeldlg::helper::Serve(kHelperSocket)) {
            return EXIT_SUCCESS;
        }
    } catch (const std::exception& error) {
        fprintf(stderr, "zeldlg-helper: %s\n", error.what());
    }
    _exit(EXIT_FAILURE);
}
