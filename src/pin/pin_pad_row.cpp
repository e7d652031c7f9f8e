#include "pin/pin_pad_row.h"

#include <algorithm>
#include <utility>

namespace zeldlg {

namespace {

std::wstring_view TrimSpaces(std::wstring_view text) {
    const size_t first = std::min(text.find_first_not_of(L' '), text.size());
    const size_t last = text.find_last_not_of(L' ') + 1;  // 0 when there is nothing but spaces
    return text.substr(first, std::max(first, last) - first);
}

}  // namespace

bool PinPadRow::AddChar() {
    const size_t last = m_text.rfind(kMask);
    const size_t next = last == std::wstring::npos ? 0 : last + 1;
    if (next == kWidth) {
        return false;
    }
    m_text[next] = kMask;
    return true;
}

bool PinPadRow::DeleteChar() {
    const size_t last = m_text.rfind(kMask);
    if (last == std::wstring::npos) {
        return false;
    }
    m_text[last] = kBlank;
    return true;
}

bool PinPadRow::Clear() { return Replace(std::wstring(kWidth, kBlank)); }

bool PinPadRow::ShowStatus(std::wstring_view words) {
    const std::wstring_view shown = TrimSpaces(words).substr(0, kWidth);
    std::wstring text((kWidth - shown.size()) / 2, kBlank);
    text += shown;
    text.resize(kWidth, kBlank);
    std::replace(text.begin(), text.end(), L' ', kBlank);
    return Replace(std::move(text));
}

bool PinPadRow::Replace(std::wstring text) {
    if (text == m_text) {
        return false;
    }
    m_text = std::move(text);
    return true;
}

}  // namespace zeldlg
