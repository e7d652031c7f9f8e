// The length limits of a PIN and whether what is typed keeps to them.
#pragma once

#include <cstdint>

namespace zeldlg {

class PinLengthRule {
public:
    /// Lengths in characters.
    PinLengthRule(uint32_t minLength, uint32_t maxLength)
        : m_minLength(minLength), m_maxLength(maxLength) {}

    /// Takes the length of what is typed now. @return Whether a limit is kept now that was not
    /// before, or the other way round.
    bool Update(uint32_t length);

    uint32_t MinLength() const { return m_minLength; }
    uint32_t MaxLength() const { return m_maxLength; }
    /// kept: an empty PIN is taken for too short until the first Update that changes something,
    /// also when the minimum is 0.
    bool MinOk() const { return m_minOk; }
    bool MaxOk() const { return m_maxOk; }
    bool Accepts() const { return m_minOk && m_maxOk; }

private:
    uint32_t m_minLength;
    uint32_t m_maxLength;
    bool m_minOk = false;
    bool m_maxOk = true;
};

}  // namespace zeldlg
