#include "platform/broken_down_time.h"

namespace zeldlg::platform {

int32_t BreakDownTime(time_t value, TimeZone zone, tm* out) {
    if (out == nullptr) {
        return kMissingArgument;
    }
    const tm* const shared = zone == TimeZone::Utc ? gmtime(&value) : localtime(&value);
    if (shared == nullptr) {
        return kFailure;
    }
    *out = *shared;
    return kSuccess;
}

}  // namespace zeldlg::platform
