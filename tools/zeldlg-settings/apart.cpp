#include "apart.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <memory>

namespace admin {

namespace {

namespace fs = std::filesystem;

using File = std::unique_ptr<FILE, int (*)(FILE*)>;

[[noreturn]] void RunInChild(const std::string& home, unsigned seconds,
                             const std::function<int()>& action) {
    alarm(seconds);
    setenv("ZEL_HOME", home.c_str(), 1);
    setenv("XDG_CACHE_HOME", home.c_str(), 1);
    int code = 1;
    try {
        code = action();
    } catch (const std::exception& error) {
        fprintf(stderr, "%s\n", error.what());
    }
    fflush(stdout);
    _exit(code);
}

std::string ReadAll(FILE* file) {
    std::string text;
    rewind(file);
    for (int character = fgetc(file); character != EOF; character = fgetc(file)) {
        text += static_cast<char>(character);
    }
    return text;
}

Ending::How Judge(int status) {
    return WIFEXITED(status)             ? Ending::How::Exited
           : WTERMSIG(status) == SIGALRM ? Ending::How::TooLong
                                         : Ending::How::Died;
}

Ending RunIn(const std::string& home, unsigned seconds, const std::function<int()>& action) {
    const File output(tmpfile(), fclose);
    const File errors(tmpfile(), fclose);
    fflush(stdout);
    const pid_t child = output && errors ? fork() : -1;
    if (child < 0) {
        return {};
    }
    if (child == 0) {
        dup2(fileno(output.get()), STDOUT_FILENO);
        dup2(fileno(errors.get()), STDERR_FILENO);
        RunInChild(home, seconds, action);
    }
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    return {Judge(status), WIFEXITED(status) ? WEXITSTATUS(status) : WTERMSIG(status),
            ReadAll(output.get()), ReadAll(errors.get())};
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
    Ending ending = RunIn(home, seconds, action);
    fs::remove_all(home, error);
    return ending;
}

}  // namespace admin
