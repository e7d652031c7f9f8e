// Random sequences of store operations, played on the store and on the plain one side by side:
// results, values, and after each step the bytes of the user's file must be the same.
// The bytes: the operations, a byte 0xFF, the shipped file, a byte 0xFF, the user's file.
#include "registry/registry_store.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include "fuzz_target.h"
#include "plain/plain_store.h"
#include "plain/plain_text.h"
#include "scratch_places.h"

namespace zeldlg::fuzz {

namespace {

using namespace plain;  // NOLINT(google-build-using-namespace): written for this

using namespace registry;  // NOLINT(google-build-using-namespace): its names are what is tested

constexpr size_t kLongestText = 1024;
constexpr int kMaxOperations = 60;

constexpr struct {
    HKEY handle;
    const char* name;
} kRoots[] = {{HKEY_LOCAL_MACHINE, "HKEY_LOCAL_MACHINE"},
              {HKEY_CURRENT_USER, "HKEY_CURRENT_USER"},
              {HKEY_CLASSES_ROOT, "HKEY_CLASSES_ROOT"}};

const char* const kPaths[] = {
    "Key",  "key\\sub", "Key\\Sub\\Deep", "\\Other\\", "", "\\", "\xC3\x84rger\\\xE2\x82\xAC",
    "a\nb", "KEY\\SUB", "k\\l\\m\\n"};
const char* const kValueNames[] = {"Number",   "text",    "",     "@",
                                   "\xC3\xA4", "x\"=\"y", "TEXT", "n\nl"};

class Game {
public:
    Game(const ScratchPlaces& places, FuzzInput operations)
        : m_places(places), m_input(std::move(operations)) {}

    void Play(std::optional<std::string> shipped, std::optional<std::string> user) {
        PutFiles(std::move(shipped), std::move(user));
        for (int i = 0; i < kMaxOperations && !m_input.IsEmpty(); ++i) {
            Step();
            REQUIRE_EQ(m_places.User().value_or("(none)"), m_plain.user.value_or("(none)"));
        }
        for (size_t i = 0; i < m_keys.size(); ++i) {
            CloseAt(i);
        }
        REQUIRE_EQ(RegFlush(), m_plain.Flush());
        REQUIRE_EQ(m_places.User().value_or("(none)"), m_plain.user.value_or("(none)"));
    }

private:
    struct Chosen {
        HKEY handle;
        PlainStore::KeyRef plain;
    };

    void PutFiles(std::optional<std::string> shipped, std::optional<std::string> user) {
        m_places.PutShipped(shipped);
        m_places.PutUser(user);
        m_plain.shipped = std::move(shipped);
        m_plain.user = std::move(user);
    }

    Chosen ChooseKey() {
        const unsigned which = m_input.Below(16);
        if (which >= 3 && !m_keys.empty()) {
            const int index = static_cast<int>(which % m_keys.size());
            return {m_keys[static_cast<size_t>(index)], {"", index}};
        }
        return {kRoots[which % 3].handle, {kRoots[which % 3].name, 0}};
    }

    std::string ChoosePath() {
        const unsigned which = m_input.Below(16);
        if (which < std::size(kPaths)) {
            return kPaths[which];
        }
        std::string path = m_input.Text(which == 15 ? 255 : 12);
        std::replace(path.begin(), path.end(), '\0', '0');
        return Utf8(path);
    }

    std::string ChooseName() {
        const unsigned which = m_input.Below(12);
        if (which < std::size(kValueNames)) {
            return kValueNames[which];
        }
        std::string name = m_input.Text(12);
        std::replace(name.begin(), name.end(), '\0', '0');
        return Utf8(name);
    }

    static std::string Utf8(std::string_view bytes) { return PlainEncode(PlainDecode(bytes, 0)); }
    static std::wstring Wide(std::string_view bytes) { return AsWide(PlainDecode(bytes, 0)); }

    void Step() {
        switch (m_input.Below(14)) {
            case 0:
                return Open();
            case 1:
            case 2:
                return Create();
            case 3:
            case 4:
                return Close();
            case 5:
                return Query();
            case 6:
            case 7:
            case 8:
                return Set();
            case 9:
                return Enumerate();
            case 10:
                return Delete();
            case 11:
                return DeleteValue();
            case 12:
                REQUIRE_EQ(RegFlush(), m_plain.Flush());
                return;
            default:
                return Interfere();
        }
    }

