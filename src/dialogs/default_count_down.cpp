#include "dialogs/default_count_down.h"

#include "registry/settings.h"

namespace zeldlg {

namespace {

constexpr uint32_t kDefaultSeconds = 5;

}  // namespace

uint32_t GetDefaultSelectionTimeout() {
    static const uint32_t seconds =
        registry::ReadDword(L"SOFTWARE\\Corvenna\\Tessaly\\2.0\\CSP",
                            L"Automatic default selection timeout", kDefaultSeconds);
    return seconds;
}

}  // namespace zeldlg
