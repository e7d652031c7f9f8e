// The configuration store written a second time: open keys, errors, and what stands in the file.
// The library's store is compared with it, call by call.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "plain_registry.h"

namespace zeldlg::plain {

class PlainStore {
public:
    // The files as they should be.
    std::optional<std::string> user;
    std::optional<std::string> shipped;

    // Each returns an error number. Keys are numbered by the caller; `root` is a root's name or
    // empty, and then `key` counts.
    struct KeyRef {
        std::string root;
        int key = 0;
    };

    unsigned Open(const KeyRef& from, std::string_view path, uint32_t access, int newKey);
    unsigned Create(const KeyRef& from, std::string_view path, int newKey, bool& created);
    unsigned Close(int key);
    unsigned Query(const KeyRef& key, std::string_view name, registry::RegistryValue& value);
    /// @param value nothing for what is no value at all
    unsigned Set(const KeyRef& key, std::string_view name,
                 const std::optional<registry::RegistryValue>& value);
    unsigned Enumerate(const KeyRef& key, unsigned index, std::string& name);
    unsigned DeleteKey(const KeyRef& from, std::string_view path);
    unsigned DeleteTree(const KeyRef& from, std::string_view path);
    unsigned DeleteValue(const KeyRef& key, std::string_view name);
    unsigned Flush();

private:
    struct OpenKey {
        PlainKeyPtr key;
        uint32_t access;
    };

    unsigned Acquire();
    void Refresh();
    unsigned Resolve(const KeyRef& from, uint32_t right, PlainKeyPtr& key);
    unsigned FullName(const KeyRef& from, std::string_view path, uint32_t right, std::string& name);
    unsigned FindDoomed(const KeyRef& from, std::string_view path, PlainKeyPtr& key);
    void DeleteAll(const PlainKeyPtr& key);
    void WriteBack();

    std::unique_ptr<PlainRegistry> m_loaded;
    bool m_changed = false;
    std::map<int, OpenKey> m_open;
};

/// What becomes of a file when `content` is written from its beginning without truncating.
inline std::string OverwrittenWith(const std::string& content, const std::string& old) {
    return old.size() > content.size() ? content + old.substr(content.size()) : content;
}

/// The stamp of a file: from the first mark to the end of its line.
std::optional<std::string> PlainStamp(std::string_view file);

}  // namespace zeldlg::plain
