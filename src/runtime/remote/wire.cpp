#include "runtime/remote/wire.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <new>
#include <utility>

namespace zeldlg::remote {

// The process's id is in them: the handle of a window whose helper has died names none of the next.
Handles::Handles() : m_last(static_cast<uint64_t>(getpid()) << 32) {}

uint64_t Handles::Add(void* window) {
    std::erase_if(m_entries, [window](const Entry& entry) { return entry.window == window; });
    m_entries.push_back({++m_last, window});
    return m_last;
}

void* Handles::Find(uint64_t number) const {
    const auto found =
        std::find_if(m_entries.begin(), m_entries.end(),
                     [number](const Entry& entry) { return entry.number == number; });
    return found != m_entries.end() ? found->window : nullptr;
}

void Writer::Append(const void* bytes, size_t size) {
    if (size > kLargestMessage - m_bytes.size()) {
        throw WireError("too long to travel");
    }
    const auto* const first = static_cast<const char*>(bytes);
    m_bytes.insert(m_bytes.end(), first, first + size);
}

void Reader::ExpectEnd() const {
    if (m_left != 0) {
        throw WireError("more bytes than a message of its kind has");
    }
}

void Reader::Commit(const WireBytes& bytes) {
    m_next = bytes.data();
    m_left = bytes.size();
    m_commits = true;
}

const char* Reader::Take(size_t size) {
    if (size > m_left) {
        throw WireError("a message that ends too early");
    }
    m_left -= size;
    return std::exchange(m_next, m_next + size);
}

// What nobody writes to costs nothing: the room for an output may be large.
void* Reader::MakeBytes(size_t size) {
    m_memory.reserve(m_memory.size() + 1);
    void* const memory = calloc(1, size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    m_memory.emplace_back(memory, Wipe{size});
    return memory;
}

}  // namespace zeldlg::remote
