/* A library that calls while it is being loaded, and finalises. ZELDLG_LIBRARY names the one that
 * it calls. */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <stdlib.h>
#include <zeldlg/zeldlg.h>

__attribute__((visibility("default"))) uint32_t ZeldlgSeenInConstructor;

__attribute__((constructor)) static void Call(void) {
    void* const library = dlopen(getenv("ZELDLG_LIBRARY"), RTLD_NOW | RTLD_LOCAL);
    const DLG_FunctionList* (*getFunctionList)(void) = NULL;
    wchar_t buffer[64];
    uint32_t size = 64;
    *(void**)&getFunctionList = dlsym(library, "DLG_GetFunctionList");
    ZeldlgSeenInConstructor = getFunctionList()->GetLocale(buffer, &size);
    getFunctionList()->Finalize();
}
