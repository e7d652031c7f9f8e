#include "scratch_places.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

#include "fuzz_target.h"

namespace zeldlg::fuzz {

namespace {

void Put(const std::string& path, const std::optional<std::string>& content) {
    if (!content) {
        unlink(path.c_str());
        return;
    }
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    REQUIRE(file >= 0);
    REQUIRE(write(file, content->data(), content->size()) == static_cast<ssize_t>(content->size()));
    close(file);
}

std::optional<std::string> Get(const std::string& path) {
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0) {
        return std::nullopt;
    }
    struct stat status = {};
    REQUIRE(fstat(file, &status) == 0);
    std::string content(static_cast<size_t>(status.st_size), '\0');
    REQUIRE(read(file, content.data(), content.size()) == static_cast<ssize_t>(content.size()));
    close(file);
    return content;
}

}  // namespace

ScratchPlaces::ScratchPlaces() {
    const char* const base = access("/dev/shm", W_OK) == 0 ? "/dev/shm" : "/tmp";
    std::string pattern = std::string(base) + "/zeldlg-fuzz-XXXXXX";
    REQUIRE(mkdtemp(pattern.data()) != nullptr);
    m_path = pattern;
    for (const char* directory : {"/home", "/home/.tessaly", "/shipped"}) {
        REQUIRE(mkdir((m_path + directory).c_str(), 0700) == 0);
    }
}

ScratchPlaces::~ScratchPlaces() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

registry::RegistryPlaces ScratchPlaces::Places() const {
    return {m_path + "/shipped", m_path + "/etc", m_path + "/tmp",
            [home = m_path + "/home"](const char* name) -> std::optional<std::string> {
                return std::string_view(name) == "ZEL_HOME" ? std::optional(home) : std::nullopt;
            }};
}

void ScratchPlaces::PutUser(const std::optional<std::string>& content) const {
    Put(UserFile(), content);
}

void ScratchPlaces::PutShipped(const std::optional<std::string>& content) const {
    Put(ShippedFile(), content);
}

std::optional<std::string> ScratchPlaces::User() const { return Get(UserFile()); }

std::optional<std::string> ScratchPlaces::Shipped() const { return Get(ShippedFile()); }

}  // namespace zeldlg::fuzz
