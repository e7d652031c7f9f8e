// One value line of a registry file: what it says, and how a value is written as a line.
// There is no escaping in the format; a text runs to the last double quote of its line.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zeldlg::registry {

/// Value types, with the Windows codes.
inline constexpr uint32_t kTypeString = 1;
inline constexpr uint32_t kTypeBinary = 3;
inline constexpr uint32_t kTypeNumber = 4;

/// A value as the file holds it.
struct RegistryValue {
    uint32_t type = kTypeString;
    uint32_t number = 0;  ///< of kTypeNumber
    std::string bytes;    ///< of kTypeString the 8-bit text, of kTypeBinary the bytes

    bool operator==(const RegistryValue&) const = default;
};

/// A value line taken apart. The views point into the line.
struct ValueLine {
    std::string_view name;  ///< empty for the key's default value
    uint32_t type = kTypeString;
    std::string_view data;  ///< the text, or the digits that follow the colon
};

/// Takes a line (without its line end) apart.
/// The name ends at the first `"=` that a text, "dword:" or "hex:" follows. A text without a
/// closing quote runs to the end of the line.
/// @return nothing when the line is no value line
std::optional<ValueLine> ParseValueLine(std::string_view line);

/// The value of a value line. Numbers and binary values are read as far as their digits go: a
/// number without any is 0; of one with more than eight digits the last eight count.
RegistryValue ReadValue(const ValueLine& line);

/// The line, without a line end, that stores `value` under `name` (UTF-8; empty for the default
/// value). @return nothing when the format cannot hold the value: the line would be several lines
///         or read back as something else
std::optional<std::string> FormatValueLine(std::string_view name, const RegistryValue& value);

}  // namespace zeldlg::registry
