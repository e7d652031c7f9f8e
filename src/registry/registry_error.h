// The results of the configuration store's operations.
// They are Windows error numbers, since the store speaks the Windows registry's language.
#pragma once

#include <cstdint>

namespace zeldlg::registry {

using RegistryError = uint32_t;

inline constexpr RegistryError kSuccess = 0;
/// A pointer that the operation needs is null.
inline constexpr RegistryError kNullPointer = 1;
/// There is no such key or value, or the name is longer than any key's name can be.
inline constexpr RegistryError kNotFound = 2;
/// The handle was opened without the right now needed, or the key may not be deleted.
inline constexpr RegistryError kAccessDenied = 5;
/// The handle is not, or no longer, that of an open key.
inline constexpr RegistryError kInvalidHandle = 6;
/// Out of memory, or the caller's buffer is too small.
inline constexpr RegistryError kNoMemory = 8;
/// A section header line has no line end after it.
inline constexpr RegistryError kCorrupt = 1015;
/// The file cannot be opened, read or written, or cannot hold what is to be stored.
inline constexpr RegistryError kFileError = 1016;
/// The file does not begin with "REGEDIT4".
inline constexpr RegistryError kNotRegistry = 1017;

}  // namespace zeldlg::registry
