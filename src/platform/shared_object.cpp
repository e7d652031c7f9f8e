#include "platform/shared_object.h"

#include <dlfcn.h>

namespace zeldlg::platform {

namespace {

// The loader keeps its last error text: a host that asks for it later must not find ours.
void ClearLoaderError() { static_cast<void>(dlerror()); }

}  // namespace

int32_t OpenSharedObject(const char* name, void** handle) {
    if (name == nullptr || handle == nullptr) {
        return kMissingArgument;
    }
    void* const opened = dlopen(name, RTLD_NOW);
    if (opened == nullptr) {
        ClearLoaderError();
        return kFailure;
    }
    *handle = opened;
    return kSuccess;
}

void CloseSharedObject(void* handle) {
    if (handle != nullptr) {
        dlclose(handle);
    }
}

void* LookUpSymbol(void* handle, const char* name) {
    if (name == nullptr) {
        return nullptr;
    }
    void* const symbol = dlsym(handle, name);
    if (symbol == nullptr) {
        ClearLoaderError();
    }
    return symbol;
}

}  // namespace zeldlg::platform
