// The registry file's 8-bit text and the wide characters of the store's interface.
// Also how names are compared: without regard to case, in whichever encoding they stand.
#pragma once

#include <string>
#include <string_view>

#include "platform/utf8.h"

namespace zeldlg::registry {

/// Text of the file as wide characters. The text is UTF-8; bytes that are not part of a
/// well-formed UTF-8 sequence are read as Latin-1, one character a byte. Zero bytes are kept.
inline std::wstring ToWide(std::string_view text) {
    return platform::DecodeUtf8(text, platform::BadByte::Latin1);
}

/// Wide characters as UTF-8. What is no Unicode character becomes U+FFFD.
inline std::string ToNarrow(std::wstring_view text) { return platform::EncodeUtf8(text); }

/// The key or value name `name` (file text) as lower-case UTF-8.
std::string FoldName(std::string_view name);

/// A name that many names of a file are compared with.
/// Names in ASCII, that is all of them but a few, are compared without decoding or allocating.
class FoldedName {
public:
    /// @param name file text or UTF-8, in any case
    explicit FoldedName(std::string_view name);

    /// True when `name` (file text) is this name.
    bool Matches(std::string_view name) const;

    /// True when `name` (file text) is the path of a key somewhere below this one.
    bool IsAncestorOf(std::string_view name) const;

    const std::string& Text() const { return m_text; }

private:
    std::string m_text;
    bool m_ascii;
};

}  // namespace zeldlg::registry
