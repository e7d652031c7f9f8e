// Which of its three pictures an animation shows when.
#pragma once

#include <cstddef>

namespace zeldlg {

class KeyGenAnimation {
public:
    static constexpr int kTickMilliseconds = 500;
    /// The picture that is there before the first tick.
    static constexpr size_t kStartPicture = 2;

    /// Call at every tick. @return The picture to show from now on, 0 to 2.
    size_t Tick();

private:
    unsigned m_phase = 0;
};

}  // namespace zeldlg
