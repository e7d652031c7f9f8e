// The doctor on the display, and on how the toolkit draws there.
#include <dlfcn.h>
#include <gtk/gtk.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <wx/utils.h>
#include <wx/version.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>

#include "apart.h"
#include "command.h"
#include "doctor.h"

namespace admin {

namespace {

void Say(const char* what, const std::string& value) { printf("%s: %s\n", what, value.c_str()); }

std::string TextSetting(GtkSettings* settings, const char* name) {
    gchar* text = nullptr;
    g_object_get(settings, name, &text, nullptr);
    std::string value = text != nullptr ? text : "";
    g_free(text);
    return value;
}

int NumberSetting(GtkSettings* settings, const char* name) {
    gint number = 0;
    g_object_get(settings, name, &number, nullptr);
    return number;
}

void SayVersion() {
    Say("GTK", std::to_string(gtk_get_major_version()) + "." +
                   std::to_string(gtk_get_minor_version()) + "." +
                   std::to_string(gtk_get_micro_version()));
}

void SayDisplay(GdkDisplay* display) {
    const std::string type = G_OBJECT_TYPE_NAME(display);
    const char* const system = type == "GdkX11Display"       ? "X11"
                               : type == "GdkWaylandDisplay" ? "Wayland"
                                                             : type.c_str();
    Say("opened", std::string(gdk_display_get_name(display)) + " (" + system + ")");
    const int count = gdk_display_get_n_monitors(display);
    for (int i = 0; i < count; ++i) {
        GdkMonitor* const monitor = gdk_display_get_monitor(display, i);
        GdkRectangle place;
        gdk_monitor_get_geometry(monitor, &place);
        Say("screen", std::to_string(place.width) + " by " + std::to_string(place.height) +
                          ", scale " + std::to_string(gdk_monitor_get_scale_factor(monitor)));
    }
}

void SayLook() {
    GtkSettings* const settings = gtk_settings_get_default();
    const bool dark = NumberSetting(settings, "gtk-application-prefer-dark-theme") != 0;
    Say("theme", TextSetting(settings, "gtk-theme-name") + (dark ? " (dark)" : ""));
    Say("icons", TextSetting(settings, "gtk-icon-theme-name"));
    Say("font", TextSetting(settings, "gtk-font-name"));
    constexpr int kDpiUnit = 1024;
    const int resolution = NumberSetting(settings, "gtk-xft-dpi");
    Say("resolution of text",
        resolution > 0 ? std::to_string(resolution / kDpiUnit) + " dpi" : "the display's");
}

// Prints what the toolkit says of the display as "WHAT: VALUE".
int ProbeDisplay() {
    SayVersion();
    fflush(stdout);  // the toolkit may never come back
    if (gtk_init_check(nullptr, nullptr) == FALSE) {
        return kNotDone;
    }
    SayDisplay(gdk_display_get_default());
    SayLook();
    return kDone;
}

constexpr unsigned kProbeSeconds = 10;

void ReportVariables(Report& report) {
    for (const char* const name : {"DISPLAY", "WAYLAND_DISPLAY"}) {
        report.Line(name, Variable(name));
    }
    // What changes the dialogs when it is set.
    for (const char* const name :
         {"XDG_RUNTIME_DIR", "XAUTHORITY", "GDK_BACKEND", "GTK_THEME", "GDK_SCALE", "GDK_DPI_SCALE",
          "GTK_MODULES", "GTK_IM_MODULE", "NO_AT_BRIDGE"}) {
        if (getenv(name) != nullptr) {
            report.Line(name, Variable(name));
        }
    }
}

// Why a local socket cannot be connected to; empty when it can.
std::string SocketError(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path) {
        return strerror(ENAMETOOLONG);
    }
    std::copy(path.begin(), path.end(), address.sun_path);
    const int client = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    const bool connected =
        connect(client, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    std::string error = connected ? "" : strerror(errno);
    close(client);
    return error;
}

std::string XSocket(const std::string& display) {
    const size_t colon = display.rfind(':');
    const std::string host = display.substr(0, std::min(colon, display.size()));
    if (colon == std::string::npos || (!host.empty() && host != "unix")) {
        return {};
    }
    const size_t end = std::min(display.find('.', colon), display.size());
    return "/tmp/.X11-unix/X" + display.substr(colon + 1, end - colon - 1);
}

std::string WaylandSocket(const std::string& display) {
    if (display.starts_with('/')) {
        return display;
    }
    const char* const directory = getenv("XDG_RUNTIME_DIR");
    return directory == nullptr ? std::string() : std::string(directory) + "/" + display;
}

void ReportSocket(Report& report, const char* variable,
                  std::string (*socketOf)(const std::string&)) {
    const char* const display = getenv(variable);
    const std::string socket =
        display == nullptr || *display == '\0' ? std::string() : socketOf(display);
    if (!socket.empty()) {
        const std::string error = SocketError(socket);
        report.Line("socket", socket + " (" + (error.empty() ? "answers" : error) + ")");
    }
}

void ReportUnreachable(Report& report, const Ending& probe) {
    if (probe.how == Ending::How::NotStarted) {
        report.Problem("The display could not be tried.",
                       "Is there room for temporary files and for one more process?");
    } else if (probe.how == Ending::How::TooLong) {
        report.Problem("The display does not answer.",
                       "Is its server stopped, or the way to it blocked?");
    } else if (getenv("DISPLAY") == nullptr && getenv("WAYLAND_DISPLAY") == nullptr) {
        report.Problem("Neither DISPLAY nor WAYLAND_DISPLAY is set: there is no display.",
                       "Run the host in a desktop session. Over ssh, use ssh -X; in a sandbox, "
                       "let it have the display's socket.");
    } else {
        report.Problem("The display cannot be opened.",
                       "Is it the right one, may this user use it (XAUTHORITY, xhost), and does "
                       "GDK_BACKEND fit?");
    }
    report.Lines(probe.errors, "message");
}

// The version is part of the file's name: the toolkit's own answer would need its windows.
std::string WxVersion() {
    Dl_info info;
    const auto* const address = reinterpret_cast<const void*>(&wxGetEnvMap);
    std::error_code error;
    return dladdr(address, &info) == 0
               ? wxVERSION_NUM_DOT_STRING
               : std::string("made for " wxVERSION_NUM_DOT_STRING ", found ") +
                     std::filesystem::canonical(info.dli_fname, error).string();
}

}  // namespace

bool ReportDisplay(Report& report) {
    report.Section("Display");
    ReportVariables(report);
    ReportSocket(report, "DISPLAY", XSocket);
    ReportSocket(report, "WAYLAND_DISPLAY", WaylandSocket);
    report.Line("wxWidgets", WxVersion());
    const Ending probe = RunApart({}, kProbeSeconds, ProbeDisplay);
    report.Lines(probe.output);
    const bool opened = probe.output.find("\nopened: ") != std::string::npos;
    if (!opened) {
        ReportUnreachable(report, probe);
    }
    return opened;
}

}  // namespace admin
