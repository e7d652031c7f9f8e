// What is left to do when the process ends: the library itself stays mapped until then.
#include "registry/registry_store.h"

namespace {

// Runs after the exit handlers, the one that parks the GUI thread among them.
__attribute__((destructor)) void SaveSettings() { zeldlg::registry::RegFinalCleanUp(); }

}  // namespace
