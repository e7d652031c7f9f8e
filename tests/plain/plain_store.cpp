#include "plain_store.h"

#include "plain_text.h"
#include "registry/registry_store.h"

namespace zeldlg::plain {

namespace {

using registry::RegistryValue;

constexpr unsigned kNotFound = 2;
constexpr unsigned kAccessDenied = 5;
constexpr unsigned kInvalidHandle = 6;
constexpr unsigned kFileError = 1016;
constexpr size_t kLongestName = 260;
constexpr size_t kLongestLine = 16381;
constexpr uint32_t kRead = 4;
constexpr uint32_t kWrite = 8;
constexpr uint32_t kKeys = 16;

/// The name that an open key answers to, in UTF-8.
std::string AsUtf8(std::string_view name) { return PlainEncode(PlainDecode(name, 0)); }

}  // namespace

std::optional<std::string> PlainStamp(std::string_view file) {
    std::string line;
    for (size_t i = 0; i <= file.size(); ++i) {
        if (i < file.size()) {
            line += file[i];
        }
        if (i == file.size() || file[i] == '\n') {
            const size_t mark = line.find("\"RegistryHash\"=\"");
            if (mark != std::string::npos) {
                return line.substr(mark);
            }
            line.clear();
        }
    }
    return std::nullopt;
}

void PlainStore::Refresh() {
    const bool wanted =
        shipped && (!user || (PlainStamp(*shipped) && PlainStamp(*user) != PlainStamp(*shipped)));
    if (wanted) {
        user = OverwrittenWith(*shipped, user.value_or(""));
    }
}

unsigned PlainStore::Acquire() {
    if (m_loaded != nullptr && (m_changed || !m_open.empty())) {
        return 0;
    }
    m_loaded.reset();
    Refresh();
    if (!user) {
        user = "REGEDIT4\r\n\r\n";
    }
    const unsigned error = PlainRegistry::Check(*user);
    if (error == 0) {
        m_loaded = std::make_unique<PlainRegistry>(*user);
    }
    return error;
}

unsigned PlainStore::Resolve(const KeyRef& from, uint32_t right, PlainKeyPtr& key) {
    if (!from.root.empty()) {
        const unsigned error = Acquire();
        key = error == 0 ? m_loaded->Root(from.root) : nullptr;
        return error;
    }
    const auto open = m_open.find(from.key);
    if (open == m_open.end()) {
        return kInvalidHandle;
    }
    key = open->second.key;
    if ((open->second.access & right) != right) {
        return kAccessDenied;
    }
    return key->deleted ? kNotFound : 0;
}

unsigned PlainStore::FullName(const KeyRef& from, std::string_view path, uint32_t right,
                              std::string& name) {
    PlainKeyPtr key;
    const unsigned error = from.root.empty() ? Resolve(from, right, key) : Acquire();
    if (error != 0) {
        return error;
    }
    name = from.root.empty() ? AsUtf8(key->name) : from.root;
    if (!name.empty() && name.back() == '\\') {
        name.pop_back();
    }
    name += '\\';
    name += !path.empty() && path.front() == '\\' ? path.substr(1) : path;
    if (name.back() == '\\') {
        name.pop_back();
    }
    return name.size() > kLongestName ? kNotFound : 0;
}

unsigned PlainStore::Open(const KeyRef& from, std::string_view path, uint32_t access, int newKey) {
    std::string name;
    const unsigned error = FullName(from, path, 0, name);
    if (error != 0) {
        return error;
    }
    const PlainKeyPtr key =
        name.find('\\') == std::string::npos ? m_loaded->Root(name) : m_loaded->Find(name);
    if (key == nullptr) {
        return kNotFound;
    }
    m_open[newKey] = {key, access};
    return 0;
}

unsigned PlainStore::Create(const KeyRef& from, std::string_view path, int newKey, bool& created) {
    std::string name;
    const unsigned error = FullName(from, path, kKeys, name);
    if (error != 0) {
        return error;
    }
    PlainKeyPtr key =
        name.find('\\') == std::string::npos ? m_loaded->Root(name) : m_loaded->Find(name);
    created = key == nullptr;
    if (created) {
        if (name.find('\n') != std::string::npos) {
            return kFileError;
        }
        key = m_loaded->Create(name);
        m_changed = true;
    }
    m_open[newKey] = {key, registry::kAccessDefault};
    return 0;
}

unsigned PlainStore::Close(int key) {
    if (m_open.erase(key) == 0) {
        return kInvalidHandle;
    }
    return Flush();
}

unsigned PlainStore::Flush() {
    if (m_open.empty()) {
        if (m_changed) {
            WriteBack();
        }
        m_changed = false;
        m_loaded.reset();
    }
    return 0;
}

void PlainStore::WriteBack() {
    user = OverwrittenWith(m_loaded->Write(kLongestLine), user.value_or("REGEDIT4\r\n\r\n"));
}

unsigned PlainStore::Query(const KeyRef& from, std::string_view name, RegistryValue& value) {
    PlainKeyPtr key;
    const unsigned error = Resolve(from, kRead, key);
    if (error != 0) {
        return error;
    }
    const std::optional<RegistryValue> found = m_loaded->Value(*key, name == "@" ? "" : name);
    if (!found) {
        return kNotFound;
    }
    value = *found;
    return 0;
}

unsigned PlainStore::Set(const KeyRef& from, std::string_view name,
                         const std::optional<RegistryValue>& value) {
    PlainKeyPtr key;
    const unsigned error = Resolve(from, kWrite, key);
    if (error != 0) {
        return error;
    }
    if (!value || !m_loaded->SetValue(*key, name == "@" ? "" : name, *value)) {
        return kFileError;
    }
    m_changed = true;
    return 0;
}

unsigned PlainStore::Enumerate(const KeyRef& from, unsigned index, std::string& name) {
    PlainKeyPtr key;
    const unsigned error = Resolve(from, kKeys, key);
    if (error != 0) {
        return error;
    }
    const std::vector<PlainKeyPtr> children = m_loaded->Children(*key);
    if (index >= children.size()) {
        return kNotFound;
    }
    name = children[index]->name;
    name.erase(0, name.rfind('\\') + 1);
    return 0;
}

unsigned PlainStore::FindDoomed(const KeyRef& from, std::string_view path, PlainKeyPtr& key) {
    std::string name;
    const unsigned error = FullName(from, path, kKeys, name);
    if (error != 0) {
        return error;
    }
    if (name.find('\\') == std::string::npos) {
        return kAccessDenied;
    }
    key = m_loaded->Find(name);
    return key == nullptr ? kNotFound : 0;
}

unsigned PlainStore::DeleteKey(const KeyRef& from, std::string_view path) {
    PlainKeyPtr key;
    const unsigned error = FindDoomed(from, path, key);
    if (error != 0) {
        return error;
    }
    if (!m_loaded->Children(*key).empty()) {
        return kAccessDenied;
    }
    m_loaded->Delete(key);
    m_changed = true;
    return 0;
}

unsigned PlainStore::DeleteTree(const KeyRef& from, std::string_view path) {
    PlainKeyPtr key;
    const unsigned error = FindDoomed(from, path, key);
    if (error == 0) {
        DeleteAll(key);
        m_changed = true;
    }
    return error;
}

void PlainStore::DeleteAll(const PlainKeyPtr& key) {
    for (const PlainKeyPtr& child : m_loaded->Children(*key)) {
        DeleteAll(child);
    }
    m_loaded->Delete(key);
}

unsigned PlainStore::DeleteValue(const KeyRef& from, std::string_view name) {
    PlainKeyPtr key;
    const unsigned error = Resolve(from, kWrite, key);
    if (error != 0) {
        return error;
    }
    if (!m_loaded->DeleteValue(*key, name == "@" ? "" : name)) {
        return kNotFound;
    }
    m_changed = true;
    return 0;
}

}  // namespace zeldlg::plain
