#include "platform/secret.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace zeldlg::platform {

void ForgetSecret([[maybe_unused]] void* memory, [[maybe_unused]] size_t size) noexcept {
#ifdef ZELDLG_WIPE_SECRETS
    if (size != 0) {
        explicit_bzero(memory, size);
    }
#endif
}

SecretBytes::SecretBytes(std::string_view bytes)
    : m_bytes(std::make_unique<char[]>(bytes.size() + 1)), m_size(bytes.size()) {
    std::copy(bytes.begin(), bytes.end(), m_bytes.get());
}

SecretBytes::SecretBytes(std::string_view bytes, bool (*keeps)(char))
    : m_bytes(std::make_unique<char[]>(bytes.size() + 1)),
      m_size(static_cast<size_t>(std::copy_if(bytes.begin(), bytes.end(), m_bytes.get(), keeps) -
                                 m_bytes.get())) {}

SecretBytes::SecretBytes(SecretBytes&& other) noexcept
    : m_bytes(std::move(other.m_bytes)), m_size(std::exchange(other.m_size, 0)) {}

SecretBytes::~SecretBytes() { ForgetSecret(m_bytes.get(), m_size); }

}  // namespace zeldlg::platform
