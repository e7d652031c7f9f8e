#include "registry/registry_encoding.h"

#include <algorithm>
#include <clocale>
#include <cstddef>
#include <cwctype>

namespace zeldlg::registry {
namespace {

constexpr char ToLowerAscii(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

bool IsAscii(std::string_view text) {
    return std::all_of(text.begin(), text.end(),
                       [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

// Lower case by Unicode's rules whatever the host's locale is; a system without that locale
// folds ASCII only. What is not ASCII stays so (the Kelvin sign is no "k"): names in ASCII are
// compared byte by byte.
wchar_t ToLower(wchar_t c) {
    // Made once, on whichever thread comes first, and never freed: it is a few words.
    static const locale_t unicode = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    if (c < 0x80) {
        return static_cast<wchar_t>(ToLowerAscii(static_cast<char>(c)));
    }
    if (unicode == nullptr) {
        return c;
    }
    const auto lower = static_cast<wchar_t>(towlower_l(static_cast<wint_t>(c), unicode));
    return lower < 0x80 ? c : lower;
}

// Compares from the end: the paths of one registry differ there first.
bool EqualsFoldedAscii(std::string_view name, std::string_view folded) {
    for (size_t i = folded.size(); i > 0; --i) {
        if (ToLowerAscii(name[i - 1]) != folded[i - 1]) {
            return false;
        }
    }
    return true;
}

}  // namespace

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
