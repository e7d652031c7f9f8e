/// One answer of the test host: a JSON object on one line.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace testhost {

class JsonLine {
public:
    void Text(std::string_view key, std::string_view value);
    void Number(std::string_view key, int64_t value) { Raw(key, std::to_string(value)); }
    void Unsigned(std::string_view key, uint64_t value) { Raw(key, std::to_string(value)); }
    void Flag(std::string_view key, bool value) { Raw(key, value ? "true" : "false"); }
    void Null(std::string_view key) { Raw(key, "null"); }
    /// Bytes as lower-case hexadecimal digits.
    void Hex(std::string_view key, const void* bytes, size_t count);
    void List(std::string_view key, const std::vector<std::string>& values);

    std::string Line() const { return "{" + m_fields + "}\n"; }

private:
    void Raw(std::string_view key, std::string_view value);

    std::string m_fields;
};

/// Writes the line whole to the host's answer stream; callable from any thread.
void Answer(const JsonLine& line);

/// Keeps standard output for the answers alone: what anybody else prints there goes to standard
/// error from now on.
void TakeStandardOutput();

}  // namespace testhost
