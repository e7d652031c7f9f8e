#include "platform/file_descriptor.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

namespace zeldlg::platform {

FileDescriptor::~FileDescriptor() {
    if (IsOpen()) {
        close(m_fd);
    }
}

FileDescriptor::FileDescriptor(FileDescriptor&& other) noexcept
    : m_fd(std::exchange(other.m_fd, -1)), m_size(other.m_size) {}

FileDescriptor& FileDescriptor::operator=(FileDescriptor&& other) noexcept {
    std::swap(m_fd, other.m_fd);
    std::swap(m_size, other.m_size);
    return *this;
}

FileDescriptor FileDescriptor::Open(const std::string& path, int flags, mode_t mode) {
    FileDescriptor file;
    do {
        // Not blocking: opening a FIFO would wait for its other end.
        file.m_fd = open(path.c_str(), flags | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, mode);
    } while (!file.IsOpen() && errno == EINTR);
    if (!file.IsOpen()) {
        return file;
    }
    struct stat status = {};
    if (fstat(file.m_fd, &status) != 0 || !S_ISREG(status.st_mode)) {
        file = FileDescriptor();
        if ((flags & O_EXCL) != 0) {
            unlink(path.c_str());  // it was made just now, and stays empty
        }
        errno = EINVAL;
        return file;
    }
    file.m_size = static_cast<size_t>(status.st_size);
    return file;
}

ssize_t FileDescriptor::Read(char* buffer, size_t size) const {
    size_t done = 0;
    while (done < size) {
        const ssize_t count = read(m_fd, buffer + done, size - done);
        if (count == 0) {
            break;
        }
        if (count > 0) {
            done += static_cast<size_t>(count);
        } else if (errno != EINTR) {
            return -1;
        }
    }
    return static_cast<ssize_t>(done);
}

bool WriteAll(int file, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = write(file, bytes.data(), bytes.size());
        if (count >= 0) {
            bytes.remove_prefix(static_cast<size_t>(count));
        } else if (errno != EINTR) {
            return false;
        }
    }
    return true;
}

bool FileDescriptor::Flush() const {
    int result = 0;
    do {
        result = fsync(m_fd);
    } while (result != 0 && errno == EINTR);
    return result == 0;
}

}  // namespace zeldlg::platform
