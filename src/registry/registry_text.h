// A loaded registry: the text of one REGEDIT4 file in memory, its keys and its values.
// Knows neither files nor locks; registry_store.h puts both around it.
#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "registry/registry_encoding.h"
#include "registry/registry_error.h"
#include "registry/registry_value.h"

namespace zeldlg::registry {

/// Bytes that a key's full name may have.
inline constexpr size_t kMaxKeyName = 260;

/// Where a section's header stands in the text.
struct SectionHeader {
    std::string_view text;  ///< the key's full name as it is spelled, in brackets
    size_t previous = 0;    ///< position of the line after the previous header; 0: it is the first
    size_t begin = 0;       ///< its own position
    size_t body = 0;        ///< position of the line after it

    std::string_view Name() const { return text.substr(1, text.size() - 2); }
};

/// The lines of one section of the text. They are split off when they are first needed.
struct KeySection {
    SectionHeader header;
    bool scanned = false;                 ///< `lines` is filled
    std::vector<std::string_view> lines;  ///< without line ends; lines of any kind
};

/// A key. Keys are made when they are looked up, all of them only where a list of keys is needed.
struct KeyNode {
    std::string_view name;  ///< full name as the file, or whoever created it, spells it
    KeyNode* parent = nullptr;
    std::vector<KeyNode*> children;
    /// Empty for a key that exists only because one below it does. Of several sections with one
    /// name the first counts; the others are carried along.
    std::vector<KeySection> sections;
    bool found = false;    ///< by a scan of the text: usable before the tree is complete
    bool linked = false;   ///< stands among its parent's children
    bool deleted = false;  ///< kept for the handles that are still open on it

    /// The last part of the name.
    std::string_view LastName() const { return name.substr(name.rfind('\\') + 1); }
};

/// The keys and values of one file. Names are file text or UTF-8 and matched without regard to
/// case. Key nodes live as long as the object. Not safe from two threads at once.
/// An operation that runs out of memory raises std::bad_alloc and can be tried again; Write() does
/// so before it hands over anything.
class RegistryText {
public:
    /// Takes one line, without its line end. False ends the writing.
    using LineSink = std::function<bool(std::string_view line)>;

    /// Judges a text before it is taken.
    /// @return kSuccess, kNotRegistry, or kCorrupt when a section header is the last line and has
    ///         no line end
    static RegistryError Check(std::string_view text);

    /// @param text a text that passed Check(); one zero byte follows its `size` bytes
    RegistryText(std::unique_ptr<char[]> text, size_t size);

    /// The key with this full name, or null. The parents of every key of the file exist too.
    KeyNode* Find(const FoldedName& name);

    /// A key without a parent; made when the file does not name it.
    KeyNode& Root(const std::string& name);

    /// Makes a key that Find() does not know, and the parents that are missing.
    KeyNode& Create(const std::string& name);

    /// Removes a key that has no sub-keys. The node itself stays valid.
    void Delete(KeyNode& key);

    /// The sub-keys, in the order of the file.
    const std::vector<KeyNode*>& Children(KeyNode& key);

    std::optional<RegistryValue> Value(KeyNode& key, std::string_view name);

    /// Sets or replaces a value. A replaced value keeps its place and the spelling of its name.
    /// @return false when the format cannot hold it; nothing has changed then
    bool SetValue(KeyNode& key, std::string_view name, const RegistryValue& value);

    /// @return false when there is no such value
    bool DeleteValue(KeyNode& key, std::string_view name);

    /// Hands over the whole text line by line, each key before its sub-keys. Lines that are no
    /// value lines (comments and whatever else) stay in front of the value or the section that they
    /// stand in front of; behind the last section, at the end. A deleted key takes with it what
    /// stands in front of its section, unless that is the beginning of the text. Repeated empty
    /// lines, and what follows the bracket on a header line, are not kept.
    /// @return false when the sink ended it
    bool Write(const LineSink& sink);

private:
    std::string_view LineAt(size_t position, size_t& next) const;
    std::optional<SectionHeader> NextHeader(size_t from) const;
    KeyNode* Known(const FoldedName& name) const;
    KeyNode* ScanFor(const FoldedName& name);
    KeyNode* NodeAbove(const FoldedName& name, std::string_view below);
    KeyNode& NodeFor(std::string_view name);
    void BuildTree();
    void Link(KeyNode& key);
    void AddSection(KeyNode& key);
    void AddSection(KeyNode& key, const SectionHeader& header);
    size_t BodyEnd(size_t body) const;
    size_t FrontOf(const SectionHeader& header) const;
    std::vector<std::string_view>& Lines(KeySection& section);
    std::vector<std::string_view>::iterator FindLine(KeySection& section, const FoldedName& name);
    std::string_view Keep(std::string text);
    bool WriteSection(const KeySection& section, const LineSink& sink, bool& afterEmpty) const;
    bool WriteBetween(size_t from, size_t to, const LineSink& sink, bool& afterEmpty) const;

    std::unique_ptr<char[]> m_buffer;
    std::string_view m_text;
    std::deque<std::string> m_added;  // strings that nodes point to and the text does not hold
    std::deque<KeyNode> m_nodes;      // never shrinks, so that nodes stay where they are
    // By folded full name. May hold what an operation left that ran out of memory; see Known().
    std::unordered_map<std::string, KeyNode*> m_index;
    std::vector<KeyNode*> m_roots;  // in the order of the file
    size_t m_headEnd = 0;           // to here, lines of no key stay at the beginning of the text
    SectionHeader m_end;            // stands behind all sections; filled with the tree
    unsigned m_scans = 0;
    bool m_treeBuilt = false;
};

}  // namespace zeldlg::registry
