/**
 * @file probe.hpp
 * @brief Tells hosts in C++17 whether a dialog could be shown now.
 *
 * Header only; neither the library nor its toolkit is loaded. A host that would wait for ever for a
 * start that fails slowly (see zeldlg.h) asks here first.
 */
#ifndef ZELDLG_PROBE_HPP
#define ZELDLG_PROBE_HPP

#include <dlfcn.h>
#include <netdb.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

namespace zeldlg {

/** What probe() found. Each text is empty where nothing is wrong. */
struct Probe {
    std::string display;  /**< Why no display can be used. */
    std::string fonts;    /**< Why there are no letters to show. */
    std::string settings; /**< Why the user's settings cannot be kept. Dialogs are shown all the
                               same, with those of the system. */

    /** @return Whether a dialog could be shown. */
    explicit operator bool() const { return display.empty() && fonts.empty(); }
};

/** @cond */
namespace probing {

using Clock = std::chrono::steady_clock;

inline std::string variable(const char* name) {
    const char* const value = std::getenv(name);
    return value != nullptr ? value : "";
}

// A connection to a server of displays, which has to answer before the deadline.
class Connection {
public:
    explicit Connection(Clock::time_point deadline) : m_deadline(deadline) {}
    ~Connection() { reset(-1); }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    // A path that begins with a zero byte is an abstract one.
    bool connect_local(const std::string& path) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        if (path.size() >= sizeof address.sun_path) {
            errno = ENAMETOOLONG;
            return false;
        }
        std::copy(path.begin(), path.end(), address.sun_path);
        const size_t length = offsetof(sockaddr_un, sun_path) + path.size();
        return connect_to(AF_UNIX, reinterpret_cast<const sockaddr*>(&address), length);
    }

    bool connect_remote(const std::string& host, const std::string& port) {
        addrinfo hints{};
        hints.ai_socktype = SOCK_STREAM;
        addrinfo* found = nullptr;
        if (getaddrinfo(host.c_str(), port.c_str(), &hints, &found) != 0) {
            errno = EHOSTUNREACH;
            return false;
        }
        const std::unique_ptr<addrinfo, decltype(&freeaddrinfo)> owned(found, freeaddrinfo);
        for (; found != nullptr; found = found->ai_next) {
            if (connect_to(found->ai_family, found->ai_addr, found->ai_addrlen)) {
                return true;
            }
        }
        return false;
    }

