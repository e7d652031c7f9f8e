// Numbers, texts and buffers as they travel between the library and its helper process: bounded,
// checked where they are read, and overwritten when they are done with.
#pragma once

#include <strings.h>

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

namespace zeldlg::remote {

/// What arrived, or should travel, is none of our messages.
class WireError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Of a message without its head, and of each buffer for an output. In bytes.
inline constexpr size_t kLargestMessage = size_t{16} << 20;

/// In bytes: kHostTextLimit characters of four.
inline constexpr size_t kLongestShownText = 40000;

/// Overwrites what it gives back, in every build: what travels may be a PIN.
template <typename T>
struct WipingAllocator {
    using value_type = T;

    WipingAllocator() = default;
    template <typename Other>
    WipingAllocator(const WipingAllocator<Other>&) {}

    T* allocate(size_t count) { return std::allocator<T>().allocate(count); }
    void deallocate(T* memory, size_t count) {
        explicit_bzero(memory, count * sizeof(T));
        std::allocator<T>().deallocate(memory, count);
    }
    friend bool operator==(WipingAllocator, WipingAllocator) { return true; }
};

using WireBytes = std::vector<char, WipingAllocator<char>>;

/// The helper's windows as its host names them: numbers that are never given out twice, by no other
/// helper either.
class Handles {
public:
    Handles();
    /// A new number. Whatever stood there before is gone: its number means nothing any more.
    uint64_t Add(void* window);
    /// @return Null for a number that was never given out, or means nothing any more.
    void* Find(uint64_t number) const;

private:
    struct Entry {
        uint64_t number;
        void* window;
    };
    uint64_t m_last;
    std::vector<Entry> m_entries;
};

// Writer and Reader have the same operations, so that one description of a record does for both
// directions. What is described is a copy for the Writer, and filled by the Reader.

class Writer {
public:
    explicit Writer(Handles* handles = nullptr) : m_handles(handles) {}

    const WireBytes& Bytes() const { return m_bytes; }

    template <typename T>
    void Number(T value) {
        static_assert(std::is_arithmetic_v<T> && std::endian::native == std::endian::little);
        Append(&value, sizeof value);
    }

    /// A zero-terminated text, or null.
    template <typename Unit>
    void Text(const Unit* text) {
        const size_t length = text != nullptr ? std::char_traits<Unit>::length(text) : 0;
        Units(text, length);
    }

    /// The same of what somebody reads: no more of it than is ever looked at.
    void ShownText(const char* text) {
        Units(text, text != nullptr ? strnlen(text, kLongestShownText) : 0);
    }

    /// So many bytes or characters, or null.
    template <typename Unit>
    void Units(const Unit* units, uint64_t count) {
        Number(units != nullptr);
        if (units != nullptr) {
            if (count > kLargestMessage / sizeof(Unit)) {
                throw WireError("too long to travel");
            }
            Number(count);
            Append(units, count * sizeof(Unit));
        }
    }

    /// A record that is described, or null.
    template <typename T>
    void Record(const T* record) {
        Number(record != nullptr);
        if (record != nullptr) {
            auto copy = *record;
            Describe(*this, copy);
        }
    }

    /// So many of them, or null.
    template <typename T>
    void Records(const T* records, uint64_t count) {
        Number(records != nullptr);
        for (uint64_t i = 0; records != nullptr && i < count; ++i) {
            auto copy = records[i];
            Describe(*this, copy);
        }
    }

    /// The room that there is for an output. Null stays null.
    template <typename Unit, typename Size>
    void Room(const Unit* buffer, Size capacity) {
        Number(buffer != nullptr);
        Number(uint64_t{capacity});
    }

    /// An output. @return Its value.
    template <typename T>
    T Result(const T& value) {
        Number(value);
        return value;
    }

    /// An output that was written to such a room; as many units as `size` says.
    template <typename Unit, typename Size>
    void Results(const Unit* buffer, Size size) {
        Number(uint64_t{size});
        Append(buffer, size * sizeof(Unit));
    }

    /// A window's handle: the host's, which is a number here, or the helper's.
    void Handle(const void* handle) { Number(reinterpret_cast<uint64_t>(handle)); }
    void HandleResult(void* window) {
        Number(m_handles != nullptr ? m_handles->Add(window) : uint64_t{0});
    }

private:
    void Append(const void* bytes, size_t size);

    WireBytes m_bytes;
    Handles* m_handles;
};

/// Throws WireError for what no Writer has written.
class Reader {
public:
    /// @param bytes The caller's; outlive this.
    explicit Reader(const WireBytes& bytes, const Handles* handles = nullptr)
        : m_next(bytes.data()), m_left(bytes.size()), m_handles(handles) {}
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;

