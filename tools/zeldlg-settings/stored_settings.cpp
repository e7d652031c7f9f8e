#include "stored_settings.h"

#include <cstdio>

namespace admin {

using namespace zeldlg::registry;

const char* Describe(RegistryError error) {
    switch (error) {
        case kNotFound:
            return "there is no such key or value";
        case kAccessDenied:
            return "access denied";
        case kCorrupt:
            return "the file is corrupt: a section header has no line end";
        case kFileError:
            return "the file cannot be opened, read or written, or cannot hold the value";
        case kNotRegistry:
            return "the file does not begin with REGEDIT4";
        default:
            return "the operation failed";
    }
}

std::string AsWords(const RegistryValue& value) {
    switch (value.type) {
        case kTypeNumber:
            return "number " + std::to_string(value.number);
        case kTypeBinary: {
            std::string words = "binary ";
            for (const char byte : value.bytes) {
                char digits[3];
                snprintf(digits, sizeof digits, "%02x", static_cast<unsigned char>(byte));
                words += digits;
            }
            return words;
        }
        default:
            return "string " + value.bytes;
    }
}

std::span<const KnownSetting> KnownSettings() {
    using enum SettingType;
    static constexpr KnownSetting kSettings[] = {
        {L"", L"DialogProcess", Text, "auto"},
        {L"", L"LimitPinToAscii", Number, "1"},
        {L"", L"ShowEnrolmentHint", Number, "1"},
        {L"Locales", L"Path", Text, "none"},
        {L"Biometrics", L"Automatic retry timeout", Number, "0"},
        {L"CSP", L"Automatic default selection timeout", Number, "5"},
    };
    return kSettings;
}

std::span<const KnownSetting> PolicySettings() {
    using enum SettingType;
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
