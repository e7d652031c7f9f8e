// Finds, reads and writes the file that the registry is kept in.
// See registry_places.h for the directories and registry_refresh.h for the copy of defaults.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include "platform/file_descriptor.h"
#include "registry/registry_error.h"
#include "registry/registry_places.h"

namespace zeldlg::registry {

using platform::FileDescriptor;

struct LoadableRegistry {
    FileDescriptor file;
    /// The user's file or temporary file is there and could not be opened: what was opened in its
    /// place must not be written over it.
    bool passedOver = false;
};

/// The registry to load: the user's file, else the user's temporary file, the shipped file or the
/// system's file, whichever opens first; else what OpenForWriting() gives.
LoadableRegistry OpenForReading(const RegistryPlaces& places);

/// A registry that may be changed, never a shipped one: the user's file, else the user's
/// temporary file, else the temporary file for everyone. A missing directory is made (modes 0700,
/// 0700, 0777), a missing file too (mode 0600), empty but for the first line.
FileDescriptor OpenForWriting(const RegistryPlaces& places);

/// A file in memory.
struct FileContent {
    std::unique_ptr<char[]> text;  ///< `size` bytes and a zero byte
    size_t size = 0;
};

/// Reads a whole file. Prints the error number to standard output when reading fails.
/// @return kSuccess; kNoMemory, for a file above 256 MiB too; kFileError
RegistryError ReadContent(const FileDescriptor& file, FileContent& content);

/// Writes a registry's lines over a file from its beginning, through one buffer.
///
/// kept: the file is not truncated, so the tail of a longer old text stays behind the new one. A
/// key or value deleted at the end of the file can come back that way.
class RegistryWriter {
public:
    explicit RegistryWriter(const FileDescriptor& file);

    /// Writes the line and CR LF. What exceeds 16383 characters, line end included, is cut off.
    /// @return false when the file cannot be written; nothing more is written then
    bool WriteLine(std::string_view line);

    /// Brings everything to the disk. @return false when that or an earlier write failed
    bool Finish();

private:
    bool Drain();

    const FileDescriptor& m_file;
    std::string m_buffer;
    bool m_failed = false;
};

}  // namespace zeldlg::registry
