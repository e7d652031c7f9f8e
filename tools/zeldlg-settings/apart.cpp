#include "apart.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace admin {

namespace {

namespace fs = std::filesystem;

void WriteTo(const std::string& file, int descriptor) {
    dup2(open(file.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600), descriptor);
}

std::string Read(const std::string& file) {
    std::ifstream stream(file);
    return {std::istreambuf_iterator<char>(stream), {}};
}

[[noreturn]] void RunInChild(const std::string& home, unsigned seconds,
                             const std::function<int()>& action) {
    alarm(seconds);
    setenv("ZEL_HOME", home.c_str(), 1);
    setenv("XDG_CACHE_HOME", home.c_str(), 1);
    WriteTo(home + "/output", STDOUT_FILENO);
    WriteTo(home + "/errors", STDERR_FILENO);
    int code = 1;
    try {
        code = action();
    } catch (const std::exception& error) {
        fprintf(stderr, "%s\n", error.what());
    }
    fflush(stdout);
    _exit(code);
}

Ending WaitFor(pid_t child, const std::string& home) {
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    const bool died = WIFSIGNALED(status);
    const int code = died ? WTERMSIG(status) : WEXITSTATUS(status);
    return {!died             ? Ending::How::Exited
            : code == SIGALRM ? Ending::How::TooLong
                              : Ending::How::Died,
            code, Read(home + "/output"), Read(home + "/errors")};
}

}  // namespace

Ending RunApart(const std::string& settings, unsigned seconds, const std::function<int()>& action) {
    std::string home = fs::temp_directory_path() / "zeldlg-settings-XXXXXX";
    if (mkdtemp(home.data()) == nullptr) {
        return {};
    }
    std::error_code error;  // a start that lacks the file says so itself
    fs::create_directory(home + "/.tessaly", error);
    fs::copy_file(settings, home + "/.tessaly/registry", error);
    fflush(stdout);
    const pid_t child = fork();
    if (child == 0) {
        RunInChild(home, seconds, action);
    }
    Ending ending = child < 0 ? Ending{} : WaitFor(child, home);
    fs::remove_all(home, error);
    return ending;
}

}  // namespace admin
