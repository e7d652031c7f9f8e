#include "registry/registry_text.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <iterator>
#include <utility>

namespace zeldlg::registry {
namespace {

constexpr std::string_view kSignature = "REGEDIT4";

// Look-ups that search the text before the tree of all keys is made instead: a dialog opens a
// key or two, and only who opens many gains by the tree. (One setting of a thousand keys costs
// thirteen times as much with the tree alone.)
constexpr unsigned kScansBeforeTree = 4;

}  // namespace

RegistryError RegistryText::Check(std::string_view text) {
    if (!text.starts_with(kSignature)) {
        return kNotRegistry;
    }
    // Only the last line can lack a line end.
    const size_t lastLine = text.rfind('\n') + 1;
    return lastLine > 0 && text.substr(lastLine).starts_with('[') ? kCorrupt : kSuccess;
}

RegistryText::RegistryText(std::unique_ptr<char[]> text, size_t size)
    : m_buffer(std::move(text)), m_text(m_buffer.get(), size) {}

// @param next set to the position of the following line
std::string_view RegistryText::LineAt(size_t position, size_t& next) const {
    const size_t end = m_text.find('\n', position);
    if (end == std::string_view::npos) {
        next = m_text.size();
        return m_text.substr(position);
    }
    next = end + 1;
    const bool carriageReturn = end > position && m_text[end - 1] == '\r';
    return m_text.substr(position, end - position - (carriageReturn ? 1 : 0));
}

// The first section header at or after `from`, which is 0 or the `body` of the header before it.
// A line that begins with a bracket but names no key, or one with a longer name than can ever be
// asked for, is no header.
std::optional<SectionHeader> RegistryText::NextHeader(size_t from) const {
    for (size_t at = m_text.find('[', from); at != std::string_view::npos;
         at = m_text.find('[', at + 1)) {
        if (at == 0 || m_text[at - 1] != '\n') {
            continue;
        }
        size_t body = 0;
        const std::string_view line = LineAt(at, body);
        const size_t bracket = line.rfind(']');
        if (bracket != std::string_view::npos && bracket - 1 <= kMaxKeyName) {
            return SectionHeader{line.substr(0, bracket + 1), from, at, body};
        }
        at = body - 1;
    }
    return std::nullopt;
}

KeyNode* RegistryText::Find(const FoldedName& name) {
    KeyNode* const known = Known(name);
    if (known != nullptr || m_treeBuilt) {
        return known;
    }
    if (m_scans < kScansBeforeTree) {
        ++m_scans;
        return ScanFor(name);
    }
    BuildTree();
    return Known(name);
}

// A key that needs no search. What an operation left behind that ran out of memory, null or a
// node without its sections or its place, is none.
KeyNode* RegistryText::Known(const FoldedName& name) const {
    const auto known = m_index.find(name.Text());
    KeyNode* const node = known == m_index.end() ? nullptr : known->second;
    const bool complete = node != nullptr && (m_treeBuilt ? node->linked : node->found);
    return complete ? node : nullptr;
}

// Looks a key up in the text without making nodes for the others.
KeyNode* RegistryText::ScanFor(const FoldedName& name) {
    std::string_view below;
    for (auto header = NextHeader(0); header; header = NextHeader(header->body)) {
        if (name.Matches(header->Name())) {
            // Spelled as it is first met, as in the tree of all keys.
            KeyNode& node = below.empty() ? NodeFor(header->Name()) : *NodeAbove(name, below);
            AddSection(node, *header);
            node.found = true;
            return &node;
        }
        if (below.empty() && name.IsAncestorOf(header->Name())) {
            below = header->Name();
        }
    }
    KeyNode* const node = NodeAbove(name, below);
    if (node != nullptr) {
        node->found = true;
    }
    return node;
}

// The node for `name` as it is spelled in the name of a key below it; null when there is none.
KeyNode* RegistryText::NodeAbove(const FoldedName& name, std::string_view below) {
    for (size_t end = below.find('\\'); end != std::string_view::npos;
         end = below.find('\\', end + 1)) {
        if (name.Matches(below.substr(0, end))) {
            return &NodeFor(below.substr(0, end));
        }
    }
    return nullptr;
}

KeyNode& RegistryText::Root(const std::string& name) {
    KeyNode* root = Find(FoldedName(name));
    if (root == nullptr) {
        root = &NodeFor(Keep(name));
        root->found = true;
        if (m_treeBuilt) {
            Link(*root);
        }
    }
    return *root;
}

// The node with this name, made when there is none. (Not by [], which clang 17 cannot compile as
// C++23 with GCC 14's library.)
KeyNode& RegistryText::NodeFor(std::string_view name) {
    KeyNode*& node = m_index.emplace(FoldName(name), nullptr).first->second;
    if (node == nullptr) {
        node = &m_nodes.emplace_back();
        node->name = name;
    }
    return *node;
}

// Makes the nodes of all sections and puts every node in its place.
void RegistryText::BuildTree() {
    if (m_treeBuilt) {
        return;
    }
    for (auto header = NextHeader(0); header; header = NextHeader(header->body)) {
        KeyNode& node = NodeFor(header->Name());
        AddSection(node, *header);
        Link(node);
        m_end.previous = header->body;
    }
    (m_end.previous == 0 ? m_headEnd : m_end.begin) = m_text.size();
    // Roots that the file does not name, or keys found before: they have no place yet.
    // By index: linking may add nodes.
    for (size_t i = 0; i < m_nodes.size(); ++i) {
        if (!m_nodes[i].deleted) {
            Link(m_nodes[i]);
        }
    }
    m_treeBuilt = true;
}

// Puts the key behind its siblings, its parents first: a key in the tree has all of them there.
void RegistryText::Link(KeyNode& key) {
    while (!key.linked) {
        KeyNode* top = &key;
        for (size_t end = top->name.rfind('\\'); end != std::string_view::npos;
             end = top->name.rfind('\\')) {
            top->parent = &NodeFor(top->name.substr(0, end));
            if (top->parent->linked) {
                break;
            }
            top = top->parent;
        }
        (top->parent == nullptr ? m_roots : top->parent->children).push_back(top);
        top->linked = true;
    }
}

KeyNode& RegistryText::Create(const std::string& name) {
    BuildTree();
    KeyNode& key = NodeFor(Keep(name));
    for (std::string_view path = key.name; path.find('\\') != std::string_view::npos;
         path = path.substr(0, path.rfind('\\'))) {
        KeyNode& missing = NodeFor(path);
        if (missing.linked) {
            break;  // this one and those above it were there before
        }
        AddSection(missing);
    }
    Link(key);
    return key;
}

// Gives a key that exists only through its sub-keys a section of its own.
void RegistryText::AddSection(KeyNode& key) {
    if (key.sections.empty()) {
        const std::string_view header = Keep(std::string("[").append(key.name).append("]"));
        const size_t nowhere = m_text.size();
        key.sections.push_back({{header, nowhere, nowhere, nowhere}, true, {}});
    }
}

// Gives a key a section of the text, unless it has it. They come in the order of the text.
void RegistryText::AddSection(KeyNode& key, const SectionHeader& header) {
    if (key.sections.empty() || key.sections.back().header.body < header.body) {
        key.sections.push_back({header, false, {}});
    }
}

void RegistryText::Delete(KeyNode& key) {
    BuildTree();
    KeyNode* const parent = key.parent;
    const std::string folded = FoldName(key.name);
    if (parent != nullptr && parent->parent != nullptr && parent->children.size() == 1) {
        AddSection(*parent);  // it would be gone with its last sub-key otherwise
    }
    // Nothing from here on needs memory.
    m_index.erase(folded);
    key.deleted = true;
    for (const KeySection& section : key.sections) {
        if (section.header.previous == 0) {
            m_headEnd = section.header.begin;
        }
    }
    key.sections.clear();
    if (parent == nullptr) {
        std::erase(m_roots, &key);
        return;
    }
    // From the back, where the removal of a whole tree takes its keys from.
    const auto place = std::find(parent->children.rbegin(), parent->children.rend(), &key);
    parent->children.erase(std::next(place).base());
}

const std::vector<KeyNode*>& RegistryText::Children(KeyNode& key) {
    BuildTree();
    return key.children;
}

// Where the lines of a section end: at an empty line, or where the next line with a bracket
// begins. Lines directly in front of that one that are no values stand in front of it, not in the
// section.
size_t RegistryText::BodyEnd(size_t body) const {
    size_t end = body;
    for (size_t next = body; end < m_text.size() && m_text[end] != '['; end = next) {
        if (LineAt(end, next).empty()) {
            return end;
        }
    }
    if (end == m_text.size()) {
        return end;
    }
    size_t behindLastValue = body;
    for (size_t at = body; at < end;) {
        if (ParseValueLine(LineAt(at, at))) {
            behindLastValue = at;
        }
    }
    return behindLastValue;
}

// Where the lines begin that stand in front of a header and belong to no key.
size_t RegistryText::FrontOf(const SectionHeader& header) const {
    size_t front = 0;
    if (header.previous == 0) {
        LineAt(0, front);
        return front;
    }
    return BodyEnd(header.previous);
}

// The section's lines, split off the text on first use.
std::vector<std::string_view>& RegistryText::Lines(KeySection& section) {
    if (!section.scanned) {
        section.lines.clear();
        const size_t end = BodyEnd(section.header.body);
        for (size_t at = section.header.body; at < end;) {
            section.lines.push_back(LineAt(at, at));
        }
        section.scanned = true;
    }
    return section.lines;
}

std::vector<std::string_view>::iterator RegistryText::FindLine(KeySection& section,
                                                               const FoldedName& name) {
    std::vector<std::string_view>& lines = Lines(section);
    return std::find_if(lines.begin(), lines.end(), [&name](std::string_view line) {
        const std::optional<ValueLine> value = ParseValueLine(line);
        return value && name.Matches(value->name);
    });
}

std::optional<RegistryValue> RegistryText::Value(KeyNode& key, std::string_view name) {
    if (key.sections.empty()) {
        return std::nullopt;
    }
    KeySection& section = key.sections.front();
    const auto line = FindLine(section, FoldedName(name));
    if (line == section.lines.end()) {
        return std::nullopt;
    }
    return ReadValue(*ParseValueLine(*line));
}

bool RegistryText::SetValue(KeyNode& key, std::string_view name, const RegistryValue& value) {
    // Before the key is given a section: what cannot be stored changes nothing.
    std::optional<std::string> formatted = FormatValueLine(name, value);
    if (!formatted) {
        return false;
    }
    AddSection(key);
    KeySection& section = key.sections.front();
    const auto line = FindLine(section, FoldedName(name));
    if (line == section.lines.end()) {
        section.lines.push_back(Keep(*std::move(formatted)));
        return true;
    }
    // The old spelling may have more bytes, which a long value leaves no room for.
    const std::string_view spelling = ParseValueLine(*line)->name;
    if (spelling != name) {
        formatted = FormatValueLine(spelling, value);
    }
    if (formatted) {
        *line = Keep(*std::move(formatted));
    }
    return formatted.has_value();
}

bool RegistryText::DeleteValue(KeyNode& key, std::string_view name) {
    if (key.sections.empty()) {
        return false;
    }
    std::vector<std::string_view>& lines = Lines(key.sections.front());
    const FoldedName folded(name);
    // All of them: a line that repeats the name would come to light otherwise.
    std::vector<std::string_view> kept;
    std::copy_if(lines.begin(), lines.end(), std::back_inserter(kept),
                 [&folded](std::string_view line) {
                     const std::optional<ValueLine> value = ParseValueLine(line);
                     return !value || !folded.Matches(value->name);
                 });
    lines.swap(kept);
    return lines.size() < kept.size();
}

std::string_view RegistryText::Keep(std::string text) {
    return m_added.emplace_back(std::move(text));
}

bool RegistryText::Write(const LineSink& sink) {
    BuildTree();
    for (KeyNode& key : m_nodes) {
        for (KeySection& section : key.sections) {
            Lines(section);
        }
    }
    std::vector<KeyNode*> pending;
    pending.reserve(m_nodes.size());
    // Nothing from here on needs memory.
    size_t next = 0;
    const std::string_view first = LineAt(0, next);
    bool afterEmpty = true;
    if (!sink(first) || !sink({}) || !WriteBetween(next, m_headEnd, sink, afterEmpty)) {
        return false;
    }
    pending.assign(m_roots.rbegin(), m_roots.rend());
    while (!pending.empty()) {
        const KeyNode& key = *pending.back();
        pending.pop_back();
        if (!std::all_of(key.sections.begin(), key.sections.end(), [&](const KeySection& each) {
                return WriteSection(each, sink, afterEmpty);
            })) {
            return false;
        }
        pending.insert(pending.end(), key.children.rbegin(), key.children.rend());
    }
    return WriteBetween(FrontOf(m_end), m_end.begin, sink, afterEmpty);
}

bool RegistryText::WriteSection(const KeySection& section, const LineSink& sink,
                                bool& afterEmpty) const {
    const bool isFrontWritten =
        WriteBetween(FrontOf(section.header), section.header.begin, sink, afterEmpty);
    afterEmpty = true;
    return isFrontWritten && sink(section.header.text) &&
           std::all_of(section.lines.begin(), section.lines.end(), std::cref(sink)) && sink({});
}

// Hands over lines that belong to no key, of several empty ones one.
bool RegistryText::WriteBetween(size_t from, size_t to, const LineSink& sink,
                                bool& afterEmpty) const {
    while (from < to) {
        const std::string_view line = LineAt(from, from);
        if (!(line.empty() && afterEmpty) && !sink(line)) {
            return false;
        }
        afterEmpty = line.empty();
    }
    return true;
}

}  // namespace zeldlg::registry
