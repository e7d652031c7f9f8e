// The help desk's response while it is typed: which characters it may hold and the bytes that it
// stands for.
#pragma once

#include <string>
#include <string_view>

namespace zeldlg {

/// Whether the text holds nothing but hexadecimal digits, of both cases, and blanks.
bool IsResponseText(std::wstring_view text);

/// The whole bytes of a response text: blanks are skipped wherever they stand, two digits make a
/// byte, the high nibble first. A lone last digit counts for nothing.
std::string DecodeResponse(std::wstring_view text);

}  // namespace zeldlg
