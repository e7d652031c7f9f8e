#include "known_settings.h"

namespace admin {

using enum SettingType;

std::span<const KnownSetting> KnownSettings() {
    static constexpr KnownSetting kSettings[] = {
        {L"", L"LimitPinToAscii", Number, "1"},
        {L"", L"ShowEnrolmentHint", Number, "1"},
        {L"Locales", L"Path", Text, "none"},
        {L"Biometrics", L"Automatic retry timeout", Number, "0"},
        {L"CSP", L"Automatic default selection timeout", Number, "5"},
    };
    return kSettings;
}

std::span<const KnownSetting> PolicySettings() {
    static constexpr KnownSetting kSettings[] = {
        {L"", L"PoliciesEnabled", Number, "255"}, {L"", L"P1Threshold", Number, "0"},
        {L"", L"P1CaseSensitive", Number, "0"},   {L"", L"P1FullPinCheck", Number, "0"},
        {L"", L"P2NbClass", Number, "0"},         {L"", L"P2PopMin", Number, "0"},
        {L"", L"P2MinLen", Number, "0"},          {L"", L"P2ClassMask", Number, "255"},
        {L"", L"P3Threshold", Number, "0"},       {L"", L"P3HistorySize", Number, "0"},
        {L"", L"P3CaseInsensitive", Number, "0"}, {L"", L"P3LengthNormalize", Number, "0"},
        {L"", L"P3StrictOnly", Number, "0"},      {L"", L"P4CharList", TextOrBytes, "empty"},
        {L"", L"P4IsWhiteList", Number, "0"},
    };
    return kSettings;
}

}  // namespace admin
