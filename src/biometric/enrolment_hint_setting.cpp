#include "biometric/enrolment_hint_setting.h"

#include "registry/settings.h"

namespace zeldlg {

namespace {

constexpr const wchar_t* kValue = L"ShowEnrolmentHint";

}  // namespace

bool IsEnrolmentHintWanted() { return registry::ReadDword(registry::kSettingsKey, kValue, 1) != 0; }

void StoreEnrolmentHintWanted(bool wanted) {
    static_cast<void>(registry::WriteDword(registry::kSettingsKey, kValue, wanted ? 1 : 0));
}

}  // namespace zeldlg
