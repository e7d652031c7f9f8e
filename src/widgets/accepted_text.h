// What of a text goes into a PIN field: the one rule for keys, pastes, drops and input methods.
#pragma once

#include <string_view>

#include "platform/secret.h"

namespace zeldlg {

/// The characters that a PIN field takes.
enum class Accepts { Everything, AsciiOnly };

/// What goes in of `offered`, which is UTF-8: of its first line that is not empty (a PIN copied
/// from a file or a table brings line breaks along, unseen behind the mask) the characters that
/// the field takes. Empty when all of it is refused.
platform::SecretBytes AcceptedText(std::string_view offered, Accepts accepts);

}  // namespace zeldlg
