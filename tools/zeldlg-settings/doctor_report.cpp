#include "doctor_report.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace admin {

namespace {

constexpr int kLabelWidth = 22;

std::string Printable(std::string text) {
    for (char& character : text) {
        if (static_cast<unsigned char>(character) < ' ' || character == '\x7f') {
            character = '?';
        }
    }
    return text;
}

}  // namespace

void Report::Section(const char* title) {
    Conclude();
    printf("%s%s\n", m_inSection ? "\n" : "", title);
    m_inSection = true;
    m_sectionIsFine = true;
}

void Report::Line(const std::string& what, const std::string& value) {
    printf("  %-*s  %s\n", kLabelWidth, what.c_str(), Printable(value).c_str());
}

void Report::Problem(const std::string& what, const std::string& advice) {
    printf("  problem: %s\n           %s\n", Printable(what).c_str(), Printable(advice).c_str());
    m_sectionIsFine = false;
    ++m_problems;
}

void Report::Conclude() const {
    if (m_inSection && m_sectionIsFine) {
        puts("  ok");
    }
    fflush(stdout);
}

int Report::Finish() {
    Conclude();
    printf("\n%d problem%s found\n", m_problems, m_problems == 1 ? "" : "s");
    return m_problems;
}

std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    for (size_t from = 0; from < text.size();) {
        const size_t end = std::min(text.find('\n', from), text.size());
        lines.push_back(text.substr(from, end - from));
        from = end + 1;
    }
    return lines;
}

std::pair<std::string, std::string> Split(const std::string& line) {
    const size_t colon = line.find(": ");
    return colon == std::string::npos ? std::pair(std::string(), line)
                                      : std::pair(line.substr(0, colon), line.substr(colon + 2));
}

std::string Variable(const char* name) {
    const char* const value = std::getenv(name);
    return value == nullptr ? "not set" : *value == '\0' ? "set, but empty" : value;
}

}  // namespace admin
