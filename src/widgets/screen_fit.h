// Makes a window fit the screen that it opens on.
#pragma once

#include <wx/sizer.h>
#include <wx/toplevel.h>

namespace zeldlg::layout {

/// Pixels that the content of a window may take on the pointer's monitor, as things are now.
wxSize RoomForContent(const wxWindow& window);

/// The part of its width that is left beside margins and a bar that scrolls.
int RoomForLine(const wxWindow& window);

/// To be called when the window has its sizer, with all controls, and before it gets its size.
/// Texts are wrapped at the width that the window will have. Where it is too high for its screen,
/// headings lose lines; where that is not enough, what stands first scrolls: the picture alone if
/// half of it can still be seen, or all that stands above the row of buttons. A control in there
/// that gets the keyboard comes into view.
/// @param rows The window's sizer or one inside of it: its rows, from top to bottom.
void FitScreen(wxTopLevelWindow& window, wxSizer& rows);

}  // namespace zeldlg::layout
