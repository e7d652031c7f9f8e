#include "pin/ascii_filter.h"

#include <algorithm>

namespace zeldlg {

namespace {

// In UTF-8 all bytes of a character from U+0080 on are above 0x7F.
bool IsAsciiByte(char byte) { return static_cast<unsigned char>(byte) < 0x80; }

}  // namespace

bool IsAscii(std::string_view utf8) { return std::all_of(utf8.begin(), utf8.end(), IsAsciiByte); }

bool ContainsAscii(std::string_view utf8) {
    return std::any_of(utf8.begin(), utf8.end(), IsAsciiByte);
}

platform::SecretBytes KeepAscii(std::string_view utf8) { return {utf8, IsAsciiByte}; }

}  // namespace zeldlg
