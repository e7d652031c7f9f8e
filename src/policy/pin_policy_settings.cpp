#include "policy/pin_policy_settings.h"

#include <optional>

#include "registry/settings.h"

namespace zeldlg {

namespace {

constexpr const wchar_t* kPoliciesKey = L"SOFTWARE\\Corvenna\\Tessaly\\2.0\\Policies";

using PolicyByte = uint8_t PinPolicy::*;

struct NumberValue {
    const wchar_t* name;
    PolicyByte field;
    // Taken when the value is missing; without it the field stays as it is.
    std::optional<uint8_t> whenMissing = std::nullopt;
};

constexpr NumberValue kNumberValues[] = {
    {L"PoliciesEnabled", &PinPolicy::enabledMask, 0xFF},
    {L"P1Threshold", &PinPolicy::p1Threshold},
    {L"P1CaseSensitive", &PinPolicy::p1CaseSensitive},
    {L"P1FullPinCheck", &PinPolicy::p1FullPinCheck},
    {L"P2NbClass", &PinPolicy::p2NbClass},
    {L"P2PopMin", &PinPolicy::p2PopMin},
    {L"P2MinLen", &PinPolicy::p2MinLen},
    {L"P2ClassMask", &PinPolicy::p2ClassMask, 0xFF},
    {L"P3Threshold", &PinPolicy::p3Threshold},
    {L"P3HistorySize", &PinPolicy::p3HistorySize},
    {L"P3CaseInsensitive", &PinPolicy::p3CaseInsensitive},
    {L"P3LengthNormalize", &PinPolicy::p3LengthNormalize},
    {L"P3StrictOnly", &PinPolicy::p3StrictOnly},
};

constexpr NumberValue kIsWhiteList = {L"P4IsWhiteList", &PinPolicy::p4IsWhiteList};

void ReadNumber(PinPolicy& policy, const registry::SettingsKey& key, const NumberValue& value) {
    if (const std::optional<uint32_t> number = key.ReadDword(value.name)) {
        policy.*value.field = static_cast<uint8_t>(*number & 0xFF);
    } else if (value.whenMissing) {
        policy.*value.field = *value.whenMissing;
    }
}

}  // namespace

void LoadPinPolicyFromRegistry(PinPolicy& policy, const std::wstring& subKey) {
    policy.source = PolicySource::Registry;
    const registry::SettingsKey policies(kPoliciesKey);
    const registry::SettingsKey set(policies, subKey.c_str());
    if (!set.IsOpen()) {
        return;
    }
    for (const NumberValue& value : kNumberValues) {
        ReadNumber(policy, set, value);
    }
    policy.p4CharList = set.ReadBytes(L"P4CharList", kMaxCharList).value_or("");
    ReadNumber(policy, set, kIsWhiteList);
}

}  // namespace zeldlg
