// Random registries survive being written and read; random damage never does harm.
// All seeds are fixed: a failure can be repeated.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <map>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "registry/registry_store.h"
#include "registry/registry_text.h"
#include "support/registry_fixture.h"

namespace zeldlg::registry {
namespace {

using namespace std::string_literals;
using test::MakeText;
using test::WriteText;

using Random = std::mt19937;

unsigned Below(Random& random, unsigned bound) {
    return std::uniform_int_distribution<unsigned>(0, bound - 1)(random);
}

std::string RandomPieces(Random& random, unsigned maxPieces) {
    static const std::array<std::string, 16> kPieces = {
        "a",        "Key",          " ", "[", "]",      "\"", "=", "9",
        "\xC3\xA9", "\xE2\x82\xAC", ";", "@", "dword:", "x",  ",", "\xF0\x9F\x94\x91"};
    std::string text;
    for (unsigned i = Below(random, maxPieces + 1); i > 0; --i) {
        text += kPieces[Below(random, kPieces.size())];
    }
    return text;
}

RegistryValue RandomValue(Random& random) {
    RegistryValue value;
    switch (Below(random, 3)) {
        case 0:
            value.type = kTypeNumber;
            value.number = static_cast<uint32_t>(random());
            break;
        case 1:
            value.type = kTypeBinary;
            value.bytes.resize(Below(random, 40));
            std::generate(value.bytes.begin(), value.bytes.end(),
                          [&random] { return static_cast<char>(Below(random, 256) - 128U); });
            break;
        default:
            value.type = kTypeString;
            value.bytes = RandomPieces(random, 8) + (Below(random, 4) == 0 ? "\\" : "");
    }
    return value;
}

/// What a registry holds: by folded key name, by folded value name.
using Model = std::map<std::string, std::map<std::string, RegistryValue>>;

/// Fills an empty registry at random. @return what it then holds
Model Fill(Random& random, RegistryText& text) {
    Model model;
    for (unsigned keys = Below(random, 12); keys > 0; --keys) {
        std::string name = "HKEY_LOCAL_MACHINE";
        for (unsigned depth = 1 + Below(random, 3); depth > 0; --depth) {
            name += "\\k" + RandomPieces(random, 3);
        }
        const FoldedName folded(name);
        KeyNode* key = text.Find(folded);
        if (key == nullptr) {
            key = &text.Create(name);
        }
        auto& values = model[folded.Text()];
        for (unsigned count = Below(random, 8); count > 0; --count) {
            const std::string valueName =
                Below(random, 5) == 0 ? "" : "v" + RandomPieces(random, 4);
            const RegistryValue value = RandomValue(random);
            if (text.SetValue(*key, valueName, value)) {
                values[FoldName(valueName)] = value;
            } else {
                // Only a name that looks like the end of a name and the beginning of data.
                EXPECT_NE(valueName.find(R"("=)"), std::string::npos) << valueName;
            }
        }
    }
    return model;
}

void ExpectHolds(RegistryText& text, const Model& model) {
    for (const auto& [name, values] : model) {
        KeyNode* key = text.Find(FoldedName(name));
        ASSERT_NE(key, nullptr) << name;
        for (const auto& [valueName, value] : values) {
            ASSERT_EQ(text.Value(*key, valueName), value) << name << ": " << valueName;
        }
        ASSERT_EQ(key->sections.empty() ? 0 : key->sections.front().lines.size(), values.size());
    }
}

TEST(RegistryRandom, ThousandRegistriesReadBackToTheSameValues) {
    for (unsigned seed = 0; seed < 1000; ++seed) {
        Random random(seed);
        const auto text = MakeText("REGEDIT4\r\n\r\n");
        const Model model = Fill(random, *text);
        const std::string written = WriteText(*text);
        ASSERT_EQ(RegistryText::Check(written), kSuccess) << seed;
        const auto again = MakeText(written);
        ExpectHolds(*again, model);
        ASSERT_EQ(WriteText(*again), written) << seed;
        if (testing::Test::HasFatalFailure()) {
            FAIL() << "seed " << seed;
        }
    }
}

class RegistryRandomFiles : public test::RegistryTest {};

TEST_F(RegistryRandomFiles, RegistriesInFilesReadBackToTheSameValuesThroughTheStore) {
    for (unsigned seed = 0; seed < 50; ++seed) {
        Random random(seed);
        const auto text = MakeText("REGEDIT4\r\n\r\n");
        const Model model = Fill(random, *text);
        test::WriteFile(UserFile(), WriteText(*text));
        {  // a change makes the store write the file itself
            const test::Key any(HKEY_LOCAL_MACHINE, L"");
            ASSERT_EQ(test::SetNumber(any.handle, L"seed", seed), kSuccess);
        }
        const test::Key root(HKEY_LOCAL_MACHINE, L"");
        for (const auto& [name, values] : model) {
            const std::string path = name.substr(name.find('\\'));
            const test::Key key(root.handle, ToWide(path).c_str());
            ASSERT_EQ(key.error, kSuccess) << seed << ": " << name;
            for (const auto& [valueName, value] : values) {
                RegistryValue read;
                ASSERT_EQ(QueryStoredValue(key.handle, ToWide(valueName).c_str(), read), kSuccess);
                ASSERT_EQ(read, value) << seed << ": " << name << ": " << valueName;
            }
        }
    }
}

/// A registry with something of everything.
std::string Original() {
    std::string text = "REGEDIT4\r\n\r\n; comment\r\n\r\n";
    for (int i = 0; i < 4; ++i) {
        std::string section =
            "[HKEY_LOCAL_MACHINE\\Software\\Key#]\r\n\"Number\"=dword:0000000a\r\n"
            "\"Text [x]\"=\"a \"text\" #\"\r\n@=\"\"\r\n\"Bytes\"=hex:01,ab,ff\r\n"
            "\"RegistryHash\"=\"#\"\r\n\r\n[HKEY_LOCAL_MACHINE\\Software\\Key#\\Sub]\r\n\r\n";
        std::replace(section.begin(), section.end(), '#', static_cast<char>('0' + i));
        text += section;
    }
    return text;
}

std::string RandomInsertion(Random& random) {
    switch (Below(random, 9)) {
        case 0:
            return "\0"s;
        case 1:
            return "[";
        case 2:
            return "]";
        case 3:
            return "\n";
        case 4:
            return "\r";
        case 5:
            return "\n[HKEY_LOCAL_MACHINE\\" + std::string(300, 'n') + "]\n";
        case 6:
            return "\n[" + std::string(1 + Below(random, 400), '\\') + "]\r\n";
        case 7:
            return "\"" + std::string(Below(random, 300), 'q') + "\"=hex:0g,,1";
        default:
            return {static_cast<char>(Below(random, 256) - 128U)};
    }
}

void Mutate(Random& random, std::string& text) {
    const size_t at = Below(random, static_cast<unsigned>(text.size()) + 1);
    const size_t length = Below(random, 20);
    switch (Below(random, 7)) {
        case 0:
            text.resize(at);
            break;
        case 1:
            text.erase(at, length);
            break;
        case 2:  // no carriage returns or no line ends at all
            std::erase(text, Below(random, 2) == 0 ? '\r' : '\n');
            break;
        case 3:
            text.insert(at,
                        text.substr(Below(random, static_cast<unsigned>(text.size()) + 1), 200));
            break;
        case 4:
            if (Below(random, 100) == 0) {
                text.insert(at, std::string(1U << 20U, "x[\\\"\n"[Below(random, 5)]));
            }
            break;
        default:
            text.insert(at, RandomInsertion(random));
    }
}

/// Everything that can be read of a registry, read; then changed and written.
void Exercise(RegistryText& text) {
    std::vector<KeyNode*> pending = {text.Find(FoldedName("hkey_local_machine\\software\\KEY1")),
                                     &text.Root("HKEY_LOCAL_MACHINE")};
    while (!pending.empty()) {
        KeyNode* key = pending.back();
        pending.pop_back();
        if (key == nullptr) {
            continue;
        }
        for (const char* name : {"number", "text [X]", "", "Bytes", "RegistryHash"}) {
            text.Value(*key, name);
        }
        const std::vector<KeyNode*>& children = text.Children(*key);
        pending.insert(pending.end(), children.begin(), children.end());
    }
    const std::string written = WriteText(text);
    ASSERT_EQ(RegistryText::Check(written), kSuccess);
    ASSERT_EQ(WriteText(*MakeText(written)), written);

    KeyNode& root = text.Root("HKEY_LOCAL_MACHINE");
    ASSERT_TRUE(text.SetValue(root, "Number", {kTypeNumber, 77, {}}));
    ASSERT_EQ(text.Value(root, "number")->number, 77U);
    if (KeyNode* key = text.Find(FoldedName(R"(HKEY_LOCAL_MACHINE\Software\Key2\Sub)"))) {
        if (key->children.empty()) {
            text.Delete(*key);
            ASSERT_EQ(text.Find(FoldedName(R"(HKEY_LOCAL_MACHINE\Software\Key2\Sub)")), nullptr);
        }
    }
}

TEST(RegistryRandom, TenThousandDamagedTextsAreRefusedOrReadAsFarAsTheyGo) {
    const std::string original = Original();
    std::map<RegistryError, unsigned> results;
    for (unsigned seed = 0; seed < 10000; ++seed) {
        Random random(seed);
        std::string text = original;
        for (unsigned count = 1 + Below(random, 5); count > 0; --count) {
            Mutate(random, text);
        }
        const RegistryError error = RegistryText::Check(text);
        ++results[error];
        if (error == kSuccess) {
            Exercise(*MakeText(text));
        }
        if (testing::Test::HasFatalFailure()) {
            FAIL() << "seed " << seed << ":\n" << testing::PrintToString(text.substr(0, 4000));
        }
    }
    EXPECT_GT(results[kSuccess], 5000U);
    EXPECT_GT(results[kNotRegistry], 10U);
    EXPECT_GT(results[kCorrupt], 10U);
    EXPECT_EQ(results.size(), 3U) << testing::PrintToString(results);
}

TEST_F(RegistryRandomFiles, DamagedFilesYieldDefinedErrorsThroughTheStore) {
    const std::string original = Original();
    std::map<RegistryError, unsigned> results;
    for (unsigned seed = 0; seed < 300; ++seed) {
        Random random(seed);
        std::string text = original;
        for (unsigned count = 1 + Below(random, 5); count > 0; --count) {
            Mutate(random, text);
        }
        test::WriteFile(UserFile(), text);
        HKEY key = 0;
        const RegistryError error =
            RegOpenKeyEx(HKEY_LOCAL_MACHINE, L"Software\\Key1", kAccessDefault, &key);
        ++results[error];
        const RegistryError check = RegistryText::Check(text);
        ASSERT_TRUE(error == check || (check == kSuccess && error == kNotFound)) << seed;
        if (error != kSuccess) {
            continue;
        }
        if (seed % 10 == 0) {
            ASSERT_EQ(test::SetNumber(key, L"Number", 3), kSuccess);
        }
        ASSERT_EQ(RegCloseKey(key), kSuccess) << seed;
        if (seed % 10 == 0) {
            const test::Key again(HKEY_LOCAL_MACHINE, L"Software\\Key1");
            ASSERT_EQ(test::Number(again.handle, L"Number"), 3U) << seed;
        }
    }
    EXPECT_GT(results[kSuccess], 100U);
    EXPECT_GT(results[kCorrupt], 0U);
    EXPECT_GT(results[kNotRegistry], 0U);
}

}  // namespace
}  // namespace zeldlg::registry
