// Loading of shared objects at run time. Nothing in the library calls it; kept, and tested.
#pragma once

#include <cstdint>

#include "platform/result.h"

namespace zeldlg::platform {

/// Loads a shared object, binding all its symbols at once. `handle` is written only on kSuccess.
/// @return kSuccess, kFailure, or kMissingArgument for a null name or output.
int32_t OpenSharedObject(const char* name, void** handle);

/// Gives back what OpenSharedObject opened; null is ignored.
void CloseSharedObject(void* handle);

/// @return The symbol's address; null when there is none or the name is null.
void* LookUpSymbol(void* handle, const char* name);

}  // namespace zeldlg::platform
