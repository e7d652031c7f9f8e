#include "dialogs/challenge_response.h"

#include <utility>

namespace zeldlg {

namespace {

constexpr std::wstring_view kAccepted = L"0123456789abcdefABCDEF ";

unsigned NibbleOf(wchar_t digit) {
    if (digit < L'A') {
        return static_cast<unsigned>(digit - L'0');
    }
    return static_cast<unsigned>(digit - (digit >= L'a' ? L'a' : L'A')) + 10;
}

}  // namespace

std::string ChallengeText(std::string_view bytes) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string text;
    for (const char byte : bytes) {
        const auto value = static_cast<unsigned char>(byte);
        text += {kDigits[value >> 4], kDigits[value & 0xF]};
    }
    return text;
}

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

NewPinRules CheckNewPin(const NewPinBounds& bounds, std::string_view pin,
                        std::string_view confirmation) {
    const auto minOk = [&](std::string_view entry) {
        return std::cmp_greater_equal(entry.size(), bounds.min);
    };
    const auto maxOk = [&](std::string_view entry) {
        return std::cmp_less_equal(entry.size(), bounds.max);
    };
    const std::string_view judged = minOk(pin) && maxOk(pin) ? confirmation : pin;
    return {.minOk = minOk(judged), .maxOk = maxOk(judged), .equal = pin == confirmation};
}

}  // namespace zeldlg
