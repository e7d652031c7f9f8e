// Where on the screen a PIN pad goes that joins others: the pads of two readers must not hide
// each other.
#pragma once

#include <wx/gdicmn.h>

#include <vector>

namespace zeldlg {

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
