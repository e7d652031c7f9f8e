// The loaded registry and the keys that are open on it.
// Decides when the file is read and written; callers hold the store's lock.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

#include "registry/registry_error.h"
#include "registry/registry_places.h"
#include "registry/registry_store.h"
#include "registry/registry_text.h"

namespace zeldlg::registry {

class RegistrySession {
public:
    /// Takes effect at the next load.
    void SetPlaces(RegistryPlaces places) { m_places = std::move(places); }

    /// Makes sure that a registry is loaded. One that no handle and no unsaved change needs is
    /// loaded afresh, so that changes made by other processes are seen.
    RegistryError Acquire();

    /// The loaded registry; only after Acquire() or a resolved handle.
    RegistryText& Text() { return *m_text; }

    /// Checks a handle and loads the registry when it is a root.
    /// @param right the access bits that the operation needs
    /// @param name set to the key's full name in UTF-8
    RegistryError ResolveName(HKEY key, uint32_t right, std::string& name);

    /// As ResolveName(), for the key itself.
    RegistryError ResolveKey(HKEY key, uint32_t right, KeyNode*& node);

    /// A new handle for a key of the loaded registry.
    HKEY Open(KeyNode& node, uint32_t access);

    /// Closes a handle. With the last one the registry is written, if changed, and released.
    RegistryError Close(HKEY key);

    void MarkChanged() { m_changed = true; }

    /// Writes the registry, if changed, and releases it, unless a key is open.
    RegistryError Flush();

    /// Writes the registry, if changed, and releases it. All handles become invalid.
    RegistryError Release();

    /// Frees a registry that the next operation would load afresh anyway.
    void DropUnneeded();

private:
    struct OpenKey {
        KeyNode* node;
        uint32_t access;
    };

    RegistryError Load();
    RegistryError WriteBack();
    RegistryError FindOpen(HKEY key, uint32_t right, KeyNode*& node) const;

    RegistryPlaces m_places;
    std::unique_ptr<RegistryText> m_text;
    bool m_changed = false;
    bool m_writable = true;  // of the loaded registry
    std::unordered_map<HKEY, OpenKey> m_openKeys;
    HKEY m_nextHandle = HKEY{1} << 32U;  // above the roots; a number is never used twice
};

/// The name of a root handle, empty for any other handle.
std::string_view RootName(HKEY key);

}  // namespace zeldlg::registry
