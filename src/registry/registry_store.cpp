#include "registry/registry_store.h"

#include <cstddef>
#include <cstring>
#include <cwchar>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "registry/registry_encoding.h"
#include "registry/registry_lock.h"
#include "registry/registry_session.h"
#include "registry/registry_text.h"

namespace zeldlg::registry {
namespace {

// Made by the first operation, freed by the final clean-up, used only by the holder of the lock.
// No destructor: threads may still come here while the process ends.
RegistrySession* g_session = nullptr;

RegistrySession& Session() {
    if (g_session == nullptr) {
        g_session = new RegistrySession;
    }
    return *g_session;
}

// Runs one operation from start to end under the lock.
template <typename Operation>
RegistryError Run(Operation operation) {
    const RegistryLock lock;
    if (!lock.IsHeld()) {
        return kFileError;
    }
    try {
        RegistrySession& session = Session();
        const RegistryError error = operation(session);
        session.DropUnneeded();
        return error;
    } catch (const std::bad_alloc&) {
        if (g_session != nullptr) {
            g_session->DropUnneeded();
        }
        return kNoMemory;
    }
}

std::string Narrow(const wchar_t* text) { return text == nullptr ? std::string() : ToNarrow(text); }

std::string ValueName(const wchar_t* name) {
    std::string narrow = Narrow(name);
    return narrow == "@" ? std::string() : narrow;
}

// Appends a path to a key's full name. @return false when the result is too long
bool AppendPath(std::string& name, const wchar_t* subKey) {
    const std::string path = Narrow(subKey);
    if (name.ends_with('\\')) {
        name.pop_back();
    }
    name.append(path.starts_with('\\') ? "" : "\\").append(path);
    if (name.ends_with('\\')) {
        name.pop_back();
    }
    return name.size() <= kMaxKeyName;
}

bool IsRootName(std::string_view name) { return name.find('\\') == std::string_view::npos; }

// The key with this full name, or null. Roots always exist.
KeyNode* FindKey(RegistrySession& session, const std::string& name) {
    return IsRootName(name) ? &session.Text().Root(name) : session.Text().Find(FoldedName(name));
}

// Runs an operation on the key of a handle: `operation(session, key)`.
template <typename Operation>
RegistryError RunOnKey(HKEY key, uint32_t right, Operation operation) {
    return Run([&](RegistrySession& session) {
        KeyNode* node = nullptr;
        const RegistryError error = session.ResolveKey(key, right, node);
        return error == kSuccess ? operation(session, *node) : error;
    });
}

// Runs an operation on the key that handle and path lead to:
// `operation(session, key, full name)`, with null for one that there is not.
template <typename Operation>
RegistryError RunOnKey(HKEY key, const wchar_t* subKey, uint32_t right, Operation operation) {
    return Run([&](RegistrySession& session) -> RegistryError {
        std::string name;
        const RegistryError error = session.ResolveName(key, right, name);
        if (error != kSuccess) {
            return error;
        }
        return AppendPath(name, subKey) ? operation(session, FindKey(session, name), name)
                                        : kNotFound;
    });
}

// The same for a key that is to be deleted: `operation(session, key)`.
template <typename Operation>
RegistryError RunOnDoomed(HKEY key, const wchar_t* subKey, Operation operation) {
    return RunOnKey(key, subKey, kAccessSubKeys,
                    [&](RegistrySession& session, KeyNode* node, const std::string& name) {
                        return IsRootName(name)  ? kAccessDenied
                               : node == nullptr ? kNotFound
                                                 : operation(session, *node);
                    });
}

// Bytes of a value as they cross the interface.
std::string ToInterface(const RegistryValue& value) {
    std::string bytes;
    switch (value.type) {
        case kTypeNumber:
            bytes.resize(sizeof value.number);
            memcpy(bytes.data(), &value.number, bytes.size());
            return bytes;
        case kTypeString: {
            const std::wstring text = ToWide(value.bytes);
            bytes.resize((text.size() + 1) * sizeof(wchar_t));
            memcpy(bytes.data(), text.c_str(), bytes.size());
            return bytes;
        }
        default:
            return value.bytes;
    }
}

// The reverse. @return nothing when type and size do not make a value
std::optional<RegistryValue> FromInterface(uint32_t type, std::string_view bytes) {
    RegistryValue value;
    value.type = type;
    switch (type) {
        case kTypeNumber:
            if (bytes.size() != sizeof value.number) {
                return std::nullopt;
            }
            bytes.copy(reinterpret_cast<char*>(&value.number), bytes.size());
            return value;
        case kTypeString: {
            std::wstring text(bytes.size() / sizeof(wchar_t), L'\0');
            bytes.copy(reinterpret_cast<char*>(text.data()), text.size() * sizeof(wchar_t));
            value.bytes = ToNarrow(text.substr(0, text.find(L'\0')));
            return value;
        }
        case kTypeBinary:
            value.bytes = bytes;
            return value;
        default:
            return std::nullopt;
    }
}

}  // namespace

RegistryError RegOpenKeyEx(HKEY key, const wchar_t* subKey, uint32_t access, HKEY* result) {
    if (result == nullptr) {
        return kNullPointer;
    }
    return RunOnKey(key, subKey, 0,
                    [&](RegistrySession& session, KeyNode* node, const std::string&) {
                        if (node != nullptr) {
                            *result = session.Open(*node, access);
                        }
                        return node != nullptr ? kSuccess : kNotFound;
                    });
}

RegistryError RegCreateKeyEx(HKEY key, const wchar_t* subKey, uint32_t /*options*/, HKEY* result,
                             uint32_t* disposition) {
    if (result == nullptr) {
        return kNullPointer;
    }
    return RunOnKey(key, subKey, kAccessSubKeys,
                    [&](RegistrySession& session, KeyNode* node, const std::string& name) {
                        const bool created = node == nullptr;
                        if (created) {
                            if (name.find('\n') != std::string::npos) {
                                return kFileError;
                            }
                            node = &session.Text().Create(name);
                            session.MarkChanged();
                        }
                        *result = session.Open(*node, kAccessDefault);
                        if (disposition != nullptr) {
                            *disposition = created ? kCreatedNewKey : kOpenedExistingKey;
                        }
                        return kSuccess;
                    });
}

RegistryError RegCloseKey(HKEY key) {
    return Run([&](RegistrySession& session) { return session.Close(key); });
}

RegistryError QueryStoredValue(HKEY key, const wchar_t* name, RegistryValue& value) {
    return RunOnKey(key, kAccessReadValues, [&](RegistrySession& session, KeyNode& node) {
        std::optional<RegistryValue> found = session.Text().Value(node, ValueName(name));
        if (!found) {
            return kNotFound;
        }
        value = std::move(*found);
        return kSuccess;
    });
}

RegistryError RegQueryValueEx(HKEY key, const wchar_t* name, uint32_t* type, void* data,
                              uint32_t* size) {
    if (data != nullptr && size == nullptr) {
        return kNullPointer;
    }
    RegistryValue value;
    const RegistryError error = QueryStoredValue(key, name, value);
    if (error != kSuccess) {
        return error;
    }
    if (type != nullptr) {
        *type = value.type;
    }
    if (size == nullptr) {
        return kSuccess;
    }
    std::string bytes;
    try {
        bytes = ToInterface(value);
    } catch (const std::bad_alloc&) {
        return kNoMemory;
    }
    const uint32_t capacity = std::exchange(*size, static_cast<uint32_t>(bytes.size()));
    if (data == nullptr) {
        return kSuccess;
    }
    if (bytes.size() > capacity) {
        return kNoMemory;
    }
    memcpy(data, bytes.data(), bytes.size());
    return kSuccess;
}

RegistryError RegSetValueEx(HKEY key, const wchar_t* name, uint32_t type, const void* data,
                            uint32_t size) {
    if (data == nullptr && size > 0) {
        return kNullPointer;
    }
    const std::string_view bytes(static_cast<const char*>(data), size);
    return RunOnKey(key, kAccessWriteValues, [&](RegistrySession& session, KeyNode& node) {
        const std::optional<RegistryValue> value = FromInterface(type, bytes);
        if (!value || !session.Text().SetValue(node, ValueName(name), *value)) {
            return kFileError;
        }
        session.MarkChanged();
        return kSuccess;
    });
}

RegistryError RegEnumKey(HKEY key, uint32_t index, wchar_t* name, uint32_t* size) {
    if (name == nullptr || size == nullptr) {
        return kNullPointer;
    }
    return RunOnKey(key, kAccessSubKeys, [&](RegistrySession& session, KeyNode& node) {
        const std::vector<KeyNode*>& children = session.Text().Children(node);
        if (index >= children.size()) {
            return kNotFound;
        }
        const std::wstring text = ToWide(children[index]->LastName());
        const uint32_t capacity = *size;
        if (text.size() >= capacity) {
            *size = static_cast<uint32_t>(text.size() + 1);
            return kNoMemory;
        }
        *size = static_cast<uint32_t>(text.size());
        wmemcpy(name, text.c_str(), text.size() + 1);
        return kSuccess;
    });
}

RegistryError RegDeleteKey(HKEY key, const wchar_t* subKey) {
    return RunOnDoomed(key, subKey, [](RegistrySession& session, KeyNode& node) {
        if (!session.Text().Children(node).empty()) {
            return kAccessDenied;
        }
        session.Text().Delete(node);
        session.MarkChanged();
        return kSuccess;
    });
}

RegistryError RegDeleteTree(HKEY key, const wchar_t* subKey, uint32_t /*flag*/) {
    return RunOnDoomed(key, subKey, [](RegistrySession& session, KeyNode& top) {
        session.MarkChanged();
        KeyNode* node = &top;
        while (!top.deleted) {
            const std::vector<KeyNode*>& children = session.Text().Children(*node);
            if (!children.empty()) {
                node = children.back();
                continue;
            }
            session.Text().Delete(*node);
            node = node->parent;
        }
        return kSuccess;
    });
}

RegistryError RegDeleteValue(HKEY key, const wchar_t* name) {
    return RunOnKey(key, kAccessWriteValues, [&](RegistrySession& session, KeyNode& node) {
        if (!session.Text().DeleteValue(node, ValueName(name))) {
            return kNotFound;
        }
        session.MarkChanged();
        return kSuccess;
    });
}

RegistryError RegFlush() {
    return Run([](RegistrySession& session) { return session.Flush(); });
}

void RegFinalCleanUp() {
    RegistryLock::Close([] {
        if (g_session != nullptr) {
            g_session->Release();
            delete std::exchange(g_session, nullptr);
        }
    });
}

void SetRegistryPlaces(RegistryPlaces places) {
    Run([&](RegistrySession& session) {
        session.SetPlaces(std::move(places));
        return kSuccess;
    });
}

}  // namespace zeldlg::registry
