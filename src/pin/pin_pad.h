// A PIN pad without its window: the row that shows how many digits are typed, and where on the
// screen a pad goes that joins others.
#pragma once

#include <wx/gdicmn.h>

#include <string>
#include <string_view>
#include <vector>

namespace zeldlg {

/// The row of places that stands for the digits typed at the reader.
class PinPadRow {
public:
    static constexpr size_t kWidth = 15;
    static constexpr wchar_t kBlank = L'_';
    static constexpr wchar_t kMask = L'*';

    /// Always kWidth characters.
    const std::wstring& Text() const { return m_text; }

    /// How many mask characters it has.
    size_t Digits() const;

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

/// From one place to the next, to the right and down, in pixels.
inline constexpr int kPinPadStep = 32;

/// The upper left corner of the first free place for a pad.
/// @param pad      The new pad, where it would stand if it were alone: the first place. The next
///                 ones follow to the lower right; below the work area they go on at its top,
///                 beyond its right edge at its left one, until the whole area is used.
/// @param workArea Of the pad's monitor. No place reaches out of it; a pad that is larger stands
///                 at its upper left corner.
/// @param others   The live pads, wherever the user has moved them. A place is taken when one of
///                 two pads would cover the other but for a strip of less than half a step.
/// When every place is taken it is the first: so many pads hide each other anyway, and the newest
/// one is seen best where a pad is expected.
wxPoint FirstFreePinPadPlace(const wxRect& pad, const wxRect& workArea,
                             const std::vector<wxRect>& others);

}  // namespace zeldlg
