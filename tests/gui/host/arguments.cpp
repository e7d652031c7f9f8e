#include "arguments.h"

#include <cerrno>
#include <cstdlib>

namespace testhost {

namespace {

constexpr std::string_view kNull = "null";
constexpr uint64_t kMostLetters = 1 << 30;

uint8_t HexDigits(std::string_view digits) {
    if (digits.size() != 2 ||
        digits.find_first_not_of("0123456789abcdefABCDEF") != std::string_view::npos) {
        throw ProtocolError("not two hexadecimal digits: " + std::string(digits));
    }
    return static_cast<uint8_t>(strtoul(std::string(digits).c_str(), nullptr, 16));
}

}  // namespace

Arguments::Arguments(const std::vector<std::string>& words) {
    for (const std::string& word : words) {
        const size_t equals = word.find('=');
        if (equals == std::string::npos) {
            throw ProtocolError("not key=value: " + word);
        }
        m_values.emplace(word.substr(0, equals), word.substr(equals + 1));
    }
}

std::optional<std::string> Arguments::Take(const std::string& key) {
    const std::vector<std::string> values = TakeAll(key);
    if (values.size() > 1) {
        throw ProtocolError("given twice: " + key);
    }
    return values.empty() ? std::nullopt : std::optional(values.front());
}

std::vector<std::string> Arguments::TakeAll(const std::string& key) {
    std::vector<std::string> values;
    const auto [first, last] = m_values.equal_range(key);
    for (auto entry = first; entry != last; ++entry) {
        values.push_back(entry->second);
    }
    m_values.erase(first, last);
    return values;
}

Text Arguments::TakeText(const std::string& key, std::string_view fallback) {
    const std::optional<std::string> encoded = Take(key);
    return encoded ? DecodeText(*encoded) : Text{std::string(fallback)};
}

Bytes Arguments::TakeBytes(const std::string& key, std::string_view fallback) {
    const std::string digits = Take(key).value_or(std::string(fallback));
    if (digits == kNull) {
        return {};
    }
    std::vector<uint8_t> bytes;
    for (size_t place = 0; place < digits.size(); place += 2) {
        bytes.push_back(HexDigits(std::string_view(digits).substr(place, 2)));
    }
    return {bytes};
}

bool Arguments::TakeNull(const std::string& key) {
    const std::optional<std::string> value = Take(key);
    if (value && *value != kNull) {
        throw ProtocolError("only null can be given for " + key);
    }
    return value.has_value();
}

void Arguments::ExpectEmpty() const {
    if (!m_values.empty()) {
        throw ProtocolError("unknown key: " + m_values.begin()->first);
    }
}

Text DecodeText(const std::string& encoded) {
    if (encoded == kNull) {
        return {};
    }
    if (encoded.starts_with('*')) {
        return {std::string(ParseNumber(encoded.substr(1), false, 0, kMostLetters), 'x')};
    }
    std::string text;
    for (size_t place = 0; place < encoded.size(); ++place) {
        if (encoded[place] == '%') {
            text += static_cast<char>(HexDigits(std::string_view(encoded).substr(place + 1, 2)));
            place += 2;
        } else {
            text += encoded[place];
        }
    }
    return {text};
}

uint64_t ParseNumber(const std::string& text, bool isSigned, uint64_t low, uint64_t high) {
    char* end = nullptr;
    errno = 0;
    const bool negative = !text.empty() && text.front() == '-';
    uint64_t value = 0;
    bool fits = false;
    if (isSigned) {
        const int64_t number = strtoll(text.c_str(), &end, 0);
        fits = number >= static_cast<int64_t>(low) && number <= static_cast<int64_t>(high);
        value = static_cast<uint64_t>(number);
    } else {
        value = strtoull(text.c_str(), &end, 0);
        fits = !negative && value >= low && value <= high;
    }
    if (text.empty() || *end != '\0' || errno != 0 || !fits) {
        throw ProtocolError("not a number of this field: " + text);
    }
    return value;
}

std::vector<std::string> Split(std::string_view text, char separator) {
    std::vector<std::string> pieces;
    size_t start = 0;
    for (size_t end = text.find(separator); end != std::string_view::npos;
         end = text.find(separator, start)) {
        pieces.emplace_back(text.substr(start, end - start));
        start = end + 1;
    }
    pieces.emplace_back(text.substr(start));
    return pieces;
}

}  // namespace testhost
