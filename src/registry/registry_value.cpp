#include "registry/registry_value.h"

#include <cstddef>
#include <utility>

namespace zeldlg::registry {
namespace {

constexpr std::string_view kNumberMark = "dword:";
constexpr std::string_view kBinaryMark = "hex:";
constexpr std::string_view kDefaultName = "@";
constexpr std::string_view kDigits = "0123456789abcdef";

// -1 for what is no hexadecimal digit.
int DigitValue(char c) {
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    if (c >= 'a' && c <= 'f') {
        return c - 'a' + 10;
    }
    return c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
}

// Sets type and data from what follows the equals sign.
bool ParseData(std::string_view rest, ValueLine& line) {
    if (rest.starts_with(kNumberMark)) {
        line.type = kTypeNumber;
        line.data = rest.substr(kNumberMark.size());
        return true;
    }
    if (rest.starts_with(kBinaryMark)) {
        line.type = kTypeBinary;
        line.data = rest.substr(kBinaryMark.size());
        return true;
    }
    if (rest.starts_with('"')) {
        line.type = kTypeString;
        const size_t last = rest.rfind('"');
        line.data = last == 0 ? rest.substr(1) : rest.substr(1, last - 1);
        return true;
    }
    return false;
}

uint32_t ParseNumber(std::string_view digits) {
    uint32_t number = 0;
    for (const char c : digits) {
        const int digit = DigitValue(c);
        if (digit < 0) {
            break;
        }
        number = (number << 4U) | static_cast<uint32_t>(digit);
    }
    return number;
}

std::string ParseBinary(std::string_view digits) {
    std::string bytes;
    while (digits.size() >= 2) {
        const int high = DigitValue(digits[0]);
        const int low = DigitValue(digits[1]);
        if (high < 0 || low < 0) {
            break;
        }
        bytes.push_back(static_cast<char>(static_cast<unsigned char>(high * 16 + low)));
        digits.remove_prefix(2);
        if (!digits.starts_with(',')) {
            break;
        }
        digits.remove_prefix(1);
    }
    return bytes;
}

std::string FormatNumber(uint32_t number) {
    std::string digits(8, '0');
    for (size_t i = digits.size(); i > 0; --i) {
        digits[i - 1] = kDigits[number & 0xFU];
        number >>= 4U;
    }
    return digits;
}

std::string FormatBinary(std::string_view bytes) {
    std::string digits;
    digits.reserve(bytes.size() * 3);
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        if (!digits.empty()) {
            digits.push_back(',');
        }
        digits.push_back(kDigits[byte >> 4U]);
        digits.push_back(kDigits[byte & 0xFU]);
    }
    return digits;
}

}  // namespace

std::optional<ValueLine> ParseValueLine(std::string_view line) {
    ValueLine value;
    if (line.starts_with("@=")) {
        return ParseData(line.substr(2), value) ? std::optional(value) : std::nullopt;
    }
    if (!line.starts_with('"')) {
        return std::nullopt;
    }
    for (size_t quote = line.find("\"=", 1); quote != std::string_view::npos;
         quote = line.find("\"=", quote + 1)) {
        if (ParseData(line.substr(quote + 2), value)) {
            value.name = line.substr(1, quote - 1);
            if (value.name == kDefaultName) {
                value.name = {};
            }
            return value;
        }
    }
    return std::nullopt;
}

RegistryValue ReadValue(const ValueLine& line) {
    switch (line.type) {
        case kTypeNumber:
            return {kTypeNumber, ParseNumber(line.data), {}};
        case kTypeBinary:
            return {kTypeBinary, 0, ParseBinary(line.data)};
        default:
            return {kTypeString, 0, std::string(line.data)};
    }
}

// What the file's writer takes in one piece, without the line end.
constexpr size_t kLongestLine = 16381;

std::optional<std::string> FormatValueLine(std::string_view name, const RegistryValue& value) {
    std::string line = "@=";
    if (!name.empty()) {
        line.assign("\"").append(name).append("\"=");
    }
    switch (value.type) {
        case kTypeNumber:
            line.append(kNumberMark).append(FormatNumber(value.number));
            break;
        case kTypeBinary:
            line.append(kBinaryMark).append(FormatBinary(value.bytes));
            break;
        default:
            line.append("\"").append(value.bytes).append("\"");
    }
    if (line.find('\n') != std::string::npos || line.size() > kLongestLine) {
        return std::nullopt;
    }
    const std::optional<ValueLine> parsed = ParseValueLine(line);
    const bool isSame = parsed && parsed->name == name && ReadValue(*parsed) == value;
    return isSame ? std::optional(std::move(line)) : std::nullopt;
}

}  // namespace zeldlg::registry
