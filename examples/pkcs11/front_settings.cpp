#include "front_settings.h"

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace p11 {

namespace {

constexpr const char* kFile = "/etc/zeldlg/p11-module.conf";

void ReadWords(std::istream& words, FrontSettings& settings) {
    std::string word;
    std::string value;
    while (words >> word) {
        if (word.front() == '#') {
            std::getline(words, value);
        } else if (!(words >> value)) {
            throw std::runtime_error("nothing follows " + word);
        } else if (word == "--module") {
            settings.module = value;
        } else if (word == "--cache" && value.find_first_not_of("0123456789") == value.npos &&
                   value.size() < 9) {
            settings.cache = std::chrono::seconds(std::stol(value));
        } else {
            throw std::runtime_error("not understood: " + word + " " + value);
        }
    }
}

}  // namespace

FrontSettings ReadFrontSettings(const char* reserved) {
    FrontSettings settings;
    // A program with the rights of another user takes nothing from the environment.
    const char* const named = secure_getenv("ZELDLG_P11_CONFIG");
    std::ifstream file(named != nullptr ? named : kFile);
    ReadWords(file, settings);
    std::istringstream words(reserved != nullptr ? reserved : "");
    ReadWords(words, settings);
    const char* const module = secure_getenv("ZELDLG_P11_MODULE");
    if (module != nullptr && *module != '\0') {
        settings.module = module;
    }
    return settings;
}

}  // namespace p11
