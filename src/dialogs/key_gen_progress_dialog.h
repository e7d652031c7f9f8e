// Shown while the token generates a key pair: an animated picture and a text.
#pragma once

#include <wx/dialog.h>
#include <wx/statbmp.h>
#include <wx/timer.h>
#include <wx/weakref.h>

#include <array>
#include <cstddef>

namespace zeldlg {

/// Which of its three pictures the animation shows when.
class KeyGenAnimation {
public:
    static constexpr int kTickMilliseconds = 500;
    static constexpr size_t kPictures = 3;
    /// The picture that is there before the first tick.
    static constexpr size_t kStartPicture = 2;

    /// Call at every tick. @return The picture to show from now on, 0 to 2.
    size_t Tick();

private:
    size_t m_phase = 0;
};

/// Modeless: lives until its owner destroys it. Neither the user nor the window manager can close
/// it.
class CKeyGenProgressDialog : public wxDialog {
public:
    /// @param parent What was the parent of dialogs before; may be null.
    explicit CKeyGenProgressDialog(wxWindow* parent);

    /// Stops the animation at once; the window itself dies a little later.
    bool Destroy() override;

    /// The parent that it was made with; null when that is gone.
    wxWindow* ParentBefore() const { return m_parentBefore; }

private:
    void ShowNextPicture();

    wxTimer m_timer;
    KeyGenAnimation m_animation;
    std::array<wxBitmapBundle, KeyGenAnimation::kPictures> m_pictures;
    wxStaticBitmap* m_picture = nullptr;
    wxWeakRef<wxWindow> m_parentBefore;
};

}  // namespace zeldlg
