#include "json_line.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <mutex>

namespace testhost {

namespace {

std::string Quoted(std::string_view text) {
    std::string quoted = "\"";
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        if (character == '"' || character == '\\') {
            quoted += '\\';
            quoted += character;
        } else if (byte < 0x20 || byte >= 0x7f) {
            std::array<char, 8> escape{};
            snprintf(escape.data(), escape.size(), "\\u%04x", static_cast<unsigned>(byte));
            quoted += escape.data();
        } else {
            quoted += character;
        }
    }
    return quoted + '"';
}

int g_answers = STDOUT_FILENO;  // written once, before any other thread exists

}  // namespace

void JsonLine::Raw(std::string_view key, std::string_view value) {
    if (!m_fields.empty()) {
        m_fields += ',';
    }
    m_fields += Quoted(key);
    m_fields += ':';
    m_fields += value;
}

void JsonLine::Text(std::string_view key, std::string_view value) { Raw(key, Quoted(value)); }

void JsonLine::Hex(std::string_view key, const void* bytes, size_t count) {
    static constexpr std::string_view kDigits = "0123456789abcdef";
    std::string digits = "\"";
    const auto* byte = static_cast<const uint8_t*>(bytes);
    for (size_t index = 0; index < count; ++index) {
        digits += kDigits[byte[index] >> 4U];
        digits += kDigits[byte[index] & 0x0fU];
    }
    Raw(key, digits + '"');
}

void JsonLine::List(std::string_view key, const std::vector<std::string>& values) {
    std::string list = "[";
    for (const std::string& value : values) {
        list += (list.size() > 1 ? "," : "") + Quoted(value);
    }
    Raw(key, list + ']');
}

void Answer(const JsonLine& line) {
    // Never destroyed: a worker may still answer while the process exits.
    static auto* const mutex = new std::mutex;
    const std::string text = line.Line();
    const std::lock_guard lock(*mutex);
    size_t written = 0;
    while (written < text.size()) {
        const ssize_t count = write(g_answers, text.data() + written, text.size() - written);
        if (count <= 0) {
            _exit(EXIT_FAILURE);  // nobody listens any more
        }
        written += static_cast<size_t>(count);
    }
}

void TakeStandardOutput() {
    g_answers = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 3);
    dup2(STDERR_FILENO, STDOUT_FILENO);
}

}  // namespace testhost
