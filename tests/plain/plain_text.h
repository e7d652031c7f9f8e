// Text rules written a second time, as plainly as they are told: what the library's own code is
// compared with.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zeldlg::plain {

/// One well-formed UTF-8 sequence at the start of a text, as the Unicode tables have it.
/// @param length set to its bytes, or to 0 when there is none
char32_t PlainSequence(std::string_view text, size_t& length);

/// Bytes outside well-formed sequences become `replacement`, or themselves (Latin-1) when it is 0.
std::u32string PlainDecode(std::string_view text, char32_t replacement);

/// Only for characters of Unicode that are no surrogates.
std::string PlainEncode(std::u32string_view text);

/// A name of the registry, decoded and in lower case.
std::u32string PlainFold(std::string_view name);

std::wstring AsWide(std::u32string_view text);

/// Split at each LF; one CR in front of an LF goes with it. No empty line behind the last LF.
std::vector<std::string> PlainLines(std::string_view text);

}  // namespace zeldlg::plain
