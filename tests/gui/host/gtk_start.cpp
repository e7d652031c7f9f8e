#include "gtk_start.h"

#include <dlfcn.h>

#include "arguments.h"

namespace testhost {

bool StartGtk() {
    void* const library = dlopen("libgtk-3.so.0", RTLD_NOW | RTLD_LOCAL);
    void* const start = library != nullptr ? dlsym(library, "gtk_init_check") : nullptr;
    if (start == nullptr) {
        throw ProtocolError("no GTK");
    }
    return reinterpret_cast<int (*)(int*, char***)>(start)(nullptr, nullptr) != 0;
}

}  // namespace testhost
