// The 15 places in which a PIN pad shows typed digits and the reader's status words.
// Plain text: CPinPadDialog shows it.
#pragma once

#include <string>
#include <string_view>

namespace zeldlg {

class PinPadRow {
public:
    static constexpr size_t kWidth = 15;
    static constexpr wchar_t kBlank = L'_';
    static constexpr wchar_t kMask = L'*';

    /// Always kWidth characters.
    const std::wstring& Text() const { return m_text; }

    // Each returns whether the text changed.

    /// One more mask character behind the last one; nothing when all places are taken. Status
    /// words give way place by place.
    bool AddChar();
    bool DeleteChar();
    bool Clear();
    /// Shows the words in the middle, as many of their characters as there are places.
    bool ShowStatus(std::wstring_view words);

private:
    bool Replace(std::wstring text);

    std::wstring m_text = std::wstring(kWidth, kBlank);
};

}  // namespace zeldlg
