/* A library that dies when it is asked to start, for zeldlg-settings. */
#include <stdlib.h>
#include <zeldlg/zeldlg.h>

static uint32_t Die(wchar_t* name, uint32_t* size) {
    (void)name;
    (void)size;
    abort();
}

const DLG_FunctionList* DLG_GetFunctionList(void) {
    static const DLG_FunctionList kList = {.version = ZELDLG_FUNCTION_LIST_VERSION,
                                           .GetLocale = Die};
    return &kList;
}
