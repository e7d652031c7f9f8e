/// A host's output buffer with a guard area behind it, filled so that every written byte shows.
#pragma once

#include <cstring>
#include <string>
#include <vector>

#include "arguments.h"
#include "json_line.h"

namespace testhost {

constexpr uint8_t kFill = 0xa5;

template <typename Unit>
class GuardedBuffer {
public:
    /// Reads `<name>Capacity` (units, default 64) and `<name>=null`.
    GuardedBuffer(Arguments& arguments, const std::string& name)
        : m_name(name),
          m_null(arguments.TakeNull(name)),
          m_capacity(arguments.TakeNumber<uint32_t>(name + "Capacity", kDefaultCapacity)),
          m_units(m_capacity + kGuard) {
        memset(m_units.data(), kFill, m_units.size() * sizeof(Unit));
    }

    Unit* Pointer() { return m_null ? nullptr : m_units.data(); }
    uint32_t Capacity() const { return m_capacity; }
    /// Reports the whole buffer, the guard area included.
    void Report(JsonLine& line) const {
        line.Hex(m_name, m_units.data(), m_units.size() * sizeof(Unit));
    }

private:
    static constexpr uint32_t kDefaultCapacity = 64;
    static constexpr uint32_t kGuard = 16;

    std::string m_name;
    bool m_null;
    uint32_t m_capacity;
    std::vector<Unit> m_units;
};

/// An output slot filled with a pattern; `name=null` makes the export get a null pointer.
template <typename T>
class Slot {
public:
    Slot(Arguments& arguments, const std::string& name)
        : m_name(name), m_null(arguments.TakeNull(name)) {
        memset(&m_value, kFill, sizeof(m_value));
    }

    T* Pointer() { return m_null ? nullptr : &m_value; }
    void Report(JsonLine& line) const { line.Hex(m_name, &m_value, sizeof(m_value)); }
    T Value() const { return m_value; }

private:
    std::string m_name;
    bool m_null;
    T m_value{};
};

}  // namespace testhost
