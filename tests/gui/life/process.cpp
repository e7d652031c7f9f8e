#include "process.h"

#include <unistd.h>

#include <array>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <string>

namespace life {

namespace {

std::string NameOf(const std::filesystem::path& task) {
    std::string name;
    std::getline(std::ifstream(task / "comm"), name);
    return name;
}

}  // namespace

void Say(const char* word, uint64_t number) {
    std::array<char, 64> line{};
    size_t length = 0;
    for (; word[length] != 0; ++length) {
        line.at(length) = word[length];
    }
    line.at(length++) = ' ';
    std::array<char, 20> digits{};
    size_t count = 0;
    do {
        digits.at(count++) = static_cast<char>('0' + number % 10);
        number /= 10;
    } while (number != 0);
    while (count != 0) {
        line.at(length++) = digits.at(--count);
    }
    line.at(length++) = '\n';
    static_cast<void>(!write(STDOUT_FILENO, line.data(), length));
}

bool HasLibraryThread(size_t own) {
    const std::string name = NameOf("/proc/self");
    size_t count = 0;
    for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
        count += NameOf(task.path()) == name ? 1 : 0;
    }
    return count > own;
}

}  // namespace life
