// A registry text is taken, compared with the plain one, changed in step with it, written, taken
// again. The bytes: changes of three bytes each, a zero byte, then the text of a file.
#include "registry/registry_text.h"

#include <algorithm>
#include <memory>

#include "fuzz_target.h"
#include "plain/plain_registry.h"
#include "plain/plain_text.h"

namespace zeldlg::fuzz {

namespace {

using namespace plain;  // NOLINT(google-build-using-namespace): written for this

using registry::FoldedName;
using registry::KeyNode;
using registry::RegistryText;
using registry::RegistryValue;

constexpr size_t kUncut = std::string::npos;
// The plain registry searches from the front, again and again.
constexpr size_t kLongestText = 1024;

const char* const kNames[] = {"Number",       "",  "text", "\xC3\x84rger", "a\"=b",
                              "RegistryHash", "]", "#"};

std::unique_ptr<RegistryText> MakeText(std::string_view text) {
    auto buffer = std::make_unique<char[]>(text.size() + 1);
    std::copy(text.begin(), text.end(), buffer.get());
    return std::make_unique<RegistryText>(std::move(buffer), text.size());
}

std::string WriteText(RegistryText& text) {
    std::string out;
    REQUIRE(text.Write([&out](std::string_view line) {
        out.append(line).append("\r\n");
        return true;
    }));
    return out;
}

KeyNode* FindNode(RegistryText& text, const PlainKey& key) {
    return key.IsRoot() ? &text.Root(key.name) : text.Find(FoldedName(key.name));
}

void RequireSameValue(const std::optional<RegistryValue>& actual,
                      const std::optional<RegistryValue>& expected) {
    REQUIRE_EQ(actual.has_value(), expected.has_value());
    if (actual) {
        REQUIRE_EQ(actual->type, expected->type);
        REQUIRE_EQ(actual->number, expected->number);
        REQUIRE_EQ(actual->bytes, expected->bytes);
    }
}

void RequireSameKeys(RegistryText& text, const PlainRegistry& plain) {
    for (const PlainKeyPtr& key : plain.Keys()) {
        KeyNode* const node = FindNode(text, *key);
        REQUIRE(node != nullptr);
        for (const PlainSection& section : key->sections) {
            for (const std::string& line : section.lines) {
                if (const auto value = PlainParseLine(line)) {
                    RequireSameValue(text.Value(*node, value->name),
                                     plain.Value(*key, value->name));
                }
            }
        }
        for (const char* name : kNames) {
            RequireSameValue(text.Value(*node, name), plain.Value(*key, name));
        }
        const std::vector<PlainKeyPtr> children = plain.Children(*key);
        const std::vector<KeyNode*>& nodes = text.Children(*node);
        REQUIRE_EQ(nodes.size(), children.size());
        for (size_t i = 0; i < nodes.size(); ++i) {
            REQUIRE_EQ(std::string(nodes[i]->name), children[i]->name);
        }
    }
}

RegistryValue MakeValue(unsigned kind) {
    switch (kind % 8) {
        case 0:
            return {registry::kTypeNumber, kind * 0x01020304U, {}};
        case 1:
            return {registry::kTypeBinary, 0, {}};
        case 2:
            return {registry::kTypeBinary, 0, {'\0', '\xFF', static_cast<char>(kind)}};
        case 3:
            return {registry::kTypeString, 0, "two\nlines"};
        case 4:
            return {registry::kTypeString, 0, "with \"quotes\"="};
        case 5:
            return {registry::kTypeString, 0, std::string(kind * 70, 'x')};
        default:
            return {registry::kTypeString, 0, std::string(1, static_cast<char>(kind))};
    }
}

/// Both registries, changed in the same way.
class Pair {
public:
    explicit Pair(std::string_view text) : m_text(MakeText(text)), m_plain(text) {}

    RegistryText& Text() { return *m_text; }
    const PlainRegistry& Plain() const { return m_plain; }

    void Change(unsigned what, unsigned which, unsigned with) {
        const PlainKeyPtr key = m_plain.Keys().empty()
                                    ? m_plain.Root("HKEY_LOCAL_MACHINE")
                                    : m_plain.Keys()[which % m_plain.Keys().size()];
        KeyNode* const node = FindNode(*m_text, *key);
        REQUIRE(node != nullptr);
        const std::string name = kNames[with % 8];
        switch (what % 8) {
            case 0:
            case 1:
            case 2:
                REQUIRE_EQ(m_text->SetValue(*node, name, MakeValue(with / 8)),
                           m_plain.SetValue(*key, name, MakeValue(with / 8)));
                RequireSameValue(m_text->Value(*node, name), m_plain.Value(*key, name));
                return;
            case 3:
                REQUIRE_EQ(m_text->DeleteValue(*node, name), m_plain.DeleteValue(*key, name));
                REQUIRE(!m_text->Value(*node, name).has_value());
                return;
            case 4:
                return Delete(key, *node);
            default:
                return Create(key->name + (with % 4 == 0 ? "\\New\\K" : "\\k") +
                              static_cast<char>('0' + with / 4 % 8));
        }
    }

private:
    void Delete(const PlainKeyPtr& key, KeyNode& node) {
        REQUIRE_EQ(m_text->Children(node).empty(), m_plain.Children(*key).empty());
        if (!key->IsRoot() && m_plain.Children(*key).empty()) {
            m_text->Delete(node);
            m_plain.Delete(key);
            REQUIRE(m_text->Find(FoldedName(key->name)) == nullptr);
        }
    }

    void Create(const std::string& name) {
        if (name.size() > registry::kMaxKeyName) {
            return;
        }
        REQUIRE_EQ(m_text->Find(FoldedName(name)) == nullptr, m_plain.Find(name) == nullptr);
        if (!m_plain.Find(name)) {
            KeyNode& node = m_text->Create(name);
            m_plain.Create(name);
            REQUIRE(m_text->Find(FoldedName(name)) == &node);
        }
    }

    std::unique_ptr<RegistryText> m_text;
    PlainRegistry m_plain;
};

/// What is written must read back to itself.
void RequireStable(const std::string& written, const PlainRegistry& plain) {
    REQUIRE_EQ(written, plain.Write(kUncut));
    REQUIRE_EQ(RegistryText::Check(written), registry::kSuccess);
    const auto again = MakeText(written);
    REQUIRE_EQ(WriteText(*again), written);
    RequireSameKeys(*again, PlainRegistry(written));
}

}  // namespace

FUZZ_TARGET(registry_text) {
    const size_t end = std::min(bytes.find('\0'), bytes.size());
    FuzzInput changes(bytes.substr(0, end));
    const std::string_view text =
        bytes.substr(std::min(end + 1, bytes.size())).substr(0, kLongestText);
    REQUIRE_EQ(RegistryText::Check(text), PlainRegistry::Check(text));
    if (PlainRegistry::Check(text) != 0) {
        return;
    }
    {  // looked up before all keys are known, in the given order and again
        Pair looked(text);
        RequireSameKeys(looked.Text(), looked.Plain());
        RequireSameKeys(looked.Text(), looked.Plain());
    }
    Pair pair(text);
    RequireStable(WriteText(pair.Text()), pair.Plain());
    Pair changed(text);
    for (int i = 0; i < 40 && !changes.IsEmpty(); ++i) {
        const unsigned what = changes.Byte();
        const unsigned which = changes.Byte();
        changed.Change(what, which, changes.Byte());
    }
    RequireSameKeys(changed.Text(), changed.Plain());
    RequireStable(WriteText(changed.Text()), changed.Plain());
}

}  // namespace zeldlg::fuzz
