#include "plain_registry.h"

#include <algorithm>

#include "plain_text.h"

namespace zeldlg::plain {

namespace {

using registry::RegistryValue;

constexpr size_t kLongestName = 260;
constexpr size_t kLongestStoredLine = 16381;
constexpr std::string_view kHexDigits = "0123456789abcdef";

std::string ParentName(std::string_view name) {
    return std::string(name.substr(0, name.rfind('\\')));
}

bool IsHeader(const std::string& line) {
    return line.starts_with('[') && line.find(']') != std::string::npos &&
           line.rfind(']') - 1 <= kLongestName;
}

size_t HexValue(char c) {
    return kHexDigits.find(c >= 'A' && c <= 'F' ? static_cast<char>(c + 32) : c);
}

bool IsHexDigit(char c) { return HexValue(c) != std::string_view::npos; }

uint32_t PlainNumber(std::string_view digits) {
    std::string run;
    for (const char c : digits) {
        if (!IsHexDigit(c)) {
            break;
        }
        run += c;
    }
    if (run.size() > 8) {
        run.erase(0, run.size() - 8);
    }
    return run.empty() ? 0 : static_cast<uint32_t>(std::stoul(run, nullptr, 16));
}

std::string PlainBytes(std::string_view digits) {
    std::string bytes;
    for (size_t i = 0; i + 1 < digits.size(); i += 3) {
        if (!IsHexDigit(digits[i]) || !IsHexDigit(digits[i + 1])) {
            break;
        }
        bytes += static_cast<char>(HexValue(digits[i]) * 16 + HexValue(digits[i + 1]));
        if (i + 2 >= digits.size() || digits[i + 2] != ',') {
            break;
        }
    }
    return bytes;
}

std::optional<RegistryValue> PlainData(std::string_view data) {
    if (data.starts_with("dword:")) {
        return RegistryValue{registry::kTypeNumber, PlainNumber(data.substr(6)), {}};
    }
    if (data.starts_with("hex:")) {
        return RegistryValue{registry::kTypeBinary, 0, PlainBytes(data.substr(4))};
    }
    if (!data.starts_with('"')) {
        return std::nullopt;
    }
    data.remove_prefix(1);
    const size_t quote = data.rfind('"');
    return RegistryValue{registry::kTypeString, 0, std::string(data.substr(0, quote))};
}

void TakeLinesBehindTheLastValue(PlainSection& section, std::vector<std::string>& taken) {
    size_t kept = section.lines.size();
    while (kept > 0 && !PlainParseLine(section.lines[kept - 1])) {
        --kept;
    }
    taken.assign(section.lines.begin() + static_cast<std::ptrdiff_t>(kept), section.lines.end());
    section.lines.resize(kept);
}

/// Of several empty lines one is kept.
void AppendLines(std::vector<std::string>& lines, const std::vector<std::string>& more) {
    for (const std::string& line : more) {
        if (!line.empty() || !lines.back().empty()) {
            lines.push_back(line);
        }
    }
}

bool IsNamed(const std::string& line, std::string_view name) {
    const std::optional<PlainValueLine> value = PlainParseLine(line);
    return value && PlainFold(value->name) == PlainFold(name);
}

}  // namespace

std::optional<PlainValueLine> PlainParseLine(std::string_view line) {
    if (line.starts_with("@=")) {
        const std::optional<RegistryValue> value = PlainData(line.substr(2));
        return value ? std::optional(PlainValueLine{"", *value}) : std::nullopt;
    }
    if (!line.starts_with('"')) {
        return std::nullopt;
    }
    for (size_t end = 1; end + 1 < line.size(); ++end) {
        if (line[end] != '"' || line[end + 1] != '=') {
            continue;
        }
        if (const std::optional<RegistryValue> value = PlainData(line.substr(end + 2))) {
            const std::string name(line.substr(1, end - 1));
            return PlainValueLine{name == "@" ? "" : name, *value};
        }
    }
    return std::nullopt;
}

std::string PlainFormatLine(std::string_view name, const RegistryValue& value) {
    std::string line = name.empty() ? "@=" : "\"" + std::string(name) + "\"=";
    if (value.type == registry::kTypeNumber) {
        char digits[16];
        snprintf(digits, sizeof digits, "dword:%08x", value.number);
        return line + digits;
    }
    if (value.type == registry::kTypeString) {
        return line + "\"" + value.bytes + "\"";
    }
    line += "hex:";
    for (size_t i = 0; i < value.bytes.size(); ++i) {
        char digits[8];
        snprintf(digits, sizeof digits, i == 0 ? "%02x" : ",%02x",
                 static_cast<unsigned>(static_cast<unsigned char>(value.bytes[i])));
        line += digits;
    }
    return line;
}

bool PlainIsStorable(std::string_view name, const RegistryValue& value) {
    const std::string line = PlainFormatLine(name, value);
    if (line.find('\n') != std::string::npos || line.size() > kLongestStoredLine) {
        return false;
    }
    const std::optional<PlainValueLine> parsed = PlainParseLine(line);
    return parsed && parsed->name == name && parsed->value == value;
}

unsigned PlainRegistry::Check(std::string_view text) {
    if (text.substr(0, 8) != "REGEDIT4") {
        return 1017;
    }
    const bool ended = text.back() == '\n';
    const std::vector<std::string> lines = PlainLines(text);
    return !ended && lines.size() > 1 && lines.back().starts_with('[') ? 1015 : 0;
}

PlainRegistry::PlainRegistry(std::string_view text) {
    const std::vector<std::string> lines = PlainLines(text);
    m_firstLine = lines.at(0);
    PlainSection* section = nullptr;
    bool inSection = false;
    std::vector<std::string> between;  // lines that belong to no key
    for (size_t i = 1; i < lines.size(); ++i) {
        const std::string& line = lines[i];
        if (inSection && line.starts_with('[')) {
            TakeLinesBehindTheLastValue(*section, between);
            inSection = false;
        }
        if (IsHeader(line)) {
            const std::string name = line.substr(1, line.rfind(']') - 1);
            PlainKey& key = *Add(name);
            const bool first = section == nullptr;
            section = &key.sections.emplace_back(PlainSection{name, {}, between, first});
            between.clear();
            inSection = true;
            continue;
        }
        inSection = inSection && !line.empty();
        (inSection ? section->lines : between).push_back(line);
    }
    (section == nullptr ? m_head : m_tail) = between;
}

PlainKeyPtr PlainRegistry::Find(std::string_view name) const {
    const std::u32string folded = PlainFold(name);
    for (const PlainKeyPtr& key : m_keys) {
        if (key->folded == folded) {
            return key;
        }
    }
    return nullptr;
}

/// The key and the parents that are missing, without sections.
PlainKeyPtr PlainRegistry::Add(std::string_view name) {
    PlainKeyPtr key = Find(name);
    if (key == nullptr) {
        key = std::make_shared<PlainKey>();
        key->name = name;
        key->folded = PlainFold(name);
        m_keys.push_back(key);
        if (!key->IsRoot()) {
            Add(ParentName(name));
        }
    }
    return key;
}

PlainKeyPtr PlainRegistry::Root(std::string_view name) { return Add(name); }

PlainKeyPtr PlainRegistry::Create(std::string_view name) {
    for (std::string missing(name); missing.find('\\') != std::string::npos && !Find(missing);
         missing = ParentName(missing)) {
        PlainKeyPtr key = std::make_shared<PlainKey>();
        key->name = missing;
        key->folded = PlainFold(missing);
        key->sections.push_back({missing, {}, {}, false});
        m_keys.push_back(key);
    }
    Add(std::string(name.substr(0, name.find('\\'))));
    return Find(name);
}

void PlainRegistry::Delete(const PlainKeyPtr& key) {
    key->deleted = true;
    for (const PlainSection& section : key->sections) {
        if (section.first) {
            m_head = section.front;
        }
    }
    key->sections.clear();
    std::erase(m_keys, key);
    const PlainKeyPtr parent = Parent(*key);
    if (parent != nullptr && !parent->IsRoot() && Children(*parent).empty() &&
        parent->sections.empty()) {
        parent->sections.push_back({parent->name, {}, {}, false});
    }
}

std::vector<PlainKeyPtr> PlainRegistry::Children(const PlainKey& key) const {
    std::vector<PlainKeyPtr> children;
    for (const PlainKeyPtr& each : m_keys) {
        if (!each->IsRoot() && PlainFold(ParentName(each->name)) == key.folded) {
            children.push_back(each);
        }
    }
    return children;
}

PlainKeyPtr PlainRegistry::Parent(const PlainKey& key) const {
    return key.IsRoot() ? nullptr : Find(ParentName(key.name));
}

std::optional<RegistryValue> PlainRegistry::Value(const PlainKey& key,
                                                  std::string_view name) const {
    if (!key.sections.empty()) {
        for (const std::string& line : key.sections.front().lines) {
            if (IsNamed(line, name)) {
                return PlainParseLine(line)->value;
            }
        }
    }
    return std::nullopt;
}

bool PlainRegistry::SetValue(PlainKey& key, std::string_view name, const RegistryValue& value) {
    if (!PlainIsStorable(name, value)) {
        return false;
    }
    if (key.sections.empty()) {
        key.sections.push_back({key.name, {}, {}, false});
    }
    std::vector<std::string>& lines = key.sections.front().lines;
    for (std::string& line : lines) {
        if (IsNamed(line, name)) {
            const std::string spelling = PlainParseLine(line)->name;
            if (!PlainIsStorable(spelling, value)) {
                return false;
            }
            line = PlainFormatLine(spelling, value);
            return true;
        }
    }
    lines.push_back(PlainFormatLine(name, value));
    return true;
}

bool PlainRegistry::DeleteValue(PlainKey& key, std::string_view name) {
    return !key.sections.empty() &&
           std::erase_if(key.sections.front().lines,
                         [name](const std::string& line) { return IsNamed(line, name); }) > 0;
}

std::string PlainRegistry::Write(size_t longest) const {
    std::vector<std::string> lines = {m_firstLine, ""};
    AppendLines(lines, m_head);
    for (const PlainKeyPtr& key : m_keys) {
        if (key->IsRoot()) {
            WriteKey(*key, lines);
        }
    }
    AppendLines(lines, m_tail);
    std::string text;
    for (const std::string& line : lines) {
        text += line.substr(0, longest) + "\r\n";
    }
    return text;
}

void PlainRegistry::WriteKey(const PlainKey& key, std::vector<std::string>& lines) const {
    for (const PlainSection& section : key.sections) {
        AppendLines(lines, section.front);
        lines.push_back("[" + section.name + "]");
        lines.insert(lines.end(), section.lines.begin(), section.lines.end());
        lines.emplace_back();
    }
    for (const PlainKeyPtr& child : Children(key)) {
        WriteKey(*child, lines);
    }
}

}  // namespace zeldlg::plain
