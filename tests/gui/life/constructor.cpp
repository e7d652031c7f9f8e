/// A library that calls as soon as it is loaded. ZELDLG_LIBRARY names the one that it calls.

#include <dlfcn.h>
#include <zeldlg/zeldlg.h>

#include <array>
#include <cstdlib>

namespace {

__attribute__((constructor)) void Call() {
    void* const library = dlopen(getenv("ZELDLG_LIBRARY"), RTLD_NOW | RTLD_LOCAL);
    auto* const getLocale =
        reinterpret_cast<decltype(&DLG_GetLocale)>(dlsym(library, "DLG_GetLocale"));
    std::array<wchar_t, 64> buffer{};
    auto size = static_cast<uint32_t>(buffer.size());
    static_cast<void>(getLocale(buffer.data(), &size));
}

}  // namespace
