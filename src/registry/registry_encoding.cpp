#include "registry/registry_encoding.h"

#include <algorithm>
#include <clocale>
#include <cstddef>
#include <cwctype>

namespace zeldlg::registry {
namespace {

constexpr char32_t kReplacement = 0xFFFD;
constexpr char32_t kLastCharacter = 0x10FFFF;

constexpr bool IsSurrogate(char32_t c) { return c >= 0xD800 && c <= 0xDFFF; }

constexpr char ToLowerAscii(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

bool IsAscii(std::string_view text) {
    return std::all_of(text.begin(), text.end(),
                       [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

struct Decoded {
    char32_t character;
    std::size_t bytes;
};

/// The first character of `text`, which is not empty.
Decoded DecodeFirst(std::string_view text) {
    struct Form {
        unsigned char mask, lead;
        std::size_t bytes;
        char32_t smallest;
    };
    static constexpr Form kForms[] = {
        {0xE0, 0xC0, 2, 0x80}, {0xF0, 0xE0, 3, 0x800}, {0xF8, 0xF0, 4, 0x10000}};
    const auto first = static_cast<unsigned char>(text.front());
    for (const Form& form : kForms) {
        if ((first & form.mask) != form.lead || text.size() < form.bytes) {
            continue;
        }
        char32_t character = first & static_cast<unsigned char>(~form.mask);
        std::size_t i = 1;
        while (i < form.bytes && (static_cast<unsigned char>(text[i]) & 0xC0U) == 0x80U) {
            character = (character << 6U) | (static_cast<unsigned char>(text[i]) & 0x3FU);
            ++i;
        }
        if (i == form.bytes && character >= form.smallest && character <= kLastCharacter &&
            !IsSurrogate(character)) {
            return {character, form.bytes};
        }
    }
    return {first, 1};  // ASCII, or read as Latin-1
}

void Append(std::string& out, char32_t c) {
    const auto byte = [&out](char32_t value) {
        out.push_back(static_cast<char>(static_cast<unsigned char>(value)));
    };
    if (c < 0x80) {
        byte(c);
    } else if (c < 0x800) {
        byte(0xC0 | (c >> 6U));
        byte(0x80 | (c & 0x3FU));
    } else if (c < 0x10000) {
        byte(0xE0 | (c >> 12U));
        byte(0x80 | ((c >> 6U) & 0x3FU));
        byte(0x80 | (c & 0x3FU));
    } else {
        byte(0xF0 | (c >> 18U));
        byte(0x80 | ((c >> 12U) & 0x3FU));
        byte(0x80 | ((c >> 6U) & 0x3FU));
        byte(0x80 | (c & 0x3FU));
    }
}

/// Lower case by Unicode's rules whatever the host's locale is; a system without that locale
/// folds ASCII only. What is not ASCII stays so (the Kelvin sign is no "k"): names in ASCII are
/// compared byte by byte.
wchar_t ToLower(wchar_t c) {
    // Made once, on whichever thread comes first, and never freed: it is a few words.
    static const locale_t unicode = ::newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    if (c < 0x80) {
        return static_cast<wchar_t>(ToLowerAscii(static_cast<char>(c)));
    }
    if (unicode == nullptr) {
        return c;
    }
    const auto lower = static_cast<wchar_t>(::towlower_l(static_cast<std::wint_t>(c), unicode));
    return lower < 0x80 ? c : lower;
}

/// Compares from the end: the paths of one registry differ there first.
bool EqualsFoldedAscii(std::string_view name, std::string_view folded) {
    for (std::size_t i = folded.size(); i > 0; --i) {
        if (ToLowerAscii(name[i - 1]) != folded[i - 1]) {
            return false;
        }
    }
    return true;
}

}  // namespace

std::wstring ToWide(std::string_view text) {
    std::wstring wide;
    wide.reserve(text.size());
    while (!text.empty()) {
        const Decoded decoded = DecodeFirst(text);
        wide.push_back(static_cast<wchar_t>(decoded.character));
        text.remove_prefix(decoded.bytes);
    }
    return wide;
}

std::string ToNarrow(std::wstring_view text) {
    std::string narrow;
    narrow.reserve(text.size());
    for (const wchar_t wide : text) {
        const auto c = static_cast<char32_t>(wide);
        Append(narrow, c > kLastCharacter || IsSurrogate(c) ? kReplacement : c);
    }
    return narrow;
}

std::string FoldName(std::string_view name) {
    if (IsAscii(name)) {
        std::string folded(name);
        std::transform(folded.begin(), folded.end(), folded.begin(), ToLowerAscii);
        return folded;
    }
    std::wstring wide = ToWide(name);
    std::transform(wide.begin(), wide.end(), wide.begin(), ToLower);
    return ToNarrow(wide);
}

FoldedName::FoldedName(std::string_view name) : m_text(FoldName(name)), m_ascii(IsAscii(m_text)) {}

bool FoldedName::Matches(std::string_view name) const {
    if (m_ascii) {
        return name.size() == m_text.size() && EqualsFoldedAscii(name, m_text);
    }
    return FoldName(name) == m_text;
}

bool FoldedName::IsAncestorOf(std::string_view name) const {
    if (m_ascii) {
        return name.size() > m_text.size() && name[m_text.size()] == '\\' &&
               EqualsFoldedAscii(name, m_text);
    }
    const std::string folded = FoldName(name);
    return folded.size() > m_text.size() && folded[m_text.size()] == '\\' &&
           folded.starts_with(m_text);
}

}  // namespace zeldlg::registry
