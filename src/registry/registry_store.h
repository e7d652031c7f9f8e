// The configuration store: a registry after the Windows model, kept in one text file.
// It is read while keys are open and written when the last changed one is closed.
#pragma once

#include <cstdint>
#include <string>

#include "registry/registry_error.h"
#include "registry/registry_places.h"
#include "registry/registry_value.h"

namespace zeldlg::registry {

/// A root or an open key. Numbers of closed keys are not used again.
using HKEY = uint64_t;

inline constexpr HKEY HKEY_CLASSES_ROOT = 0x80000000;
inline constexpr HKEY HKEY_CURRENT_USER = 0x80000001;
inline constexpr HKEY HKEY_LOCAL_MACHINE = 0x80000002;

/// Access bits of an open key; others are carried without effect. Roots have all of them.
inline constexpr uint32_t kAccessReadValues = 0x04;
inline constexpr uint32_t kAccessWriteValues = 0x08;
inline constexpr uint32_t kAccessSubKeys = 0x10;  ///< enumerate, create and delete sub-keys
/// What the library itself opens keys with.
inline constexpr uint32_t kAccessDefault = 284;

/// Dispositions of RegCreateKeyEx().
inline constexpr uint32_t kCreatedNewKey = 1;
inline constexpr uint32_t kOpenedExistingKey = 2;

// All operations may be called on any thread; they run one at a time. Each returns kSuccess or
// one of the errors of registry_error.h: those named below, kInvalidHandle for a handle that is
// not open, kAccessDenied for one without the right bit, kNotFound for one whose key has been
// deleted, and kNoMemory. Operations that load the file (the first on an open key, all on a root)
// also return kCorrupt, kFileError and kNotRegistry. After the final clean-up all return
// kFileError.
//
// Key paths are separated by backslashes; a null path is the key itself. A full name, from the
// root's name on, has at most 260 bytes in UTF-8. A null, empty or "@" value name is the key's
// default value. Keys and values are found without regard to case.

/// Opens an existing key. Needs no right on `key`.
/// @param result set to the new handle, to be given to RegCloseKey(); unchanged on failure
/// @return kNotFound, kNullPointer
RegistryError RegOpenKeyEx(HKEY key, const wchar_t* subKey, uint32_t access, HKEY* result);

/// Opens a key with kAccessDefault, making it and its missing parents first. Needs
/// kAccessSubKeys.
/// @param options has no effect: every key is stored
/// @param disposition may be null; set to kCreatedNewKey or kOpenedExistingKey
/// @return kNotFound for a name that is too long, kFileError for one with a line end in it,
///         kNullPointer
RegistryError RegCreateKeyEx(HKEY key, const wchar_t* subKey, uint32_t options, HKEY* result,
                             uint32_t* disposition);

/// Closes a key. With the last one a changed registry is written.
/// @return kInvalidHandle for a root too; kFileError when the registry could not be written: the
///         handle is closed and the changes are lost; kNoMemory when there was none to write it:
///         the handle is closed, and the changes are kept until the next close or flush
RegistryError RegCloseKey(HKEY key);

/// Reads a value. Needs kAccessReadValues.
/// @param type may be null; set to kTypeString, kTypeBinary or kTypeNumber
/// @param data null to ask for type and size only. Receives wide characters with a terminating
///        zero, the bytes, or a 32-bit number
/// @param size bytes: in, what `data` can take; out, what the value needs (a string's terminating
///        zero counted). May be null when `data` is
/// @return kNotFound; kNoMemory when the value does not fit, with the size set and nothing
///         written; kNullPointer
RegistryError RegQueryValueEx(HKEY key, const wchar_t* name, uint32_t* type, void* data,
                              uint32_t* size);

/// Reads a value as the file holds it: a string as its 8-bit text, unconverted.
/// Needs kAccessReadValues. @return kNotFound
RegistryError QueryStoredValue(HKEY key, const wchar_t* name, RegistryValue& value);

/// Sets or replaces a value and marks the registry changed. Needs kAccessWriteValues.
/// @param data wide characters up to `size` or a zero, bytes, or a 32-bit number; may be null
///        when `size` is 0
/// @param size bytes
/// @return kNullPointer; kFileError for what the file cannot hold: another type, a number that has
///         not 4 bytes, a line end in name or text, a name that reads back as another one
RegistryError RegSetValueEx(HKEY key, const wchar_t* name, uint32_t type, const void* data,
                            uint32_t size);

/// The name of the sub-key with this index, counted from 0. Needs kAccessSubKeys.
/// @param size wide characters: in, what `name` can take; out, the length of the name without its
///        terminating zero
/// @return kNotFound past the last; kNoMemory when the name does not fit, with `size` set to what
///         it needs, zero included; kNullPointer
RegistryError RegEnumKey(HKEY key, uint32_t index, wchar_t* name, uint32_t* size);

/// Removes a key that has no sub-keys. Needs kAccessSubKeys. Without an open key the change is
/// kept in memory until the next close or flush.
/// @return kNotFound; kAccessDenied for a root or a key with sub-keys
RegistryError RegDeleteKey(HKEY key, const wchar_t* subKey);

/// Removes a key with all that is below it. Needs kAccessSubKeys. Written as RegDeleteKey() is.
/// @param flag has no effect
/// @return kNotFound; kAccessDenied for a root
RegistryError RegDeleteTree(HKEY key, const wchar_t* subKey, uint32_t flag);

/// Removes a value. Needs kAccessWriteValues. @return kNotFound
RegistryError RegDeleteValue(HKEY key, const wchar_t* name);

/// Writes a changed registry and releases it. While a key is open nothing is done: the registry
/// is never written then. @return kFileError when it could not be written; the changes are lost
RegistryError RegFlush();

/// Writes a changed registry, closes all keys and ends the store for good. To be called when the
/// library is unloaded; later operations fail. Never waits for longer than a second for another
/// thread's operation, and does nothing in a child that was forked after the store's first use.
void RegFinalCleanUp();

/// Moves the store to other places, for tests. To be called while no key is open and no change is
/// unsaved.
void SetRegistryPlaces(RegistryPlaces places);

}  // namespace zeldlg::registry
