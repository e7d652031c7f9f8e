#include "known_settings.h"

namespace demo {

std::span<const KnownSetting> KnownSettings() {
    static constexpr KnownSetting kSettings[] = {
        {L"", L"LimitPinToAscii", "1"},
        {L"", L"ShowEnrolmentHint", "1"},
        {L"Locales", L"Path", "none"},
        {L"Biometrics", L"Automatic retry timeout", "0"},
        {L"CSP", L"Automatic default selection timeout", "5"},
    };
    return kSettings;
}

std::span<const KnownSetting> PolicySettings() {
    static constexpr KnownSetting kSettings[] = {
        {L"", L"PoliciesEnabled", "255"}, {L"", L"P1Threshold", "0"},
        {L"", L"P1CaseSensitive", "0"},   {L"", L"P1FullPinCheck", "0"},
        {L"", L"P2NbClass", "0"},         {L"", L"P2PopMin", "0"},
        {L"", L"P2MinLen", "0"},          {L"", L"P2ClassMask", "255"},
        {L"", L"P3Threshold", "0"},       {L"", L"P3HistorySize", "0"},
        {L"", L"P3CaseInsensitive", "0"}, {L"", L"P3LengthNormalize", "0"},
        {L"", L"P3StrictOnly", "0"},      {L"", L"P4CharList", "empty"},
        {L"", L"P4IsWhiteList", "0"},
    };
    return kSettings;
}

}  // namespace demo
