// Registry files of any size, to be measured.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <optional>
#include <stdexcept>
#include <string>

#include "registry/registry_store.h"

namespace bench {

inline constexpr const char* kParentKey =
    "HKEY_LOCAL_MACHINE\\SOFTWARE\\Corvenna\\Tessaly\\2.0\\Section";
inline constexpr const wchar_t* kParentPath = L"SOFTWARE\\Corvenna\\Tessaly\\2.0\\Section";

// A directory with one registry of so many keys, each of two values, in the store's format and in
// GLib's. The store finds its own through ZEL_HOME.
class Files {
public:
    explicit Files(int64_t keys) : m_keys(keys) {
        std::string pattern =
            (std::filesystem::temp_directory_path() / "zeldlg-bench-XXXXXX").string();
        if (mkdtemp(pattern.data()) == nullptr) {
            throw std::runtime_error("no temporary directory");
        }
        m_directory = pattern;
        std::filesystem::create_directory(m_directory / ".tessaly");
        std::ofstream registry(Registry(), std::ios::binary);
        std::ofstream keyFile(KeyFile(), std::ios::binary);
        registry << "REGEDIT4\r\n\r\n";
        for (int64_t i = 0; i < keys; ++i) {
            registry << '[' << kParentKey << i << "]\r\n\"Number\"=dword:0000002a\r\n"
                     << "\"Text\"=\"some text\"\r\n\r\n";
            keyFile << '[' << kParentKey << i << "]\nNumber=42\nText=some text\n\n";
        }
        zeldlg::registry::RegistryPlaces places;
        // Nothing else of this machine is looked at.
        places.shippedDirectory = (m_directory / "shipped").string();
        places.systemDirectory = (m_directory / "system").string();
        places.environment = [home = m_directory.string()](const char* name) {
            return strcmp(name, "ZEL_HOME") == 0 ? std::optional(home) : std::nullopt;
        };
        zeldlg::registry::SetRegistryPlaces(places);
    }
    ~Files() { std::filesystem::remove_all(m_directory); }
    Files(const Files&) = delete;
    Files& operator=(const Files&) = delete;

    std::string Registry() const { return (m_directory / ".tessaly" / "registry").string(); }
    std::string KeyFile() const { return (m_directory / "keyfile").string(); }
    // The last key of the file: nothing is found early.
    std::wstring LastPath() const { return Path(m_keys - 1); }
    static std::wstring Path(int64_t key) { return kParentPath + std::to_wstring(key); }
    std::string LastGroup() const { return kParentKey + std::to_string(m_keys - 1); }

private:
    int64_t m_keys;
    std::filesystem::path m_directory;
};

}  // namespace bench