    bool ask(const std::string& question, std::string& answer, size_t size) {
        if (!ready(POLLOUT) || send(m_socket, question.data(), question.size(), MSG_NOSIGNAL) !=
                                   static_cast<ssize_t>(question.size())) {
            return false;
        }
        while (answer.size() < size && ready(POLLIN)) {
            char bytes[256];
            const ssize_t count = recv(m_socket, bytes, sizeof bytes, 0);
            if (count <= 0) {
                errno = count == 0 ? ECONNRESET : errno;
                return false;
            }
            answer.append(bytes, static_cast<size_t>(count));
        }
        return answer.size() >= size;
    }

private:
    bool connect_to(int family, const sockaddr* address, size_t length) {
        reset(::socket(family, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
        if (m_socket < 0) {
            return false;
        }
        if (::connect(m_socket, address, static_cast<socklen_t>(length)) == 0) {
            return true;
        }
        int error = 0;
        socklen_t size = sizeof error;
        if (errno != EINPROGRESS || !ready(POLLOUT) ||
            getsockopt(m_socket, SOL_SOCKET, SO_ERROR, &error, &size) != 0) {
            return false;
        }
        errno = error;
        return error == 0;
    }

    bool ready(short event) {
        pollfd wanted{m_socket, event, 0};
        for (;;) {
            const auto left =
                std::chrono::ceil<std::chrono::milliseconds>(m_deadline - Clock::now());
            const int count =
                poll(&wanted, 1, static_cast<int>(std::max<int64_t>(left.count(), 0)));
            if (count > 0 || (count < 0 && errno != EINTR)) {
                return count > 0;
            }
            if (count == 0) {
                errno = ETIMEDOUT;
                return false;
            }
        }
    }

    void reset(int socket) {
        if (m_socket >= 0) {
            close(m_socket);
        }
        m_socket = socket;
    }

    const Clock::time_point m_deadline;
    int m_socket = -1;
};

// The cookie for a display with that number, from the file that xauth keeps.
inline std::string cookie(const std::string& number, bool local) {
    const std::string named = variable("XAUTHORITY");
    std::ifstream file(named.empty() ? variable("HOME") + "/.Xauthority" : named, std::ios::binary);
    const auto read_number = [&file] {
        const int high = file.get();
        return file ? static_cast<size_t>(high << 8 | file.get()) : 0;
    };
    const auto read_text = [&] {
        std::string text(read_number(), '\0');
        file.read(text.data(), static_cast<std::streamsize>(text.size()));
        return text;
    };
    char name[256] = {};
    gethostname(name, sizeof name - 1);
    constexpr size_t any_host = 65535;
    constexpr size_t this_host = 256;
    while (file) {
        const size_t family = read_number();
        const std::string address = read_text();
        const std::string display = read_text();
        const std::string method = read_text();
        const std::string data = read_text();
        const bool fits = family == any_host || !local || (family == this_host && address == name);
        if (file && fits && (display.empty() || display == number) &&
            method == "MIT-MAGIC-COOKIE-1") {
            return data;
        }
    }
    return {};
}

// Empty, or why the X server cannot be used.
inline std::string x11(Clock::time_point deadline) {
    const std::string display = variable("DISPLAY");
    const size_t colon = display.rfind(':');
    if (colon == std::string::npos) {
        return "DISPLAY is not set";
    }
    const std::string host = display.substr(0, colon);
    const std::string number = display.substr(colon + 1, display.find('.', colon) - colon - 1);
    const bool local = host.empty() || host == "unix";
    const std::string path = "/tmp/.X11-unix/X" + number;
    Connection server(deadline);
    const bool connected =
        local ? server.connect_local(path) || server.connect_local('\0' + path)
              : server.connect_remote(host, std::to_string(6000 + std::atoi(number.c_str())));
    if (connected) {
        const auto word = [](size_t value) {
            return std::string{static_cast<char>(value & 255), static_cast<char>(value >> 8)};
        };
        const auto padded = [](std::string text) {
            text.resize((text.size() + 3) / 4 * 4);
            return text;
        };
        const std::string data = cookie(number, local);
        const std::string method = data.empty() ? "" : "MIT-MAGIC-COOKIE-1";
        std::string answer;
        // Byte order, protocol 11.0, who we are; the answer begins with 1 when we may stay.
        if (server.ask("l" + std::string(1, '\0') + word(11) + word(0) + word(method.size()) +
                           word(data.size()) + word(0) + padded(method) + padded(data),
                       answer, 8)) {
            return answer[0] == 1 ? "" : display + ": this user may not use it";
        }
    }
    return display + ": " + std::strerror(errno);
}

// Empty, or why the Wayland compositor cannot be used.
inline std::string wayland(Clock::time_point deadline) {
    if (!variable("WAYLAND_SOCKET").empty()) {
        return {};  // a connection that is there already
    }
    std::string display = variable("WAYLAND_DISPLAY");
    if (display.empty()) {
        return "WAYLAND_DISPLAY is not set";
    }
    if (display.front() != '/') {
        display = variable("XDG_RUNTIME_DIR") + "/" + display;
    }
    Connection server(deadline);
    std::string answer;
    // wl_display.sync: of object 1 the request 0, 12 bytes, with the new object 2.
    const uint32_t sync[] = {1, 12U << 16U, 2};
    if (server.connect_local(display) &&
        server.ask(std::string(reinterpret_cast<const char*>(sync), sizeof sync), answer, 8)) {
        return {};
    }
    return display + ": " + std::strerror(errno);
}

// As the toolkit does: Wayland, then X, of those that GDK_BACKEND leaves.
inline std::string display(Clock::time_point deadline) {
    const std::string backends = variable("GDK_BACKEND");
    const auto is_allowed = [&backends](const char* backend) {
        return backends.empty() || backends.find('*') != std::string::npos ||
               backends.find(backend) != std::string::npos;
    };
    std::string why;
    if (is_allowed("wayland") && (why = wayland(deadline)).empty()) {
        return {};
    }
    if (is_allowed("x11")) {
        const std::string other = x11(deadline);
        if (other.empty()) {
            return {};
        }
        why = why.empty() || variable("WAYLAND_DISPLAY").empty() ? other : why + "; " + other;
    }
    return why.empty() ? "GDK_BACKEND leaves neither wayland nor x11" : why;
}

inline std::string fonts() {
    struct FontSet {
        int count;
    };
    void* const library = dlopen("libfontconfig.so.1", RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        return dlerror();
    }
    const auto load = reinterpret_cast<void* (*)()>(dlsym(library, "FcInitLoadConfigAndFonts"));
    const auto list =
        reinterpret_cast<FontSet* (*)(void*, int)>(dlsym(library, "FcConfigGetFonts"));
    const auto destroy = reinterpret_cast<void (*)(void*)>(dlsym(library, "FcConfigDestroy"));
    bool found = false;
    if (load != nullptr && list != nullptr && destroy != nullptr) {
        if (void* const config = load()) {
            const FontSet* const fonts_of_system = list(config, 0);
            found = fonts_of_system != nullptr && fonts_of_system->count > 0;
            destroy(config);
        }
    }
    return found ? "" : "there are no fonts";
}

inline std::string settings() {
    std::string home;
    for (const char* const name : {"ZEL_HOME", "HOME"}) {
        if (home.empty() && std::getenv(name) != nullptr) {
            home = variable(name);
        }
    }
    if (home.empty()) {
        home = variable("HOMEDRIVE") + variable("HOMEPATH");
    }
    if (home.empty()) {
        return "neither ZEL_HOME nor HOME is set";
    }
    // The innermost that there is of file and directories: the others would be made.
    std::string place = home + "/.tessaly/registry";
    while (access(place.c_str(), F_OK) != 0 && place.size() > home.size()) {
        place.erase(place.rfind('/'));
    }
    struct stat status = {};
    const int wanted =
        stat(place.c_str(), &status) == 0 && S_ISDIR(status.st_mode) ? W_OK | X_OK : R_OK | W_OK;
    return access(place.c_str(), wanted) == 0 ? "" : place + ": " + std::strerror(errno);
}

}  // namespace probing
/** @endcond */

/**
 * Says whether a dialog could be shown now: whether a display answers, there are fonts, and there
 * is a place for the user's settings. Starts nothing and changes no file.
 *
 * It looks at the surroundings alone, not at what the process runs itself.
 * @param patience For how long the display may take to answer.
 * @return What is wrong, in words.
 */
inline Probe probe(std::chrono::milliseconds patience = std::chrono::seconds(2)) {
    return {probing::display(probing::Clock::now() + patience), probing::fonts(),
            probing::settings()};
}

}  // namespace zeldlg

#endif  // ZELDLG_PROBE_HPP
