// Response texts of any characters, and challenges of any bytes. Two digits make a byte whatever
// blanks stand between; what a challenge shows reads back as its bytes.
#include "dialogs/challenge_response.h"

#include <algorithm>

#include "fuzz_target.h"
#include "plain/plain_text.h"

namespace zeldlg::fuzz {

namespace {

/// Nothing for a text with anything but digits and blanks.
bool PlainResponse(const std::wstring& text, std::string& bytes) {
    const std::wstring lower = L"0123456789abcdef";
    const std::wstring upper = L"0123456789ABCDEF";
    std::string digits;
    for (const wchar_t c : text) {
        const size_t value = std::min(lower.find(c), upper.find(c));
        if (value != std::wstring::npos) {
            digits += static_cast<char>(value);
        } else if (c != L' ') {
            return false;
        }
    }
    for (size_t i = 0; i + 1 < digits.size(); i += 2) {
        bytes += static_cast<char>(digits[i] * 16 + digits[i + 1]);
    }
    return true;
}

}  // namespace

FUZZ_TARGET(response_decoder) {
    const std::wstring text = plain::AsWide(plain::PlainDecode(bytes, 0));
    std::string expected;
    const bool accepted = PlainResponse(text, expected);
    REQUIRE_EQ(IsResponseText(text), accepted);
    if (accepted) {
        REQUIRE_EQ(DecodeResponse(text), expected);
        REQUIRE_EQ(DecodeResponse(text + L' '), expected);
    } else {
        DecodeResponse(text);  // is never asked for, and does no harm
    }

    const std::string challenge = ChallengeText(bytes);
    REQUIRE_EQ(challenge.size(), bytes.size() * 2);
    const std::wstring shown(challenge.begin(), challenge.end());
    REQUIRE(IsResponseText(shown));
    REQUIRE(shown.find_first_of(L"abcdef ") == std::wstring::npos);
    REQUIRE_EQ(DecodeResponse(shown), std::string(bytes));
}

}  // namespace zeldlg::fuzz
