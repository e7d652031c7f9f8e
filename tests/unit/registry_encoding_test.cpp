#include "registry/registry_encoding.h"

#include <gtest/gtest.h>

#include <string>

namespace zeldlg::registry {
namespace {

TEST(RegistryEncoding, ReadsUtf8AndTakesEverythingElseAsLatin1) {
    const struct {
        std::string text;
        std::wstring expected;
    } rows[] = {
        {"", L""},
        {"plain", L"plain"},
        {"caf\xC3\xA9", L"caf\u00E9"},
        {"caf\xE9", L"caf\u00E9"},
        {"\xE2\x82\xAC", L"\u20AC"},
        {"\xF0\x9F\x94\x91", L"\U0001F511"},
        {"\xE2\x82", L"\u00E2\u0082"},                      // cut off
        {"\xC0\xAF", L"\u00C0\u00AF"},                      // longer than needed
        {"\xED\xA0\x80", L"\u00ED\u00A0\u0080"},            // a surrogate
        {"\xF4\x90\x80\x80", L"\u00F4\u0090\u0080\u0080"},  // beyond the last character
        {"\xF8\x88\x80\x80\x80", L"\u00F8\u0088\u0080\u0080\u0080"},
        {"\xC3\xA9 \xE9", L"\u00E9 \u00E9"},
        {std::string("a\0b", 3), std::wstring(L"a\0b", 3)},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(ToWide(row.text), row.expected) << testing::PrintToString(row.text);
    }
}

TEST(RegistryEncoding, WritesUtf8AndReplacesWhatIsNoCharacter) {
    EXPECT_EQ(ToNarrow(L"a\u00E9\u20AC\U0001F511"), "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x94\x91");
    EXPECT_EQ(ToNarrow(std::wstring(1, static_cast<wchar_t>(0xD800))), "\xEF\xBF\xBD");
    EXPECT_EQ(ToNarrow(std::wstring(1, static_cast<wchar_t>(0x110000))), "\xEF\xBF\xBD");
}

TEST(RegistryEncoding, EveryCharacterSurvivesTheWayThereAndBack) {
    for (char32_t c = 1; c <= 0x10FFFF; c += c < 0x3000 ? 1 : 61) {
        if (c >= 0xD800 && c <= 0xDFFF) {
            continue;
        }
        const std::wstring text(1, static_cast<wchar_t>(c));
        ASSERT_EQ(ToWide(ToNarrow(text)), text) << static_cast<unsigned>(c);
    }
}

TEST(RegistryEncoding, NamesMatchWithoutRegardToCaseOrEncoding) {
    EXPECT_TRUE(FoldedName("Software").Matches("SOFTWARE"));
    EXPECT_FALSE(FoldedName("Software").Matches("Softwar"));
    EXPECT_FALSE(FoldedName("Software").Matches("Softwaro"));
    EXPECT_TRUE(FoldedName("\xC3\x84pfel").Matches("\xC3\xA4PFEL"));
    EXPECT_TRUE(FoldedName("\xC3\x84pfel").Matches("\xE4pfel"));
    EXPECT_FALSE(FoldedName("\xC3\x84pfel").Matches("Apfel"));
    EXPECT_FALSE(FoldedName("[").Matches("{"));
}

TEST(RegistryEncoding, WhatIsNotAsciiNeverMatchesAscii) {
    EXPECT_EQ(FoldName("\xE2\x84\xAA"), "\xE2\x84\xAA");  // the Kelvin sign
    EXPECT_FALSE(FoldedName("k").Matches("\xE2\x84\xAA"));
    EXPECT_FALSE(FoldedName("\xE2\x84\xAA").Matches("k"));
    EXPECT_FALSE(FoldedName("\xC4\xB0").Matches("i"));  // I with a dot
    EXPECT_TRUE(FoldedName("\xC4\xB0").Matches("\xC4\xB0"));
}

TEST(RegistryEncoding, AKeyIsAnAncestorOfWhatFollowsABackslash) {
    EXPECT_TRUE(FoldedName("A\\b").IsAncestorOf("a\\B\\c"));
    EXPECT_FALSE(FoldedName("A\\b").IsAncestorOf("a\\b"));
    EXPECT_FALSE(FoldedName("A\\b").IsAncestorOf("a\\bc\\d"));
    EXPECT_TRUE(FoldedName("\xC3\x84").IsAncestorOf("\xE4\\x"));
    EXPECT_FALSE(FoldedName("\xC3\x84").IsAncestorOf("\xE4x\\x"));
}

}  // namespace
}  // namespace zeldlg::registry
