#include "platform/utf8.h"

#include <glib.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <string_view>

namespace zeldlg::platform {

namespace {

constexpr wchar_t kReplacementCharacter = L'\uFFFD';

size_t ValidPrefix(std::string_view text) {
    const char* end = text.data();
    g_utf8_validate(text.data(), static_cast<gssize>(text.size()), &end);
    return static_cast<size_t>(end - text.data());
}

void AppendValid(std::wstring& out, std::string_view valid, size_t limit) {
    for (const char* next = valid.data(); next < valid.data() + valid.size() && out.size() < limit;
         next = g_utf8_next_char(next)) {
        out += static_cast<wchar_t>(g_utf8_get_char(next));
    }
}

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

std::wstring DecodeUtf8(const char* text, size_t limit) {
    std::wstring decoded;
    for (std::string_view rest = BytesOf(text, limit); !rest.empty() && decoded.size() < limit;) {
        const size_t valid = ValidPrefix(rest);
        AppendValid(decoded, rest.substr(0, valid), limit);
        rest.remove_prefix(valid);
        if (!rest.empty() && decoded.size() < limit) {
            decoded += kReplacementCharacter;
            rest.remove_prefix(1);
        }
    }
    return decoded;
}

std::wstring DecodeUtf8OrLocale(const char* text, size_t limit) {
    const std::string_view bytes = BytesOf(text, std::wstring::npos);
    if (ValidPrefix(bytes) == bytes.size()) {
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
