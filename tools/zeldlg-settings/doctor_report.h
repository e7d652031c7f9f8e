// What the doctor says: headings, aligned lines, problems with advice, and their number.
// Nothing that it prints can move the terminal's cursor, whatever stands in a file.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace admin {

class Report {
public:
    // Begins a topic, and concludes the one before.
    void Section(const char* title);

    void Line(const std::string& what, const std::string& value);

    // Says what is wrong and, in a line of its own, what can be done.
    void Problem(const std::string& what, const std::string& advice);

    // Concludes the last topic and says how many problems there were. Returns that number.
    int Finish();

private:
    void Conclude() const;

    bool m_inSection = false;
    bool m_sectionIsFine = true;
    int m_problems = 0;
};

// The lines of a text, without line ends.
std::vector<std::string> Lines(const std::string& text);

// A line "WHAT: VALUE" in its two parts; the first is empty for another one.
std::pair<std::string, std::string> Split(const std::string& line);

// An environment variable's value, or that it is not set.
std::string Variable(const char* name);

}  // namespace admin
