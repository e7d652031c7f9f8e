#include "registry/registry_refresh.h"

#include <fcntl.h>
#include <sys/sendfile.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <string_view>

#include "platform/file_descriptor.h"

namespace zeldlg::registry {
namespace {

using platform::FileDescriptor;

constexpr std::string_view kStampMark = R"("RegistryHash"=")";
constexpr size_t kBlockSize = 65536;
constexpr mode_t kDirectoryMode = 0700;
constexpr mode_t kCopyMode = 0766;

// False as well for a file that cannot be looked at: it must not be taken for a missing one.
bool IsMissing(const std::string& path) {
    struct stat status = {};
    return stat(path.c_str(), &status) != 0 && (errno == ENOENT || errno == ENOTDIR);
}

// Appends one block to `text`. @return the bytes read, 0 at the end of the file, -1 on errors
ssize_t ReadBlock(const FileDescriptor& file, std::string& text) {
    const size_t before = text.size();
    const size_t block = std::clamp<size_t>(file.Size(), 1, kBlockSize);
    text.resize(before + block);
    const ssize_t count = file.Read(text.data() + before, block);
    text.resize(before + static_cast<size_t>(std::max<ssize_t>(count, 0)));
    return count;
}

// memmem() is several times as fast as std::string::find() in a text full of quotes.
size_t FindMark(const std::string& text) {
    const void* found = memmem(text.data(), text.size(), kStampMark.data(), kStampMark.size());
    return found == nullptr ? std::string::npos
                            : static_cast<size_t>(static_cast<const char*>(found) - text.data());
}

// @param made set when the file was made and is nobody else's yet
FileDescriptor OpenForCopy(const std::string& path, bool missing, bool& made) {
    if (!missing) {
        return FileDescriptor::Open(path, O_WRONLY);
    }
    FileDescriptor file = FileDescriptor::Open(path, O_WRONLY | O_CREAT | O_EXCL, kCopyMode);
    made = file.IsOpen();
    if (!made && errno == EEXIST) {
        // Made by another process meanwhile, or a symbolic link to a file that is to be made.
        file = FileDescriptor::Open(path, O_WRONLY | O_CREAT, kCopyMode);
    }
    return file;
}

// Copies all of `from`. @return false when not all of it arrived
bool CopyContent(const FileDescriptor& from, const FileDescriptor& to) {
    size_t left = from.Size();
    while (left > 0) {
        const ssize_t count = sendfile(to.Get(), from.Get(), nullptr, left);
        if (count > 0) {
            left -= static_cast<size_t>(count);
        } else if (count == 0 || errno != EINTR) {
            return false;
        }
    }
    return true;
}

}  // namespace

RegistryStamp ReadStamp(const std::string& path) {
    RegistryStamp stamp;
    const FileDescriptor file = FileDescriptor::Open(path, O_RDONLY);
    if (!file.IsOpen()) {
        return stamp;
    }
    std::string text;
    ssize_t count = 0;
    size_t begin = std::string::npos;
    while (begin == std::string::npos) {
        // The mark may lie across two blocks.
        text.erase(0, text.size() - std::min(text.size(), kStampMark.size() - 1));
        count = ReadBlock(file, text);
        if (count <= 0) {
            stamp.readable = count == 0;
            return stamp;
        }
        begin = FindMark(text);
    }
    size_t end = text.find('\n', begin);
    while (end == std::string::npos) {
        const size_t searched = text.size();
        count = ReadBlock(file, text);
        if (count < 0) {
            return stamp;
        }
        if (count == 0) {
            break;
        }
        end = text.find('\n', searched);
    }
    stamp.readable = true;
    stamp.text = text.substr(begin, end == std::string::npos ? end : end + 1 - begin);
    return stamp;
}

Refresh PlanRefresh(const RegistryPlaces& places) {
    const std::optional<std::string> directory = UserDirectory(places);
    if (!directory) {
        return Refresh::None;
    }
    const std::string userPath = RegistryPath(*directory);
    if (IsMissing(userPath)) {
        return Refresh::Make;
    }
    const RegistryStamp shipped = ReadStamp(RegistryPath(places.shippedDirectory));
    if (!shipped.text) {
        return Refresh::None;
    }
    const RegistryStamp user = ReadStamp(userPath);
    return user.readable && user.text != shipped.text ? Refresh::Replace : Refresh::None;
}

void RefreshUserFile(const RegistryPlaces& places) {
    const Refresh refresh = PlanRefresh(places);
    if (refresh == Refresh::None) {
        return;
    }
    const FileDescriptor shipped =
        FileDescriptor::Open(RegistryPath(places.shippedDirectory), O_RDONLY);
    if (!shipped.IsOpen()) {
        return;
    }
    const std::string directory = UserDirectory(places).value_or("");
    const std::string userPath = RegistryPath(directory);
    const bool missing = refresh == Refresh::Make;
    if (missing) {
        mkdir(directory.c_str(), kDirectoryMode);
    }
    bool made = false;
    const FileDescriptor user = OpenForCopy(userPath, missing, made);
    if (user.IsOpen() && !CopyContent(shipped, user) && made) {
        // The beginning of a registry is none: without the file the shipped one is read.
        unlink(userPath.c_str());
    }
}

}  // namespace zeldlg::registry
