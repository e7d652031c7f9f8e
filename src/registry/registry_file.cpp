#include "registry/registry_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <new>
#include <optional>
#include <utility>

#include "platform/text_output.h"

namespace zeldlg::registry {
namespace {

constexpr std::string_view kEmptyRegistry = "REGEDIT4\r\n\r\n";
constexpr std::string_view kLineEnd = "\r\n";
constexpr size_t kBufferSize = 16384;
constexpr size_t kMaxPiece = kBufferSize - 1;
constexpr size_t kMaxFileSize = size_t{256} << 20U;
constexpr mode_t kPrivateDirectory = 0700;
constexpr mode_t kSharedDirectory = 0777;
constexpr mode_t kNewFileMode = 0600;

FileDescriptor OpenOrMake(const std::string& directory, mode_t directoryMode) {
    const std::string path = RegistryPath(directory);
    FileDescriptor file = FileDescriptor::Open(path, O_RDWR);
    if (file.IsOpen() || errno != ENOENT) {
        return file;
    }
    mkdir(directory.c_str(), directoryMode);
    file = FileDescriptor::Open(path, O_RDWR | O_CREAT | O_EXCL, kNewFileMode);
    if (!file.IsOpen()) {
        // Another process may have made it meanwhile.
        return errno == EEXIST ? FileDescriptor::Open(path, O_RDWR) : std::move(file);
    }
    if (!file.Write(kEmptyRegistry)) {
        unlink(path.c_str());  // a file without its first line would be refused for ever
        return {};
    }
    return FileDescriptor::Open(path, O_RDWR);
}

bool IsRegularFile(const std::string& path) {
    struct stat status = {};
    return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

}  // namespace

LoadableRegistry OpenForReading(const RegistryPlaces& places) {
    LoadableRegistry registry;
    for (const std::string& directory : ReadingDirectories(places)) {
        const std::string path = RegistryPath(directory);
        registry.file = FileDescriptor::Open(path, O_RDONLY);
        if (registry.file.IsOpen()) {
            return registry;
        }
        const bool isWritten =
            directory != places.shippedDirectory && directory != places.systemDirectory;
        registry.passedOver = registry.passedOver || (isWritten && IsRegularFile(path));
    }
    registry.file = OpenForWriting(places);
    return registry;
}

FileDescriptor OpenForWriting(const RegistryPlaces& places) {
    for (const std::optional<std::string>& directory :
         {UserDirectory(places), UserTemporaryDirectory(places)}) {
        if (!directory) {
            continue;
        }
        FileDescriptor file = OpenOrMake(*directory, kPrivateDirectory);
        if (file.IsOpen()) {
            return file;
        }
    }
    return OpenOrMake(SharedTemporaryDirectory(places), kSharedDirectory);
}

RegistryError ReadContent(const FileDescriptor& file, FileContent& content) {
    const size_t size = file.Size();
    if (size > kMaxFileSize) {
        return kNoMemory;
    }
    std::unique_ptr<char[]> text(new (std::nothrow) char[size + 1]);
    if (text == nullptr) {
        return kNoMemory;
    }
    errno = 0;
    const ssize_t count = file.Read(text.get(), size);
    if (count < 0 || static_cast<size_t>(count) < size) {
        platform::DebugPrint("The registry cannot be read: error %d\n", errno);
        return kFileError;
    }
    text[size] = '\0';
    content = {std::move(text), size};
    return kSuccess;
}

RegistryWriter::RegistryWriter(const FileDescriptor& file) : m_file(file) {
    m_buffer.reserve(kBufferSize);
}

bool RegistryWriter::WriteLine(std::string_view line) {
    line = line.substr(0, kMaxPiece - kLineEnd.size());
    if (m_buffer.size() + line.size() + kLineEnd.size() > kMaxPiece && !Drain()) {
        return false;
    }
    m_buffer.append(line).append(kLineEnd);
    return !m_failed;
}

bool RegistryWriter::Finish() { return Drain() && m_file.Flush(); }

bool RegistryWriter::Drain() {
    m_failed = m_failed || !m_file.Write(m_buffer);
    m_buffer.clear();
    return !m_failed;
}

}  // namespace zeldlg::registry
