// The off-line unlock without a window: the challenge as it is read out, the help desk's response
// while it is typed, and the rules of a new PIN that is set with it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace zeldlg {

/// The challenge as it is read out: two upper-case hexadecimal digits for each byte, nothing
/// between them.
std::string ChallengeText(std::string_view bytes);

/// Whether the text holds nothing but hexadecimal digits, of both cases, and blanks.
bool IsResponseText(std::wstring_view text);

/// The whole bytes of a response text: blanks are skipped wherever they stand, two digits make a
/// byte, the high nibble first. A lone last digit counts for nothing.
std::string DecodeResponse(std::wstring_view text);

/// In UTF-8 bytes. A negative minimum asks for nothing, a negative maximum allows nothing.
struct NewPinBounds {
    int32_t min = 0;
    int32_t max = 0;
};

struct NewPinRules {
    bool minOk = false;
    bool maxOk = false;
    bool equal = false;

    bool LengthOk() const { return minOk && maxOk; }
};

/// Both entries have to keep to the bounds. The second is looked at only when the first does, so
/// that minOk and maxOk say what is wrong with the one that is wrong.
NewPinRules CheckNewPin(const NewPinBounds& bounds, std::string_view pin,
                        std::string_view confirmation);

}  // namespace zeldlg
