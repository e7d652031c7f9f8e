// An open file, closed when its holder goes.
// Only regular files are opened: what stands in a file's place may be anything.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <string>
#include <string_view>

namespace zeldlg::platform {

/// Writes all of it. @return false on failure; a part may have been written
bool WriteAll(int file, std::string_view bytes);

class FileDescriptor {
public:
    FileDescriptor() = default;
    ~FileDescriptor();
    FileDescriptor(FileDescriptor&& other) noexcept;
    FileDescriptor& operator=(FileDescriptor&& other) noexcept;
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;

    /// Opens a regular file as open(2) does, symbolic links followed. Anything else (a directory,
    /// a FIFO, a device) counts as not to be opened, and is not waited for. On failure the result
    /// is not open and errno tells why; with O_EXCL no file is left behind.
    static FileDescriptor Open(const std::string& path, int flags, mode_t mode = 0);

    bool IsOpen() const { return m_fd >= 0; }
    int Get() const { return m_fd; }

    /// The file's size in bytes, as it was when the file was opened.
    size_t Size() const { return m_size; }

    /// Reads until the buffer is full or the file ends.
    /// @return the bytes read, or -1 with errno set
    ssize_t Read(char* buffer, size_t size) const;

    bool Write(std::string_view bytes) const { return WriteAll(m_fd, bytes); }

    /// Brings what was written to the disk. @return false on failure
    bool Flush() const;

private:
    int m_fd = -1;
    size_t m_size = 0;
};

}  // namespace zeldlg::platform
