#include "registry/settings.h"

#include <utility>

#include "registry/registry_encoding.h"

namespace zeldlg::registry {
namespace {

HKEY OpenKey(HKEY parent, const wchar_t* path) {
    HKEY key = 0;
    return RegOpenKeyEx(parent, path, kAccessDefault, &key) == kSuccess ? key : 0;
}

std::optional<RegistryValue> ReadStored(HKEY key, const wchar_t* name) {
    RegistryValue value;
    if (QueryStoredValue(key, name, value) != kSuccess) {
        return std::nullopt;
    }
    return value;
}

}  // namespace

SettingsKey::SettingsKey(const wchar_t* path) : m_key(OpenKey(HKEY_LOCAL_MACHINE, path)) {}

SettingsKey::SettingsKey(const SettingsKey& parent, const wchar_t* path)
    : m_key(OpenKey(parent.m_key, path)) {}

SettingsKey::~SettingsKey() {
    if (IsOpen()) {
        RegCloseKey(m_key);
    }
}

std::optional<uint32_t> SettingsKey::ReadDword(const wchar_t* value) const {
    const std::optional<RegistryValue> stored = ReadStored(m_key, value);
    if (!stored || stored->type != kTypeNumber) {
        return std::nullopt;
    }
    return stored->number;
}

std::optional<std::wstring> SettingsKey::ReadString(const wchar_t* value) const {
    const std::optional<RegistryValue> stored = ReadStored(m_key, value);
    if (!stored || stored->type != kTypeString) {
        return std::nullopt;
    }
    const std::wstring text = ToWide(stored->bytes);
    return text.substr(0, text.find(L'\0'));
}

std::optional<std::string> SettingsKey::ReadBytes(const wchar_t* value, size_t maxBytes) const {
    std::optional<RegistryValue> stored = ReadStored(m_key, value);
    if (!stored || stored->type == kTypeNumber || stored->bytes.size() > maxBytes) {
        return std::nullopt;
    }
    return std::move(stored->bytes);
}

bool SettingsKey::WriteDword(const wchar_t* value, uint32_t number) const {
    return RegSetValueEx(m_key, value, kTypeNumber, &number, sizeof number) == kSuccess;
}

std::optional<uint32_t> ReadDword(const wchar_t* key, const wchar_t* value) {
    return SettingsKey(key).ReadDword(value);
}

uint32_t ReadDword(const wchar_t* key, const wchar_t* value, uint32_t fallback) {
    return ReadDword(key, value).value_or(fallback);
}

std::optional<std::wstring> ReadString(const wchar_t* key, const wchar_t* value) {
    return SettingsKey(key).ReadString(value);
}

bool WriteDword(const wchar_t* key, const wchar_t* value, uint32_t number) {
    return SettingsKey(key).WriteDword(value, number);
}

}  // namespace zeldlg::registry
