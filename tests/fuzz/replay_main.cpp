// Runs every fuzz target over the files of its corpus, with the ordinary compiler and without a
// fuzzer: replay CORPORA. Prints what each target got, and fails when one got nothing.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "fuzz_target.h"

namespace {

using zeldlg::fuzz::FuzzTarget;

std::vector<std::filesystem::path> FilesIn(const std::filesystem::path& directory) {
    std::vector<std::filesystem::path> files;
    std::error_code missing;
    for (const auto& entry : std::filesystem::directory_iterator(directory, missing)) {
        files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    return files;
}

std::string ReadFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

bool Replay(const FuzzTarget& target, const std::filesystem::path& corpora) {
    const auto start = std::chrono::steady_clock::now();
    const std::vector<std::filesystem::path> files = FilesIn(corpora / target.Name());
    for (const std::filesystem::path& path : files) {
        // Said before, for the case that the input ends the process.
        fprintf(stderr, "\r\033[K%s", path.c_str());
        target.Run(ReadFile(path));
    }
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
    fprintf(stderr, "\r\033[K");
    printf("%-24s %5zu inputs %8.3f s\n", std::string(target.Name()).c_str(), files.size(),
           took.count());
    return !files.empty();
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        fprintf(stderr, "usage: %s CORPORA\n", argv[0]);
        return 2;
    }
    bool allPlayed = FuzzTarget::First() != nullptr;
    for (const FuzzTarget* target = FuzzTarget::First(); target != nullptr;
         target = target->Next()) {
        allPlayed = Replay(*target, argv[1]) && allPlayed;
    }
    return allPlayed ? 0 : 1;
}
