// A challenge in the form in which it is read out to the help desk.
#pragma once

#include <string>
#include <string_view>

namespace zeldlg {

/// Two upper-case hexadecimal digits for each byte, nothing between them.
std::string ChallengeText(std::string_view bytes);

}  // namespace zeldlg
