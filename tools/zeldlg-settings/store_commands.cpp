// The commands list, get and set: what the dialogs read, seen and changed through the library's own
// store.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cwchar>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "command.h"
#include "platform/utf8.h"
#include "registry/registry_encoding.h"
#include "registry/registry_store.h"
#include "registry/settings.h"
#include "stored_settings.h"

namespace admin {

namespace {

using namespace zeldlg::registry;
using zeldlg::platform::DecodeUtf8;

const std::wstring kGeneralKey = kSettingsKey;

void ExpectWords(const Words& words, size_t count) {
    if (words.size() != count) {
        Refuse(std::to_string(count) + " words expected (see --help)");
    }
}

ExitCode Fail(RegistryError error) {
    fprintf(stderr, "zeldlg-settings: error %u: %s\n", error, Describe(error));
    return kNotDone;
}

// An open key, closed with the object.
class Key {
public:
    Key() = default;
    ~Key() { Close(); }
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;

    // `path` may begin with the name of a root; without one it is below HKEY_LOCAL_MACHINE.
    RegistryError Open(const std::wstring& path) {
        const auto [root, rest] = SplitRoot(path);
        return RegOpenKeyEx(root, rest.c_str(), kAccessDefault, &m_key);
    }

    RegistryError Create(const std::wstring& path) {
        const auto [root, rest] = SplitRoot(path);
        return RegCreateKeyEx(root, rest.c_str(), 0, &m_key, nullptr);
    }

    RegistryError Close() { return m_key == 0 ? kSuccess : RegCloseKey(std::exchange(m_key, 0)); }

    HKEY Handle() const { return m_key; }

private:
    struct Root {
        const wchar_t* name;
        HKEY key;
    };

    static std::pair<HKEY, std::wstring> SplitRoot(const std::wstring& path) {
        static constexpr Root kRoots[] = {{L"HKEY_CLASSES_ROOT", HKEY_CLASSES_ROOT},
                                          {L"HKEY_CURRENT_USER", HKEY_CURRENT_USER},
                                          {L"HKEY_LOCAL_MACHINE", HKEY_LOCAL_MACHINE}};
        const std::wstring first = path.substr(0, path.find(L'\\'));
        for (const Root& root : kRoots) {
            if (wcscasecmp(first.c_str(), root.name) == 0) {
                return {root.key, path.substr(std::min(first.size() + 1, path.size()))};
            }
        }
        return {HKEY_LOCAL_MACHINE, path};
    }

    HKEY m_key = 0;
};

// A value as "TYPE DATA", as the set command takes it; nothing when it is missing.
std::optional<std::string> ReadAsWords(HKEY key, const wchar_t* name, RegistryError& error) {
    RegistryValue value;
    error = QueryStoredValue(key, name, value);
    if (error != kSuccess) {
        return {};
    }
    return AsWords(value);
}

void PrintSettings(const std::wstring& base, std::span<const KnownSetting> settings) {
    for (const KnownSetting& setting : settings) {
        const std::wstring path = *setting.key == L'\0' ? base : base + L"\\" + setting.key;
        Key key;
        RegistryError error = key.Open(path);
        std::optional<std::string> words;
        if (error == kSuccess) {
            words = ReadAsWords(key.Handle(), setting.value, error);
        }
        printf(
            "%s  %s  %s\n", ToNarrow(path).c_str(), ToNarrow(setting.value).c_str(),
            words ? words->c_str() : (std::string("not set (") + setting.fallback + ")").c_str());
    }
}

std::vector<std::wstring> SubKeys(const std::wstring& path) {
    std::vector<std::wstring> names;
    Key key;
    if (key.Open(path) == kSuccess) {
        wchar_t name[261];
        for (uint32_t size = std::size(name);
             RegEnumKey(key.Handle(), static_cast<uint32_t>(names.size()), name, &size) == kSuccess;
             size = std::size(name)) {
            names.emplace_back(name, size);
        }
    }
    return names;
}

ExitCode List(const Words& words) {
    ExpectWords(words, 0);
    Key general;
    const RegistryError error = general.Open(kGeneralKey);
    if (error != kSuccess && error != kNotFound) {
        return Fail(error);
    }
    PrintSettings(kGeneralKey, KnownSettings());
    for (const std::wstring& name : SubKeys(kGeneralKey + L"\\Policies")) {
        PrintSettings((kGeneralKey + L"\\Policies\\").append(name), PolicySettings());
    }
    return kDone;
}

ExitCode Get(const Words& words) {
    ExpectWords(words, 2);
    Key key;
    RegistryError error = key.Open(DecodeUtf8(words[0].c_str()));
    std::optional<std::string> value;
    if (error == kSuccess) {
        value = ReadAsWords(key.Handle(), DecodeUtf8(words[1].c_str()).c_str(), error);
    }
    if (!value) {
        return Fail(error);
    }
    puts(value->c_str());
    return kDone;
}

std::optional<std::string> ParseBinary(std::string_view digits) {
    std::string bytes;
    if (digits.size() % 2 != 0 ||
        digits.find_first_not_of("0123456789abcdefABCDEF") != std::string_view::npos) {
        return {};
    }
    for (; !digits.empty(); digits.remove_prefix(2)) {
        bytes += static_cast<char>(strtoul(std::string(digits.substr(0, 2)).c_str(), nullptr, 16));
    }
    return bytes;
}

ExitCode Store(const Words& words, uint32_t type, const void* data, size_t size) {
    Key key;
    RegistryError error = key.Create(DecodeUtf8(words[0].c_str()));
    if (error == kSuccess) {
        error = RegSetValueEx(key.Handle(), DecodeUtf8(words[1].c_str()).c_str(), type, data,
                              static_cast<uint32_t>(size));
    }
    const RegistryError written = key.Close();
    error = error != kSuccess ? error : written;
    return error == kSuccess ? kDone : Fail(error);
}

ExitCode Set(const Words& words) {
    ExpectWords(words, 4);
    const std::string& type = words[2];
    const std::string& data = words[3];
    if (type == "number") {
        const uint32_t number = ParseNumber("number", data);
        return Store(words, kTypeNumber, &number, sizeof number);
    }
    if (type == "string") {
        const std::wstring text = DecodeUtf8(data.c_str());
        return Store(words, kTypeString, text.c_str(), (text.size() + 1) * sizeof(wchar_t));
    }
    const std::optional<std::string> bytes = ParseBinary(data);
    if (type != "binary" || !bytes) {
        Refuse("TYPE is number, string, or binary with hexadecimal digits");
    }
    return Store(words, kTypeBinary, bytes->data(), bytes->size());
}

#define KEY_HELP                                                                      \
    "  KEY    path of a key, for example 'SOFTWARE\\Corvenna\\Tessaly\\2.0'; below\n" \
    "         HKEY_LOCAL_MACHINE unless it begins with another root\n"                \
    "  VALUE  name of a value; '@' for the key's default value\n"

}  // namespace

std::span<const Command> StoreCommands() {
    static const Command kCommands[] = {
        {.name = "list",
         .synopsis = "list",
         .summary = "Print every setting that the library reads",
         .help = "",
         .run = List},
        {.name = "get",
         .synopsis = "get KEY VALUE",
         .summary = "Print one value, as TYPE DATA",
         .help = KEY_HELP,
         .run = Get},
        {.name = "set",
         .synopsis = "set KEY VALUE TYPE DATA",
         .summary = "Set a value, creating its key",
         .help = KEY_HELP
         "  TYPE   number (decimal or 0x...), string, or binary (hexadecimal digits)\n",
         .run = Set},
    };
    return kCommands;
}

}  // namespace admin
