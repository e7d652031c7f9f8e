#include "platform/utf8.h"

#include <glib.h>

#include <cstdlib>
#include <stdexcept>

namespace zeldlg::platform {

namespace {

constexpr wchar_t kReplacementCharacter = L'\uFFFD';

size_t ValidPrefix(std::string_view text) {
    const char* end = text.data();
    g_utf8_validate(text.data(), static_cast<gssize>(text.size()), &end);
    return static_cast<size_t>(end - text.data());
}

void AppendValid(std::wstring& out, std::string_view valid) {
    for (const char* next = valid.data(); next < valid.data() + valid.size();
         next = g_utf8_next_char(next)) {
        out += static_cast<wchar_t>(g_utf8_get_char(next));
    }
}

}  // namespace

std::wstring DecodeUtf8(const char* text) {
    const std::string bytes(text);
    std::wstring decoded;
    decoded.reserve(bytes.size());
    for (std::string_view rest = bytes; !rest.empty();) {
        const size_t valid = ValidPrefix(rest);
        AppendValid(decoded, rest.substr(0, valid));
        rest.remove_prefix(valid);
        if (!rest.empty()) {
            decoded += kReplacementCharacter;
            rest.remove_prefix(1);
        }
    }
    return decoded;
}

std::wstring DecodeUtf8OrLocale(const char* text) {
    const std::string bytes(text);
    if (ValidPrefix(bytes) == bytes.size()) {
        return DecodeUtf8(text);
    }
    std::wstring decoded(bytes.size(), L'\0');
    const size_t length = mbstowcs(decoded.data(), bytes.c_str(), decoded.size());
    if (length == static_cast<size_t>(-1)) {
        throw std::runtime_error("neither UTF-8 nor the locale's encoding");
    }
    decoded.resize(length);
    return decoded;
}

}  // namespace zeldlg::platform
