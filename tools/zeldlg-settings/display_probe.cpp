// Looks at the display as the toolkit sees it. The toolkit is found at run time: the other
// commands need none of it.
#include <dlfcn.h>
#include <gtk/gtk.h>

#include <cstdio>
#include <cstring>
#include <stdexcept>
#include <string>

#include "command.h"
#include "doctor_topics.h"

namespace admin {

namespace {

class Toolkit {
public:
    Toolkit() : m_library(dlopen("libgtk-3.so.0", RTLD_NOW | RTLD_GLOBAL)) {
        if (m_library == nullptr) {
            throw std::runtime_error(dlerror());
        }
    }

    // `declared` only says what the function's type is.
    template <typename Function>
    Function* Find(const char* name, Function*) const {
        void* const symbol = dlsym(m_library, name);
        if (symbol == nullptr) {
            throw std::runtime_error(dlerror());
        }
        Function* function = nullptr;
        std::memcpy(&function, &symbol, sizeof function);
        return function;
    }

private:
    void* m_library;  // stays loaded: the toolkit cannot be unloaded
};

#define FROM(toolkit, name) (toolkit).Find(#name, static_cast<decltype(&(name))>(nullptr))

void Say(const char* what, const std::string& value) { printf("%s: %s\n", what, value.c_str()); }

std::string TextSetting(const Toolkit& toolkit, GtkSettings* settings, const char* name) {
    gchar* text = nullptr;
    FROM(toolkit, g_object_get)(settings, name, &text, nullptr);
    const std::string value = text != nullptr ? text : "";
    FROM(toolkit, g_free)(text);
    return value;
}

int NumberSetting(const Toolkit& toolkit, GtkSettings* settings, const char* name) {
    gint number = 0;
    FROM(toolkit, g_object_get)(settings, name, &number, nullptr);
    return number;
}

void SayVersion(const Toolkit& toolkit) {
    Say("GTK", std::to_string(FROM(toolkit, gtk_get_major_version)()) + "." +
                   std::to_string(FROM(toolkit, gtk_get_minor_version)()) + "." +
                   std::to_string(FROM(toolkit, gtk_get_micro_version)()));
}

void SayDisplay(const Toolkit& toolkit, GdkDisplay* display) {
    const std::string type =
        FROM(toolkit, g_type_name_from_instance)(reinterpret_cast<GTypeInstance*>(display));
    const char* const system = type == "GdkX11Display"       ? "X11"
                               : type == "GdkWaylandDisplay" ? "Wayland"
                                                             : type.c_str();
    Say("opened", std::string(FROM(toolkit, gdk_display_get_name)(display)) + " (" + system + ")");
    const int count = FROM(toolkit, gdk_display_get_n_monitors)(display);
    for (int i = 0; i < count; ++i) {
        GdkMonitor* const monitor = FROM(toolkit, gdk_display_get_monitor)(display, i);
        GdkRectangle place;
        FROM(toolkit, gdk_monitor_get_geometry)(monitor, &place);
        Say("screen", std::to_string(place.width) + " by " + std::to_string(place.height) +
                          ", scale " +
                          std::to_string(FROM(toolkit, gdk_monitor_get_scale_factor)(monitor)));
    }
}

void SayLook(const Toolkit& toolkit) {
    GtkSettings* const settings = FROM(toolkit, gtk_settings_get_default)();
    const bool dark = NumberSetting(toolkit, settings, "gtk-application-prefer-dark-theme") != 0;
    Say("theme", TextSetting(toolkit, settings, "gtk-theme-name") + (dark ? " (dark)" : ""));
    Say("icons", TextSetting(toolkit, settings, "gtk-icon-theme-name"));
    Say("font", TextSetting(toolkit, settings, "gtk-font-name"));
    constexpr int kDpiUnit = 1024;
    const int resolution = NumberSetting(toolkit, settings, "gtk-xft-dpi");
    Say("resolution of text",
        resolution > 0 ? std::to_string(resolution / kDpiUnit) + " dpi" : "the display's");
}

}  // namespace

int ProbeDisplay() {
    const Toolkit toolkit;
    SayVersion(toolkit);
    fflush(stdout);  // the toolkit may never come back
    if (FROM(toolkit, gtk_init_check)(nullptr, nullptr) == FALSE) {
        return kNotDone;
    }
    SayDisplay(toolkit, FROM(toolkit, gdk_display_get_default)());
    SayLook(toolkit);
    return kDone;
}

}  // namespace admin
