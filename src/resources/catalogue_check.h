// Whether the bytes of a message catalogue (.mo) can be read safely. The toolkit trusts the
// numbers in the file and crashes on wrong ones.
#pragma once

#include <string_view>

namespace zeldlg {

/// @return Whether header, tables and every text lie inside `file`, every text ends with a zero
///         byte and there is at least one.
bool IsSoundCatalogue(std::string_view file);

}  // namespace zeldlg
