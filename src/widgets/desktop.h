// What depends on the desktop when a window opens and closes: the keyboard, the place, the frame.
#pragma once

#include <wx/dialog.h>
#include <wx/modalhook.h>

namespace zeldlg {

/// While it lives, every modal dialog gets the keyboard when it opens, and gives it back where
/// no window manager does. GUI thread; one object at a time.
class ModalDialogs : public wxModalDialogHook {
public:
    ModalDialogs() { Register(); }
    ~ModalDialogs() override { Unregister(); }
    ModalDialogs(const ModalDialogs&) = delete;
    ModalDialogs& operator=(const ModalDialogs&) = delete;

protected:
    int Enter(wxDialog* dialog) override;
    void Exit(wxDialog* dialog) override;

private:
    unsigned long m_focusBefore = 0;  // an X window; 0: nothing to give back
};

/// The part of the pointer's monitor that windows may take, in pixels of the screen.
wxRect RoomAtPointer();

/// Puts a window that is not shown yet into the middle of that. On Wayland the desktop decides.
void CentreAtPointer(wxTopLevelWindow& window);

/// The icon that task bars show, by its name in the icon theme: a literal, for the window uses it
/// after it has been drawn.
void SetWindowIcon(wxTopLevelWindow& window, const char* name);

/// Opens the window without the keyboard: the user goes on typing where he was. Where the desktop
/// gives it the keyboard all the same (Wayland), no control has it.
void LeaveKeyboard(wxTopLevelWindow& window);

}  // namespace zeldlg