    void Open() {
        const Chosen from = ChooseKey();
        const std::string path = ChoosePath();
        const uint32_t access = m_input.Flag() ? kAccessDefault : m_input.Byte();
        HKEY key = 0;
        const RegistryError error = RegOpenKeyEx(from.handle, Wide(path).c_str(), access, &key);
        REQUIRE_EQ(error, m_plain.Open(from.plain, path, access, NextIndex()));
        Opened(error, key);
    }

    void Create() {
        const Chosen from = ChooseKey();
        const std::string path = ChoosePath();
        HKEY key = 0;
        uint32_t disposition = 0;
        bool created = false;
        const RegistryError error =
            RegCreateKeyEx(from.handle, Wide(path).c_str(), 0, &key, &disposition);
        REQUIRE_EQ(error, m_plain.Create(from.plain, path, NextIndex(), created));
        if (error == kSuccess) {
            REQUIRE_EQ(disposition, created ? kCreatedNewKey : kOpenedExistingKey);
        }
        Opened(error, key);
    }

    int NextIndex() const { return static_cast<int>(m_keys.size()); }

    void Opened(RegistryError error, HKEY key) {
        REQUIRE_EQ(error == kSuccess, key != 0);
        if (error == kSuccess) {
            REQUIRE(std::find(m_keys.begin(), m_keys.end(), key) == m_keys.end());
            m_keys.push_back(key);
        }
    }

    void Close() {
        if (m_keys.empty()) {
            REQUIRE_EQ(RegCloseKey(HKEY_LOCAL_MACHINE), kInvalidHandle);
            return;
        }
        CloseAt(m_input.Byte() % m_keys.size());
    }

    // Closed keys stay in the list: they are to be refused.
    void CloseAt(size_t index) {
        REQUIRE_EQ(RegCloseKey(m_keys[index]), m_plain.Close(static_cast<int>(index)));
    }

    void Query() {
        const Chosen key = ChooseKey();
        const std::string name = ChooseName();
        RegistryValue expected;
        const RegistryError error = m_plain.Query(key.plain, name, expected);
        uint32_t type = 0;
        uint32_t size = 0;
        const std::wstring wide = Wide(name);
        REQUIRE_EQ(RegQueryValueEx(key.handle, wide.c_str(), &type, nullptr, &size), error);
        if (error != kSuccess) {
            return;
        }
        const std::string bytes = AtInterface(expected);
        REQUIRE_EQ(type, expected.type);
        REQUIRE_EQ(static_cast<size_t>(size), bytes.size());
        // Of exactly the size: one byte more is seen by the address sanitizer.
        std::vector<char> data(bytes.size());
        REQUIRE_EQ(RegQueryValueEx(key.handle, wide.c_str(), &type, data.data(), &size),
                   data.empty() ? error : kSuccess);
        REQUIRE_EQ(std::string(data.begin(), data.end()), bytes);
        if (!bytes.empty()) {
            size = static_cast<uint32_t>(bytes.size() - 1);
            REQUIRE_EQ(RegQueryValueEx(key.handle, wide.c_str(), &type, data.data(), &size),
                       kNoMemory);
            REQUIRE_EQ(static_cast<size_t>(size), bytes.size());
        }
    }

    static std::string AtInterface(const RegistryValue& value) {
        std::string bytes = value.bytes;
        if (value.type == kTypeNumber) {
            bytes.assign(reinterpret_cast<const char*>(&value.number), sizeof value.number);
        } else if (value.type == kTypeString) {
            const std::wstring text = Wide(value.bytes);
            bytes.assign(reinterpret_cast<const char*>(text.c_str()),
                         (text.size() + 1) * sizeof(wchar_t));
        }
        return bytes;
    }

    void Set() {
        const Chosen key = ChooseKey();
        const std::string name = ChooseName();
        const unsigned kind = m_input.Below(5);
        RegistryValue value;
        std::string bytes;
        bool isValue = true;
        if (kind == 0) {
            value = {kTypeNumber, m_input.Word(), {}};
            bytes = AtInterface(value);
        } else if (kind == 1) {
            value = {kTypeBinary, 0, m_input.Text(40)};
            bytes = value.bytes;
        } else if (kind == 2) {
            // Longer than a line of the file now and then.
            value = {kTypeString, 0, std::string(m_input.Byte() * 70U, 'l')};
            bytes = AtInterface(value);
        } else if (kind == 3) {
            const std::string text = m_input.Text(40);
            value = {kTypeString, 0, Utf8(text.substr(0, text.find('\0')))};
            bytes = AtInterface({kTypeString, 0, Utf8(text)});
        } else {
            value.type = m_input.Byte();
            bytes = m_input.Text(9);
            isValue = MakeRaw(value, bytes);
        }
        REQUIRE_EQ(RegSetValueEx(key.handle, Wide(name).c_str(), value.type, bytes.data(),
                                 static_cast<uint32_t>(bytes.size())),
                   m_plain.Set(key.plain, name, isValue ? std::optional(value) : std::nullopt));
    }

