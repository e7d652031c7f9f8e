#include "widgets/accepted_text.h"

namespace zeldlg {

namespace {

constexpr std::string_view kLineEnds[] = {"\n", "\r", "\u2028", "\u2029"};

// In UTF-8 all bytes of a character from U+0080 on are above 0x7F.
bool IsAsciiByte(char byte) { return static_cast<unsigned char>(byte) < 0x80; }

// Of the line end that `text` begins with, in bytes; 0 when it begins with a line.
size_t LineEndLength(std::string_view text) {
    for (const std::string_view end : kLineEnds) {
        if (text.starts_with(end)) {
            return end.size();
        }
    }
    return 0;
}

std::string_view FirstLine(std::string_view text) {
    while (const size_t length = LineEndLength(text)) {
        text.remove_prefix(length);
    }
    size_t length = 0;
    while (length < text.size() && LineEndLength(text.substr(length)) == 0) {
        ++length;
    }
    return text.substr(0, length);
}

}  // namespace

platform::SecretBytes AcceptedText(std::string_view offered, Accepts accepts) {
    const std::string_view line = FirstLine(offered);
    return accepts == Accepts::AsciiOnly ? platform::SecretBytes(line, IsAsciiByte)
                                         : platform::SecretBytes(line);
}

}  // namespace zeldlg
