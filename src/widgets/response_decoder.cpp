#include "widgets/response_decoder.h"

namespace zeldlg {

namespace {

constexpr std::wstring_view kAccepted = L"0123456789abcdefABCDEF ";

unsigned NibbleOf(wchar_t digit) {
    if (digit <= L'9') {
        return static_cast<unsigned>(digit - L'0');
    }
    return static_cast<unsigned>(digit - (digit >= L'a' ? L'a' : L'A')) + 10;
}

}  // namespace

bool IsResponseText(std::wstring_view text) {
    return text.find_first_not_of(kAccepted) == std::wstring_view::npos;
}

std::string DecodeResponse(std::wstring_view text) {
    std::string bytes;
    unsigned high = 0;
    bool hasHigh = false;
    for (const wchar_t character : text) {
        if (character == L' ') {
            continue;
        }
        const unsigned nibble = NibbleOf(character);
        if (hasHigh) {
            bytes += static_cast<char>(high << 4 | nibble);
        }
        high = nibble;
        hasHigh = !hasHigh;
    }
    return bytes;
}

}  // namespace zeldlg
