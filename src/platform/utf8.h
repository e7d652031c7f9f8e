// Texts that cross the library's boundary: UTF-8 and the locale's multibyte encoding.
#pragma once

#include <cstddef>
#include <string>

namespace zeldlg::platform {

/// Decodes a zero-terminated host text. Each byte that is not part of valid UTF-8 becomes U+FFFD.
/// Throws std::logic_error for null.
/// @param limit In characters; what is behind is not even looked at.
std::wstring DecodeUtf8(const char* text, std::size_t limit = std::wstring::npos);

/// Decodes a host text that may also be in the current locale's multibyte encoding, which is
/// tried when the text is not valid UTF-8. Throws std::logic_error for null and
/// std::runtime_error when neither encoding fits all of the text, whatever the limit.
std::wstring DecodeUtf8OrLocale(const char* text, std::size_t limit = std::wstring::npos);

}  // namespace zeldlg::platform
