#include "dialogs/challenge_text.h"

namespace zeldlg {

std::string ChallengeText(std::string_view bytes) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string text;
    for (const char byte : bytes) {
        const auto value = static_cast<unsigned char>(byte);
        text += {kDigits[value >> 4], kDigits[value & 0xF]};
    }
    return text;
}

}  // namespace zeldlg
