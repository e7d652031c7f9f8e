// A registry written a second time, as plainly as its format is told: lists that are searched from
// the front, no laziness, no index. The library's own is compared with it.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "registry/registry_value.h"

namespace zeldlg::plain {

struct PlainSection {
    std::string name;
    std::vector<std::string> lines;
    std::vector<std::string> front;  ///< lines in front of the section that belong to no key
    bool first = false;              ///< in the file
};

struct PlainKey {
    std::string name;
    std::u32string folded;
    std::vector<PlainSection> sections;
    bool deleted = false;

    bool IsRoot() const { return name.find('\\') == std::string::npos; }
};

using PlainKeyPtr = std::shared_ptr<PlainKey>;

/// A line of the form of a value: its name (empty for the default value) and value.
struct PlainValueLine {
    std::string name;
    registry::RegistryValue value;
};

std::optional<PlainValueLine> PlainParseLine(std::string_view line);
std::string PlainFormatLine(std::string_view name, const registry::RegistryValue& value);

/// Whether the value comes back from the line that is made of it.
bool PlainIsStorable(std::string_view name, const registry::RegistryValue& value);

class PlainRegistry {
public:
    /// 0, 1015 or 1017.
    static unsigned Check(std::string_view text);

    explicit PlainRegistry(std::string_view text);

    PlainKeyPtr Find(std::string_view name) const;
    /// Of a key without a parent; it comes into being by being asked for.
    PlainKeyPtr Root(std::string_view name);
    /// Of a key that is not there yet.
    PlainKeyPtr Create(std::string_view name);
    /// Of a key without sub-keys.
    void Delete(const PlainKeyPtr& key);

    std::vector<PlainKeyPtr> Children(const PlainKey& key) const;
    PlainKeyPtr Parent(const PlainKey& key) const;
    const std::vector<PlainKeyPtr>& Keys() const { return m_keys; }

    std::optional<registry::RegistryValue> Value(const PlainKey& key, std::string_view name) const;
    bool SetValue(PlainKey& key, std::string_view name, const registry::RegistryValue& value);
    bool DeleteValue(PlainKey& key, std::string_view name);

    /// The whole text. @param longest characters that survive of a line
    std::string Write(size_t longest) const;

private:
    PlainKeyPtr Add(std::string_view name);
    void WriteKey(const PlainKey& key, std::vector<std::string>& lines) const;

    std::string m_firstLine;
    std::vector<std::string> m_head;  // what stood in front of the first section, which is no more
    std::vector<std::string> m_tail;  // what stands behind the last section
    std::vector<PlainKeyPtr> m_keys;  // all that exist; siblings in the order of the file
};

}  // namespace zeldlg::plain
