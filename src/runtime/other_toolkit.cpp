#include "runtime/other_toolkit.h"

#include <link.h>

#include <string_view>

namespace zeldlg {

namespace {

constexpr std::string_view kOtherGtk[] = {"libgtk-4.so", "libgtk-x11-2.0.so"};
constexpr std::string_view kWxWidgets = "libwx_gtk";

std::string_view FileName(std::string_view path) { return path.substr(path.rfind('/') + 1); }

/// A piece of a file as the loader has put it into memory.
template <typename Type>
const Type* At(const dl_phdr_info& object, const ElfW(Phdr) & segment) {
    return reinterpret_cast<const Type*>(object.dlpi_addr + segment.p_vaddr);
}

bool Holds(const dl_phdr_info& object, const void* address) {
    for (int place = 0; place < object.dlpi_phnum; ++place) {
        const ElfW(Phdr)& segment = object.dlpi_phdr[place];
        const auto* const begin = At<char>(object, segment);
        if (segment.p_type == PT_LOAD && address >= begin && address < begin + segment.p_memsz) {
            return true;
        }
    }
    return false;
}

/// Whether one of the libraries that the file is linked with has a name that begins so.
bool IsLinkedWith(const ElfW(Dyn) * dynamic, std::string_view name) {
    const char* names = nullptr;
    for (const auto* entry = dynamic; entry->d_tag != DT_NULL; ++entry) {
        if (entry->d_tag == DT_STRTAB) {
            names = reinterpret_cast<const char*>(entry->d_un.d_ptr);
        }
    }
    for (const auto* entry = dynamic; entry->d_tag != DT_NULL; ++entry) {
        if (entry->d_tag == DT_NEEDED &&
            std::string_view(names + entry->d_un.d_val).starts_with(name)) {
            return true;
        }
    }
    return false;
}

bool IsOtherToolkit(const dl_phdr_info& object) {
    const std::string_view file = FileName(object.dlpi_name);
    for (const std::string_view gtk : kOtherGtk) {
        if (file.starts_with(gtk)) {
            return true;
        }
    }
    if (file.starts_with(kWxWidgets) || Holds(object, reinterpret_cast<void*>(HasOtherToolkit))) {
        return false;
    }
    for (int place = 0; place < object.dlpi_phnum; ++place) {
        const ElfW(Phdr)& segment = object.dlpi_phdr[place];
        if (segment.p_type == PT_DYNAMIC &&
            IsLinkedWith(At<ElfW(Dyn)>(object, segment), kWxWidgets)) {
            return true;
        }
    }
    return false;
}

}  // namespace

bool HasOtherToolkit() {
    return dl_iterate_phdr(
               [](dl_phdr_info* object, size_t, void*) { return IsOtherToolkit(*object) ? 1 : 0; },
               nullptr) != 0;
}

}  // namespace zeldlg
