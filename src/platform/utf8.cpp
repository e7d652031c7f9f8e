#include "platform/utf8.h"

#include <glib.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <string_view>

namespace zeldlg::platform {

namespace {

constexpr gunichar kReplacementCharacter = 0xFFFD;

// The bytes that the first `limit` characters can take at most.
std::string_view BytesOf(const char* text, size_t limit) {
    if (text == nullptr) {
        throw std::logic_error("no text");
    }
    constexpr size_t kLongest = 4;
    return {text,
            limit < std::wstring::npos / kLongest ? strnlen(text, limit * kLongest) : strlen(text)};
}

}  // namespace

std::wstring DecodeUtf8(std::string_view text, BadByte bad, size_t limit) {
    std::wstring decoded;
    decoded.reserve(std::min(text.size(), limit));
    while (!text.empty() && decoded.size() < limit) {
        const gunichar character =
            g_utf8_get_char_validated(text.data(), static_cast<gssize>(text.size()));
        const auto byte = static_cast<unsigned char>(text.front());
        if (g_unichar_validate(character) != 0) {
            decoded += static_cast<wchar_t>(character);
            text.remove_prefix(static_cast<size_t>(g_utf8_skip[byte]));
        } else {  // a zero byte is none either
            decoded += static_cast<wchar_t>(
                bad == BadByte::Latin1 || byte == 0 ? byte : kReplacementCharacter);
            text.remove_prefix(1);
        }
    }
    return decoded;
}

std::string EncodeUtf8(std::wstring_view text) {
    std::string encoded;
    encoded.reserve(text.size());
    for (const wchar_t wide : text) {
        const auto character = static_cast<gunichar>(wide);
        char bytes[6];
        const gint count = g_unichar_to_utf8(
            g_unichar_validate(character) != 0 ? character : kReplacementCharacter, bytes);
        encoded.append(bytes, static_cast<size_t>(count));
    }
    return encoded;
}

std::wstring DecodeUtf8(const char* text, size_t limit) {
    return DecodeUtf8(BytesOf(text, limit), BadByte::Replaced, limit);
}

std::wstring DecodeUtf8OrLocale(const char* text, size_t limit) {
    const std::string_view bytes = BytesOf(text, std::wstring::npos);
    if (g_utf8_validate(bytes.data(), static_cast<gssize>(bytes.size()), nullptr) != 0) {
        return DecodeUtf8(text, limit);
    }
    const size_t length = mbstowcs(nullptr, text, 0);
    if (length == static_cast<size_t>(-1)) {
        throw std::runtime_error("neither UTF-8 nor the locale's encoding");
    }
    std::wstring decoded(std::min(length, limit), L'\0');
    mbstowcs(decoded.data(), text, decoded.size());
    return decoded;
}

}  // namespace zeldlg::platform
