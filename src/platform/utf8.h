// UTF-8, the one codec of the library, and the locale's multibyte encoding of host texts.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace zeldlg::platform {

/// What becomes of a byte that is not part of valid UTF-8.
enum class BadByte {
    Replaced,  ///< U+FFFD
    Latin1,    ///< the character of that code
};

/// Decodes UTF-8, zero bytes too. @param limit In characters.
std::wstring DecodeUtf8(std::string_view text, BadByte bad, size_t limit = std::wstring::npos);

/// Encodes characters, each that is none of Unicode as U+FFFD.
std::string EncodeUtf8(std::wstring_view text);

/// Decodes a zero-terminated host text. Each byte that is not part of valid UTF-8 becomes U+FFFD.
/// Throws std::logic_error for null.
/// @param limit In characters; what is behind is not even looked at.
std::wstring DecodeUtf8(const char* text, size_t limit = std::wstring::npos);

/// Decodes a host text that may also be in the current locale's multibyte encoding, which is
/// tried when the text is not valid UTF-8. Throws std::logic_error for null and
/// std::runtime_error when neither encoding fits all of the text, whatever the limit.
std::wstring DecodeUtf8OrLocale(const char* text, size_t limit = std::wstring::npos);

}  // namespace zeldlg::platform
