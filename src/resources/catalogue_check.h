// Whether the bytes of a message catalogue (.mo) can be read safely. The toolkit trusts the
// numbers in the file and crashes on wrong ones.
#pragma once

#include <functional>
#include <string_view>

namespace zeldlg {

/// @return Whether header, tables and every text lie inside `file`, every text ends with a zero
///         byte and there is at least one.
bool IsSoundCatalogue(std::string_view file);

/// Calls `each` with every text of a sound catalogue and its translation. The first pair is the
/// empty text and the catalogue's header.
void ForEachTranslation(
    std::string_view file,
    const std::function<void(std::string_view text, std::string_view translation)>& each);

}  // namespace zeldlg
