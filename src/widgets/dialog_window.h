// What the library's windows have in common: on whom they stand, and how they close.
#pragma once

#include <wx/app.h>
#include <wx/dialog.h>
#include <wx/toplevel.h>

#include <vector>

namespace zeldlg {

/// The style for a dialog whose parent may be null. The toolkit would pick any window that is
/// shown then: a modeless one of the library would drag the dialog along when the host removes it.
inline long StyleForParent(const wxWindow* parent, long style = wxDEFAULT_DIALOG_STYLE) {
    return parent != nullptr ? style : style | wxDIALOG_NO_PARENT;
}

/// The close box ends the dialog with wxID_CANCEL. For dialogs with a Cancel button: Escape presses
/// that. By itself the toolkit does the same, but keeps a list meanwhile that the process's exit
/// destroys before the GUI thread is stopped.
void CancelOnClose(wxDialog& dialog);

/// Escape and the close box end the dialog with wxID_CANCEL. By itself the toolkit presses OK for
/// both where that is the only button.
void CancelOnEscapeAndClose(wxDialog& dialog);

inline constexpr long kModelessStyle = wxCAPTION | wxSTAY_ON_TOP | wxDIALOG_NO_PARENT;
static_assert(kModelessStyle == 0x20008020);

/// Makes a window deaf to every attempt of the user or the window manager to close it. Later
/// dialogs open above it, but do not belong to it: they would go when it goes.
void StayUntilHidden(wxDialog& window);

/// Takes a window off the screen and has it destroyed.
void RemoveWindow(wxDialog& window);

/// The windows of a class that a host has shown and not removed, oldest first. The toolkit's own
/// list says which are alive, also after it has ended and has taken them along: nothing is kept
/// that could point at a dead window.
template <typename Window>
std::vector<Window*> LiveWindows() {
    std::vector<Window*> found;
    for (wxWindow* const each : wxTopLevelWindows) {
        auto* const window = dynamic_cast<Window*>(each);
        if (window != nullptr && !wxTheApp->IsScheduledForDestruction(window)) {
            found.push_back(window);
        }
    }
    return found;
}

/// The same for a class with one window at a time; null when there is none.
template <typename Window>
Window* LiveWindow() {
    const std::vector<Window*> found = LiveWindows<Window>();
    return found.empty() ? nullptr : found.front();
}

}  // namespace zeldlg