    /// Nothing is left.
    void ExpectEnd() const;

    /// Results are only looked at until this is called; it begins anew with them.
    void Commit(const WireBytes& bytes);

    template <typename T>
    void Number(T& value) {
        if constexpr (std::is_same_v<T, bool>) {
            uint8_t byte = 0;
            Number(byte);
            if (byte > 1) {
                throw WireError("neither true nor false");
            }
            value = byte != 0;
        } else {
            static_assert(std::is_arithmetic_v<T>);
            memcpy(&value, Take(sizeof value), sizeof value);
        }
    }

    template <typename Unit>
    void Text(const Unit*& text) {
        uint64_t count = 0;
        Read(text, count);
        if (text != nullptr && std::char_traits<Unit>::length(text) != count) {
            throw WireError("a text with a zero in it");
        }
    }

    void ShownText(const char*& text) { Text(text); }

    template <typename Unit, typename Size>
    void Units(const Unit*& units, Size count) {
        uint64_t travelled = 0;
        Read(units, travelled);
        if (units != nullptr && travelled != count) {
            throw WireError("not as many units as there should be");
        }
    }

    template <typename T>
    void Record(T*& record) {
        using Plain = std::remove_const_t<T>;
        record = nullptr;
        if (IsThere()) {
            auto* const made = Make<Plain>(1);
            Describe(*this, *made);
            record = made;
        }
    }

    template <typename T>
    void Records(const T*& records, uint64_t count) {
        records = nullptr;
        if (!IsThere()) {
            return;
        }
        if (count > m_left) {
            throw WireError("more records than bytes");
        }
        T* const made = Make<T>(count);
        for (uint64_t i = 0; i < count; ++i) {
            Describe(*this, made[i]);
        }
        records = made;
    }

    template <typename Unit, typename Size>
    void Room(Unit*& buffer, Size& capacity) {
        const bool there = IsThere();
        uint64_t room = 0;
        Number(room);
        capacity = static_cast<Size>(room);
        if (capacity != room) {
            throw WireError("a room too large for its record");
        }
        capacity = static_cast<Size>(std::min<uint64_t>(room, kLargestMessage / sizeof(Unit)));
        buffer = there ? Make<Unit>(capacity) : nullptr;
    }

    template <typename T>
    T Result(T& result) {
        T value{};
        Number(value);
        if (m_commits) {
            result = value;
        }
        return value;
    }

    /// @param size In: the room; out: what was written to it.
    template <typename Unit, typename Size>
    void Results(Unit* buffer, Size& size) {
        uint64_t count = 0;
        Number(count);
        if (count > size || (buffer == nullptr && count != 0)) {
            throw WireError("an output that does not fit");
        }
        const void* const units = Take(count * sizeof(Unit));
        if (m_commits) {
            if (count != 0) {
                memcpy(buffer, units, count * sizeof(Unit));
            }
            size = static_cast<Size>(count);
        }
    }

    void Handle(const void*& handle) {
        uint64_t number = 0;
        Number(number);
        handle = m_handles != nullptr ? m_handles->Find(number) : nullptr;
    }
    void HandleResult(void*& handle) {
        uint64_t number = 0;
        Number(number);
        if (m_commits) {
            handle = reinterpret_cast<void*>(number);
        }
    }

    /// Zeroed; as long as this object.
    template <typename T>
    T* Make(size_t count) {
        static_assert(std::is_trivially_destructible_v<T> &&
                      alignof(T) <= alignof(std::max_align_t));
        return static_cast<T*>(MakeBytes(std::max<size_t>(count, 1) * sizeof(T)));
    }

private:
    bool IsThere() {
        bool there = false;
        Number(there);
        return there;
    }

    template <typename Unit>
    void Read(const Unit*& units, uint64_t& count) {
        units = nullptr;
        count = 0;
        if (!IsThere()) {
            return;
        }
        Number(count);
        if (count > m_left / sizeof(Unit)) {
            throw WireError("more units than bytes");
        }
        Unit* const made = Make<Unit>(count + 1);
        memcpy(made, Take(count * sizeof(Unit)), count * sizeof(Unit));
        units = made;
    }

    const char* Take(size_t size);
    void* MakeBytes(size_t size);

    struct Wipe {
        size_t size = 0;
        void operator()(void* memory) const {
            explicit_bzero(memory, size);
            free(memory);
        }
    };

    const char* m_next;
    size_t m_left;
    const Handles* m_handles;
    bool m_commits = false;
    std::vector<std::unique_ptr<void, Wipe>> m_memory;
};

}  // namespace zeldlg::remote
