#include "policy/pin_policy.h"

namespace zeldlg {

ToleranceLevel HistoryTolerance(const PinPolicy& policy) {
    const int threshold = policy.p3Threshold;
    const int tolerance = policy.p3LengthNormalize != 0 ? threshold * threshold : threshold;
    if (tolerance == 0 || tolerance > 12) {
        return ToleranceLevel::High;
    }
    return tolerance > 5 ? ToleranceLevel::Medium : ToleranceLevel::Low;
}

}  // namespace zeldlg