    /// Any bytes under any type.
    static bool MakeRaw(RegistryValue& value, const std::string& bytes) {
        if (value.type == kTypeNumber && bytes.size() == 4) {
            memcpy(&value.number, bytes.data(), 4);
            return true;
        }
        if (value.type == kTypeBinary) {
            value.bytes = bytes;
            return true;
        }
        if (value.type != kTypeString) {
            return false;
        }
        std::u32string text;
        for (size_t i = 0; i + 4 <= bytes.size(); i += 4) {
            char32_t code = 0;
            memcpy(&code, bytes.data() + i, 4);
            if (code == 0) {
                break;
            }
            const bool isCharacter = code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF);
            text += isCharacter ? code : char32_t{0xFFFD};
        }
        value.bytes = PlainEncode(text);
        return true;
    }

    void Enumerate() {
        const Chosen key = ChooseKey();
        const unsigned index = m_input.Below(4);
        std::string expected;
        const RegistryError error = m_plain.Enumerate(key.plain, index, expected);
        wchar_t name[300] = {};
        uint32_t size = std::size(name);
        REQUIRE_EQ(RegEnumKey(key.handle, index, name, &size), error);
        if (error != kSuccess) {
            return;
        }
        REQUIRE_EQ(std::wstring(name, size), Wide(expected));
        REQUIRE(name[size] == L'\0');
        uint32_t shorter = size;
        REQUIRE_EQ(RegEnumKey(key.handle, index, name, &shorter), kNoMemory);
        REQUIRE_EQ(shorter, size + 1);
    }

    void Delete() {
        const Chosen from = ChooseKey();
        const std::string path = ChoosePath();
        if (m_input.Flag()) {
            REQUIRE_EQ(RegDeleteKey(from.handle, Wide(path).c_str()),
                       m_plain.DeleteKey(from.plain, path));
        } else {
            REQUIRE_EQ(RegDeleteTree(from.handle, Wide(path).c_str(), 0),
                       m_plain.DeleteTree(from.plain, path));
        }
    }

    void DeleteValue() {
        const Chosen key = ChooseKey();
        const std::string name = ChooseName();
        REQUIRE_EQ(RegDeleteValue(key.handle, Wide(name).c_str()),
                   m_plain.DeleteValue(key.plain, name));
    }

    /// Another process at work.
    void Interfere() {
        const unsigned what = m_input.Below(6);
        const std::string text = m_input.Text(60);
        switch (what) {
            case 0:
                return PutFiles(m_plain.shipped, std::nullopt);
            case 1:
                return PutFiles(m_plain.shipped, "REGEDIT4\r\n\r\n" + text);
            case 2:
                return PutFiles(m_plain.shipped, text);
            case 3:
                return PutFiles(std::nullopt, m_plain.user);
            case 4:
                return PutFiles("REGEDIT4\r\n\r\n[HKEY_LOCAL_MACHINE\\Key]\r\n\"RegistryHash\"=\"" +
                                    text + "\"\r\n\r\n",
                                m_plain.user);
            default:
                return PutFiles(m_plain.shipped,
                                m_plain.user ? std::optional(*m_plain.user + text) : std::nullopt);
        }
    }

    const ScratchPlaces& m_places;
    FuzzInput m_input;
    PlainStore m_plain;
    std::vector<HKEY> m_keys;
};

std::optional<std::string> FileOf(std::string_view bytes, unsigned kind) {
    if (bytes.empty()) {
        return std::nullopt;
    }
    const std::string text(bytes.substr(0, kLongestText));
    return kind == 0 ? text : "REGEDIT4\r\n" + text;
}

}  // namespace

FUZZ_TARGET(registry_store) {
    static ScratchPlaces places;
    SetRegistryPlaces(places.Places());
    const size_t first = std::min(bytes.find('\xFF'), bytes.size());
    const std::string_view files = bytes.substr(std::min(first + 1, bytes.size()));
    const size_t second = std::min(files.find('\xFF'), files.size());
    FuzzInput operations(bytes.substr(0, first));
    const unsigned kinds = operations.Byte();
    Game(places, operations)
        .Play(FileOf(files.substr(0, second), kinds & 1U),
              FileOf(files.substr(std::min(second + 1, files.size())), kinds & 2U));
}

}  // namespace zeldlg::fuzz
