#include "pin/pin_length_rule.h"

namespace zeldlg {

bool PinLengthRule::Update(uint32_t length) {
    const bool minOk = length >= m_minLength;
    const bool maxOk = m_maxLength >= length;
    const bool changed = minOk != m_minOk || maxOk != m_maxOk;
    m_minOk = minOk;
    m_maxOk = maxOk;
    return changed;
}

}  // namespace zeldlg
