#include "registry/registry_session.h"

#include <utility>

#include "registry/registry_encoding.h"
#include "registry/registry_file.h"
#include "registry/registry_refresh.h"

namespace zeldlg::registry {

std::string_view RootName(HKEY key) {
    switch (key) {
        case HKEY_CLASSES_ROOT:
            return "HKEY_CLASSES_ROOT";
        case HKEY_CURRENT_USER:
            return "HKEY_CURRENT_USER";
        case HKEY_LOCAL_MACHINE:
            return "HKEY_LOCAL_MACHINE";
        default:
            return {};
    }
}

RegistryError RegistrySession::Acquire() {
    DropUnneeded();
    return m_text != nullptr ? kSuccess : Load();
}

RegistryError RegistrySession::Load() {
    RefreshUserFile(m_places);
    const LoadableRegistry registry = OpenForReading(m_places);
    if (!registry.file.IsOpen()) {
        return kFileError;
    }
    m_writable = !registry.passedOver;
    FileContent content;
    RegistryError error = ReadContent(registry.file, content);
    if (error == kSuccess) {
        error = RegistryText::Check({content.text.get(), content.size});
    }
    if (error == kSuccess) {
        m_text = std::make_unique<RegistryText>(std::move(content.text), content.size);
    }
    return error;
}

RegistryError RegistrySession::FindOpen(HKEY key, uint32_t right, KeyNode*& node) const {
    const auto open = m_openKeys.find(key);
    if (open == m_openKeys.end()) {
        return kInvalidHandle;
    }
    if ((open->second.access & right) != right) {
        return kAccessDenied;
    }
    node = open->second.node;
    return node->deleted ? kNotFound : kSuccess;
}

RegistryError RegistrySession::ResolveName(HKEY key, uint32_t right, std::string& name) {
    name = RootName(key);
    if (!name.empty()) {
        return Acquire();
    }
    KeyNode* node = nullptr;
    const RegistryError error = FindOpen(key, right, node);
    if (error == kSuccess) {
        name = ToNarrow(ToWide(node->name));
    }
    return error;
}

RegistryError RegistrySession::ResolveKey(HKEY key, uint32_t right, KeyNode*& node) {
    const std::string_view root = RootName(key);
    if (root.empty()) {
        return FindOpen(key, right, node);
    }
    const RegistryError error = Acquire();
    if (error == kSuccess) {
        node = &m_text->Root(std::string(root));
    }
    return error;
}

HKEY RegistrySession::Open(KeyNode& node, uint32_t access) {
    m_openKeys.emplace(m_nextHandle, OpenKey{&node, access});
    return m_nextHandle++;
}

RegistryError RegistrySession::Close(HKEY key) {
    if (m_openKeys.erase(key) == 0) {
        return kInvalidHandle;
    }
    return Flush();
}

RegistryError RegistrySession::Flush() { return m_openKeys.empty() ? Release() : kSuccess; }

RegistryError RegistrySession::Release() {
    const RegistryError error = m_changed ? WriteBack() : kSuccess;
    m_changed = false;
    m_openKeys.clear();
    m_text.reset();
    return error;
}

RegistryError RegistrySession::WriteBack() {
    if (!m_writable) {
        return kFileError;
    }
    const FileDescriptor file = OpenForWriting(m_places);
    if (!file.IsOpen()) {
        return kFileError;
    }
    RegistryWriter writer(file);
    const bool written =
        m_text->Write([&writer](std::string_view line) { return writer.WriteLine(line); });
    return written && writer.Finish() ? kSuccess : kFileError;
}

void RegistrySession::DropUnneeded() {
    if (m_openKeys.empty() && !m_changed) {
        m_text.reset();
    }
}

}  // namespace zeldlg::registry
