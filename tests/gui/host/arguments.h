/// The `key=value` words of a host command. Every key must be taken: what is left is an error,
/// so that a misspelt key never passes for a default.
#pragma once

#include <cstdint>
#include <limits>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace testhost {

/// A command that cannot be understood.
class ProtocolError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// A host text; without value it is the null pointer.
struct Text {
    std::optional<std::string> value;

    const char* Pointer() const { return value ? value->c_str() : nullptr; }
};

/// Bytes; without value they are the null pointer.
struct Bytes {
    std::optional<std::vector<uint8_t>> value;

    const uint8_t* Pointer() const { return value ? value->data() : nullptr; }
    size_t Size() const { return value ? value->size() : 0; }
};

class Arguments {
public:
    explicit Arguments(const std::vector<std::string>& words);

    /// A percent-encoded text; the bare word `null` is the null pointer, and `*N` the letter x
    /// so many times.
    Text TakeText(const std::string& key, std::string_view fallback);
    /// Hexadecimal digits; the bare word `null` is the null pointer.
    Bytes TakeBytes(const std::string& key, std::string_view fallback);
    /// A whole number, decimal or with 0x, that fits T.
    template <typename T>
    T TakeNumber(const std::string& key, T fallback);
    /// Whether `key=null` is present; any other value is an error.
    bool TakeNull(const std::string& key);
    /// All values of a key that may be repeated, as they stand.
    std::vector<std::string> TakeAll(const std::string& key);
    /// Raises ProtocolError when a key has not been taken.
    void ExpectEmpty() const;

private:
    std::optional<std::string> Take(const std::string& key);

    std::multimap<std::string, std::string> m_values;
};

Text DecodeText(const std::string& encoded);
/// The number's 64 bits; `isSigned` says whether it may be negative.
uint64_t ParseNumber(const std::string& text, bool isSigned, uint64_t low, uint64_t high);
std::vector<std::string> Split(std::string_view text, char separator);

template <typename T>
T Arguments::TakeNumber(const std::string& key, T fallback) {
    const std::optional<std::string> text = Take(key);
    if (!text) {
        return fallback;
    }
    return static_cast<T>(ParseNumber(*text, std::numeric_limits<T>::is_signed,
                                      static_cast<uint64_t>(std::numeric_limits<T>::min()),
                                      static_cast<uint64_t>(std::numeric_limits<T>::max())));
}

}  // namespace testhost
