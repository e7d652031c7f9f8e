// Hands a dialog's bytes to buffers of the host: all that belongs together or nothing.
#pragma once

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

}  // namespace zeldlg
