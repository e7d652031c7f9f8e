// Settings of the library in the configuration store, one call each.
// A missing key, a missing value and a value of another type are all the same: not set.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "registry/registry_store.h"

namespace zeldlg::registry {

/// The key of the library's general settings.
inline constexpr const wchar_t* kSettingsKey = L"SOFTWARE\\Corvenna\\Tessaly\\2.0";

/// The keys that may name the folder of catalogues, in their value "Path": the first that there is
/// counts.
inline constexpr const wchar_t* kLocalesKeys[] = {L"SOFTWARE\\Corvenna\\Tessaly\\2.0\\Locales",
                                                  L"SOFTWARE\\Corvenna\\Tessaly\\1.0.9\\Locales"};

/// A key under HKEY_LOCAL_MACHINE that several settings are read from. Reading them through one
/// object reads the file once and gives values that belong together. For any thread, one at a
/// time.
class SettingsKey {
public:
    SettingsKey() = default;
    /// @param path the key's path under HKEY_LOCAL_MACHINE
    explicit SettingsKey(const wchar_t* path);
    /// @param path the key's path under `parent`
    SettingsKey(const SettingsKey& parent, const wchar_t* path);
    ~SettingsKey();
    SettingsKey(const SettingsKey&) = delete;
    SettingsKey& operator=(const SettingsKey&) = delete;

    /// False when there is no such key; every value is missing then.
    bool IsOpen() const { return m_key != 0; }

    std::optional<uint32_t> ReadDword(const wchar_t* value) const;

    /// A text, up to its first zero character.
    std::optional<std::wstring> ReadString(const wchar_t* value) const;

    /// A binary value byte for byte, or the 8-bit text of a string without a terminating zero.
    /// @param maxBytes a longer value counts as missing
    std::optional<std::string> ReadBytes(const wchar_t* value, size_t maxBytes) const;

    /// Sets a number; written to the file when the last key of the process is closed.
    bool WriteDword(const wchar_t* value, uint32_t number) const;

private:
    HKEY m_key = 0;
};

/// @param key path under HKEY_LOCAL_MACHINE
std::optional<uint32_t> ReadDword(const wchar_t* key, const wchar_t* value);
uint32_t ReadDword(const wchar_t* key, const wchar_t* value, uint32_t fallback);
std::optional<std::wstring> ReadString(const wchar_t* key, const wchar_t* value);

/// Writes a number under an existing key. @return false when the key is missing or the number
/// cannot be set
bool WriteDword(const wchar_t* key, const wchar_t* value, uint32_t number);

}  // namespace zeldlg::registry
