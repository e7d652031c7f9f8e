// What a person at keyboard and mouse does. Each function returns when the events it caused have
// been handled.
#pragma once

#include <wx/gdicmn.h>
#include <wx/mousestate.h>
#include <wx/utils.h>
#include <wx/window.h>

namespace zeldlg::test::user {

/// Presses and releases one key, a wxKeyCode or an upper-case letter, with wxMOD_* held.
void Press(int key, int modifiers = wxMOD_NONE);

/// Types digits and lower-case ASCII letters.
void Type(const char* text);

/// Presses a key that the keyboard map of the display does not have, such as a letter with an
/// accent or a dead key.
void PressSymbol(wxWindow& focused, unsigned keySymbol);

/// Brings a finished text into a field of one line, as an input method does.
void Commit(const wxWindow& field, const char* text);

/// `place` is in pixels from the window's top left corner.
void Click(const wxWindow& window, wxPoint place, wxMouseButton button = wxMOUSE_BTN_LEFT);
void ClickTwice(const wxWindow& window, wxPoint place);
void ClickThreeTimes(const wxWindow& window, wxPoint place);

/// Moves with the left button held from one place of the window to another.
void Drag(const wxWindow& window, wxPoint from, wxPoint to);

/// Drags what is selected at one place and drops it at another.
void DragAndDrop(const wxWindow& fromWindow, wxPoint from, const wxWindow& toWindow, wxPoint to);

}  // namespace zeldlg::test::user
