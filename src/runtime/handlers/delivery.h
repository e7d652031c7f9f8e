// Hands bytes and texts to buffers of the host: all that belongs together or nothing.
#pragma once

#include <zeldlg/zeldlg.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace zeldlg {

/// A null buffer fits nothing unless its capacity is 0 as well.
inline bool Fits(std::string_view bytes, const uint8_t* buffer, uint64_t capacity) {
    return bytes.size() <= capacity && (buffer != nullptr || capacity == 0);
}

/// Copies bytes that fit. @param length Receives their number.
template <typename Length>
void Deliver(std::string_view bytes, uint8_t* buffer, Length& length) {
    if (!bytes.empty()) {
        memcpy(buffer, bytes.data(), bytes.size());
    }
    length = static_cast<Length>(bytes.size());
}

/// The size protocol of the translation and locale requests: copies the text with a terminating
/// zero, when both fit.
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
