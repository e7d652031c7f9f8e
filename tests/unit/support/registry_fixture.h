// A configuration store in a directory of the test's own: no file of the user or the system is
// read or written.
#pragma once

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "registry/registry_store.h"
#include "registry/registry_text.h"

namespace zeldlg::registry {

inline void PrintTo(const RegistryValue& value, std::ostream* out) {
    *out << "{type " << value.type << ", number " << value.number << ", bytes "
         << testing::PrintToString(value.bytes) << "}";
}

namespace test {

/// What every registry file begins with.
inline const std::string kStart = "REGEDIT4\r\n\r\n";

/// A directory that is removed with everything in it. Anyone may enter it.
class ScratchDirectory {
public:
    ScratchDirectory() {
        std::string pattern = std::filesystem::temp_directory_path() / "zeldlg-registry-XXXXXX";
        if (mkdtemp(pattern.data()) == nullptr || chmod(pattern.c_str(), 0755) != 0) {
            abort();
        }
        m_path = pattern;
    }
    ~ScratchDirectory() { Remove(); }
    ScratchDirectory(const ScratchDirectory&) = delete;
    ScratchDirectory& operator=(const ScratchDirectory&) = delete;

    void Remove() const {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }

    std::string operator/(const std::string& name) const { return m_path + "/" + name; }

private:
    std::string m_path;
};

inline std::string ReadFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// Makes the directory too.
inline void WriteFile(const std::string& path, std::string_view content) {
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::ofstream(path, std::ios::binary | std::ios::trunc) << content;
}

inline unsigned Mode(const std::string& path) {
    struct stat status = {};
    return stat(path.c_str(), &status) == 0 ? status.st_mode & 0777U : 0;
}

/// Runs `body` in a child process and returns what it returned (0 to 99), 100 when it raised an
/// exception, or -1 when it died.
inline int InChild(const std::function<int()>& body) {
    const pid_t child = fork();
    if (child == 0) {
        try {
            _exit(body());
        } catch (...) {
            _exit(100);
        }
    }
    int status = 0;
    if (waitpid(child, &status, 0) != child || !WIFEXITED(status)) {
        return -1;
    }
    return WEXITSTATUS(status);
}

/// Gives up the rights of root, to which no file mode applies. For use in a child process.
inline bool BecomeOrdinaryUser() {
    constexpr uid_t kNobody = 65534;
    return geteuid() != 0 ||
           (setresgid(kNobody, kNobody, kNobody) == 0 && setresuid(kNobody, kNobody, kNobody) == 0);
}

inline std::unique_ptr<RegistryText> MakeText(std::string_view content) {
    auto buffer = std::make_unique<char[]>(content.size() + 1);
    std::copy(content.begin(), content.end(), buffer.get());
    return std::make_unique<RegistryText>(std::move(buffer), content.size());
}

/// The text as it would be written to the file.
inline std::string WriteText(RegistryText& text) {
    std::string out;
    text.Write([&out](std::string_view line) {
        out.append(line).append("\r\n");
        return true;
    });
    return out;
}

/// A key handle that closes itself.
class Key {
public:
    Key(HKEY parent, const wchar_t* path, uint32_t access = kAccessDefault)
        : error(RegOpenKeyEx(parent, path, access, &handle)) {}
    ~Key() { Close(); }
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;

    RegistryError Close() {
        return handle == 0 ? kSuccess : RegCloseKey(std::exchange(handle, HKEY{0}));
    }

    HKEY handle = 0;
    RegistryError error;
};

inline RegistryError SetNumber(HKEY key, const wchar_t* name, uint32_t number) {
    return RegSetValueEx(key, name, kTypeNumber, &number, sizeof number);
}

inline RegistryError SetText(HKEY key, const wchar_t* name, const std::wstring& text) {
    return RegSetValueEx(key, name, kTypeString, text.c_str(),
                         static_cast<uint32_t>((text.size() + 1) * sizeof(wchar_t)));
}

inline RegistryError SetBytes(HKEY key, const wchar_t* name, std::string_view bytes) {
    return RegSetValueEx(key, name, kTypeBinary, bytes.data(), static_cast<uint32_t>(bytes.size()));
}

/// A number value, or nothing.
inline std::optional<uint32_t> Number(HKEY key, const wchar_t* name) {
    uint32_t number = 0;
    uint32_t type = 0;
    uint32_t size = sizeof number;
    if (RegQueryValueEx(key, name, &type, &number, &size) != kSuccess || type != kTypeNumber) {
        return std::nullopt;
    }
    return number;
}

/// A string value, or nothing.
inline std::optional<std::wstring> Text(HKEY key, const wchar_t* name) {
    uint32_t type = 0;
    uint32_t size = 0;
    if (RegQueryValueEx(key, name, &type, nullptr, &size) != kSuccess || type != kTypeString) {
        return std::nullopt;
    }
    std::wstring text(size / sizeof(wchar_t), L'\0');
    if (RegQueryValueEx(key, name, &type, text.data(), &size) != kSuccess) {
        return std::nullopt;
    }
    text.pop_back();
    return text;
}

/// Places under a scratch directory: ZEL_HOME and USER are set, no file exists.
class RegistryTest : public ::testing::Test {
protected:
    void SetUp() override {
        std::filesystem::create_directories(scratch / "home");
        environment = {{"ZEL_HOME", scratch / "home"}, {"USER", "tester"}};
        UsePlaces();
    }

    void TearDown() override {
        RegFlush();
        SetRegistryPlaces({});
    }

    void UsePlaces() { SetRegistryPlaces(Places()); }

    RegistryPlaces Places() {
        return {scratch / "shipped", scratch / "etc", scratch / "tmp",
                [this](const char* name) -> std::optional<std::string> {
                    onLookUp(name);
                    const auto found = environment.find(name);
                    if (found == environment.end()) {
                        return std::nullopt;
                    }
                    return found->second;
                }};
    }

    std::string UserDirectoryPath() const { return scratch / "home/.tessaly"; }
    std::string UserFile() const { return scratch / "home/.tessaly/registry"; }
    std::string ShippedFile() const { return scratch / "shipped/registry"; }
    std::string SystemFile() const { return scratch / "etc/registry"; }
    std::string UserTemporaryFile() const { return scratch / "tmptmpregistry-tester/registry"; }
    std::string SharedTemporaryFile() const { return scratch / "tmptmpregistry-nobody/registry"; }

    ScratchDirectory scratch;
    std::map<std::string, std::string> environment;
    /// Called at each environment look-up, that is from within operations.
    std::function<void(std::string_view name)> onLookUp = [](std::string_view) {};
};

/// A small registry with one key under HKEY_LOCAL_MACHINE, "Key", holding one number, "Number".
inline std::string SmallRegistry(std::string_view digits, std::string_view more = {}) {
    return std::string(kStart + "[HKEY_LOCAL_MACHINE\\Key]\r\n\"Number\"=dword:")
        .append(digits)
        .append("\r\n")
        .append(more)
        .append("\r\n");
}

}  // namespace test
}  // namespace zeldlg::registry
