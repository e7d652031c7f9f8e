// What becomes of memory that held a PIN.
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

namespace zeldlg::platform {

/// Is told of every piece of memory with a copy of a PIN before it is given back: the one place
/// that decides what happens to it. Leaves it alone, or overwrites it when the library is built
/// with ZELDLG_WIPE_SECRETS. @param size In bytes.
void ForgetSecret(void* memory, size_t size) noexcept;

/// A copy of a PIN, as UTF-8 bytes.
class SecretBytes {
public:
    SecretBytes() = default;
    explicit SecretBytes(std::string_view bytes);
    /// The bytes that `keeps` says true for.
    SecretBytes(std::string_view bytes, bool (*keeps)(char));
    SecretBytes(SecretBytes&& other) noexcept;
    SecretBytes(const SecretBytes&) = delete;
    SecretBytes& operator=(const SecretBytes&) = delete;
    SecretBytes& operator=(SecretBytes&&) = delete;
    ~SecretBytes();

    /// Valid as long as this object. (Implicit: it is read like any other text.)
    operator std::string_view() const { return {m_bytes.get(), m_size}; }
    size_t Size() const { return m_size; }
    /// The same with a terminating zero, for what takes no length.
    const char* CString() const { return m_bytes ? m_bytes.get() : ""; }

private:
    std::unique_ptr<char[]> m_bytes;
    size_t m_size = 0;
};

}  // namespace zeldlg::platform
