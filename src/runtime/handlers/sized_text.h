// Hands a text to a host's buffer by the size protocol of the translation and locale requests.
#pragma once

#include <zeldlg/zeldlg.h>

#include <algorithm>
#include <cstdint>
#include <string_view>

namespace zeldlg {

/// Copies the text with a terminating zero, when both fit.
/// @param size In: capacity of `buffer`; out: what is needed, the zero included. Units of `Unit`.
/// @return ZELDLG_OK or ZELDLG_BUFFER_TOO_SMALL; a null buffer is too small for anything.
template <typename Unit>
uint32_t StoreSizedText(std::basic_string_view<Unit> text, Unit* buffer, uint32_t& size) {
    const bool fits = text.size() < size && buffer != nullptr;
    size = static_cast<uint32_t>(text.size() + 1);
    if (!fits) {
        return ZELDLG_BUFFER_TOO_SMALL;
    }
    *std::copy(text.begin(), text.end(), buffer) = 0;
    return ZELDLG_OK;
}

}  // namespace zeldlg
