// Decoding of host texts and of registry texts, and the folding of names, against the plain rules.
#include "platform/utf8.h"

#include <algorithm>
#include <clocale>
#include <stdexcept>

#include "fuzz_target.h"
#include "plain/plain_text.h"
#include "registry/registry_encoding.h"

namespace zeldlg::fuzz {

namespace {

using namespace plain;  // NOLINT(google-build-using-namespace): written for this

bool IsUtf8(std::string_view text) { return PlainEncode(PlainDecode(text, 0)) == text; }

void RequireHostText(const std::string& text) {
    const std::wstring expected = AsWide(PlainDecode(text, 0xFFFD));
    REQUIRE_EQ(platform::DecodeUtf8(text.c_str()), expected);
    // In the C locale nothing but ASCII is known: UTF-8 or an exception.
    std::wstring decoded;
    bool raised = false;
    try {
        decoded = platform::DecodeUtf8OrLocale(text.c_str());
    } catch (const std::runtime_error&) {
        raised = true;
    }
    REQUIRE_EQ(raised, !IsUtf8(text));
    if (!raised) {
        REQUIRE_EQ(decoded, expected);
    }
}

void RequireRegistryText(const std::string& text) {
    const std::wstring wide = registry::ToWide(text);
    REQUIRE_EQ(wide, AsWide(PlainDecode(text, 0)));
    const std::string narrow = registry::ToNarrow(wide);
    REQUIRE_EQ(narrow, PlainEncode(PlainDecode(text, 0)));
    REQUIRE_EQ(registry::ToWide(narrow), wide);
    REQUIRE_EQ(registry::FoldName(text), PlainEncode(PlainFold(text)));
    REQUIRE_EQ(registry::FoldName(registry::FoldName(text)), registry::FoldName(text));
}

/// Any numbers as wide characters.
void RequireNarrow(std::string_view bytes) {
    std::wstring wide;
    std::u32string sound;
    FuzzInput input(bytes);
    while (!input.IsEmpty()) {
        const char32_t code = input.Flag() ? input.Word() : input.Word() & 0xFFFFU;
        wide += static_cast<wchar_t>(code);
        const bool isCharacter = code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF);
        sound += isCharacter ? code : char32_t{0xFFFD};
    }
    REQUIRE_EQ(registry::ToNarrow(wide), PlainEncode(sound));
}

void RequireMatch(std::string_view name, std::string_view other) {
    const registry::FoldedName folded(name);
    const bool same = PlainFold(name) == PlainFold(other);
    REQUIRE_EQ(folded.Matches(other), same);
    REQUIRE_EQ(registry::FoldedName(other).Matches(name), same);
    std::string below(other);
    below += "\\x";
    REQUIRE_EQ(folded.IsAncestorOf(below),
               (PlainFold(below) + U"\\").starts_with(PlainFold(name) + U"\\"));
}

}  // namespace

FUZZ_TARGET(utf8) {
    const std::string text(bytes);
    RequireHostText(text.substr(0, text.find('\0')));
    RequireRegistryText(text);
    RequireNarrow(bytes);
    const size_t middle = std::min(bytes.find('\0'), bytes.size());
    RequireMatch(bytes.substr(0, middle), bytes.substr(std::min(middle + 1, bytes.size())));
    RequireMatch(bytes.substr(0, middle), bytes.substr(0, middle));
}

}  // namespace zeldlg::fuzz
