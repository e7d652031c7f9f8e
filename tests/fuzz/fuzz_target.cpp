#include "fuzz_target.h"

#include <cstdio>
#include <cstdlib>

namespace zeldlg::fuzz {

namespace {

// Written while the program starts, by the targets' own objects.
const FuzzTarget* g_first = nullptr;

void AppendShown(std::string& shown, unsigned long code) {
    if (code >= 0x20 && code < 0x7F && code != '\\') {
        shown += static_cast<char>(code);
        return;
    }
    char form[24];
    snprintf(form, sizeof form, "\\{%lx}", code);
    shown += form;
}

}  // namespace

FuzzTarget::FuzzTarget(const char* name, FuzzFunction function)
    : m_name(name), m_function(function), m_next(g_first) {
    g_first = this;
}

const FuzzTarget* FuzzTarget::First() { return g_first; }

uint8_t FuzzInput::Byte() {
    if (m_rest.empty()) {
        return 0;
    }
    const auto byte = static_cast<uint8_t>(m_rest.front());
    m_rest.remove_prefix(1);
    return byte;
}

uint32_t FuzzInput::Word() {
    uint32_t word = 0;
    for (int i = 0; i < 4; ++i) {
        word = (word << 8U) | Byte();
    }
    return word;
}

std::string FuzzInput::Text(unsigned most) {
    const size_t length = Below(most + 1);
    const std::string text(m_rest.substr(0, length));
    m_rest.remove_prefix(text.size());
    return text;
}

std::string FuzzInput::Rest() {
    const std::string text(m_rest);
    m_rest = {};
    return text;
}

std::string Shown(std::string_view text) {
    std::string shown = "\"";
    for (const char c : text) {
        AppendShown(shown, static_cast<unsigned char>(c));
    }
    return shown + "\"";
}

std::string Shown(std::wstring_view text) {
    std::string shown = "L\"";
    for (const wchar_t c : text) {
        AppendShown(shown, static_cast<uint32_t>(c));
    }
    return shown + "\"";
}

void Fail(const char* file, int line, const std::string& what) {
    fprintf(stderr, "%s:%d: %s\n", file, line, what.c_str());
    abort();
}

}  // namespace zeldlg::fuzz
