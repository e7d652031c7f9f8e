// The doctor on what the settings file says.
#include <algorithm>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "doctor.h"
#include "policy/pin_policy_settings.h"
#include "registry/registry_encoding.h"
#include "registry/settings.h"
#include "stored_settings.h"

namespace admin {

using namespace zeldlg::registry;

namespace {

const std::string kGeneralKey = "HKEY_LOCAL_MACHINE\\" + ToNarrow(kSettingsKey);
const std::string kPolicies = kGeneralKey + "\\Policies";

bool FitsType(const RegistryValue& value, SettingType type) {
    switch (type) {
        case SettingType::Number:
            return value.type == kTypeNumber;
        case SettingType::Text:
            return value.type == kTypeString;
        case SettingType::TextOrBytes:
            break;
    }
    return value.type != kTypeNumber;
}

const char* NameOf(SettingType type) {
    switch (type) {
        case SettingType::Number:
            return "number";
        case SettingType::Text:
            return "string";
        case SettingType::TextOrBytes:
            break;
    }
    return "string or binary";
}

// The key's path as the file has it, from below the general key on.
std::string ShortName(std::string_view key) {
    return key.size() > kGeneralKey.size() ? std::string(key.substr(kGeneralKey.size() + 1)) : "";
}

void ReportValue(Report& report, RegistryText& text, KeyNode& key, const KnownSetting& setting) {
    const std::string name = ToNarrow(setting.value);
    const std::string where = ShortName(key.name);
    const std::optional<RegistryValue> value = text.Value(key, name);
    if (!value) {
        return;
    }
    report.Line(where.empty() ? "general" : where, name + " = " + AsWords(*value));
    if (!FitsType(*value, setting.type)) {
        report.Problem(name + " has the wrong type and counts as missing.",
                       std::string("It has to be a ") + NameOf(setting.type) + "; its default is " +
                           setting.fallback + ".");
    } else if (setting.type == SettingType::TextOrBytes &&
               value->bytes.size() > zeldlg::kMaxCharList) {
        report.Problem(name + " is too long and counts as missing.",
                       "It may have " + std::to_string(zeldlg::kMaxCharList) + " bytes.");
    }
}

void ReportKnown(Report& report, RegistryText& text) {
    for (const KnownSetting& setting : KnownSettings()) {
        const std::string below = ToNarrow(setting.key);
        const std::string path = below.empty() ? kGeneralKey : kGeneralKey + "\\" + below;
        if (KeyNode* const key = text.Find(FoldedName(path))) {
            ReportValue(report, text, *key, setting);
        }
    }
    KeyNode* const policies = text.Find(FoldedName(kPolicies));
    if (policies == nullptr) {
        return;
    }
    for (KeyNode* const policy : text.Children(*policies)) {
        for (const KnownSetting& setting : PolicySettings()) {
            ReportValue(report, text, *policy, setting);
        }
    }
}

bool IsNamed(const KnownSetting& setting, std::string_view name) {
    return FoldedName(ToNarrow(setting.value)).Matches(name);
}

bool IsKnown(std::string_view key, std::string_view name) {
    if (FoldedName("RegistryHash").Matches(name)) {
        return true;
    }
    if (FoldedName(kPolicies).IsAncestorOf(key)) {
        return std::ranges::any_of(PolicySettings(), [name](const KnownSetting& setting) {
            return IsNamed(setting, name);
        });
    }
    return std::ranges::any_of(KnownSettings(), [key, name](const KnownSetting& setting) {
        return FoldedName(ToNarrow(setting.key)).Matches(ShortName(key)) && IsNamed(setting, name);
    });
}

// The name that a line which cannot be taken apart begins with, without what may be its value.
std::string BeginningOf(std::string_view line) {
    return std::string(line.substr(0, std::min(line.find('='), size_t{60})));
}

void JudgeLine(Report& report, const std::string& key, std::string_view line) {
    if (line.find_first_not_of(" \t") == std::string_view::npos || line.starts_with(';')) {
        return;
    }
    const std::optional<ValueLine> value = ParseValueLine(line);
    const std::string where = ShortName(key).empty() ? "" : " in " + ShortName(key);
    if (!value) {
        report.Problem(
            "A line cannot be understood and does not count: " + BeginningOf(line) + where,
            R"(Values are "NAME"="TEXT", "NAME"=dword:HEX or "NAME"=hex:HEX,HEX.)");
    } else if (!IsKnown(key, value->name)) {
        const std::string name = value->name.empty() ? "@" : std::string(value->name);
        report.Line("not known", name + where + " (the dialogs do not read it)");
    }
}

void ReportUnknown(Report& report, RegistryText& text) {
    const FoldedName general(kGeneralKey);
    std::string key;
    text.Write([&](std::string_view line) {
        if (line.starts_with('[')) {
            key = line.substr(1, line.rfind(']') - 1);
        } else if (general.Matches(key) || general.IsAncestorOf(key)) {
            JudgeLine(report, key, line);
        }
        return true;
    });
}

}  // namespace

void ReportSettings(Report& report, const FoundSettings& settings) {
    report.Section("Settings");
    if (settings.text == nullptr) {
        report.Line("known", "none is set: all are at their defaults");
        return;
    }
    report.Line("read from", *settings.where.file);
    ReportKnown(report, *settings.text);
    ReportUnknown(report, *settings.text);
}

}  // namespace admin
