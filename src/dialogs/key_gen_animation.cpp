#include "dialogs/key_gen_animation.h"

#include <algorithm>

namespace zeldlg {

namespace {

constexpr unsigned kLastPicture = 2;
constexpr unsigned kEndOfCycle = 3;

}  // namespace

size_t KeyGenAnimation::Tick() {
    const unsigned picture = std::min(m_phase, kLastPicture);
    ++m_phase;
    if (m_phase == kEndOfCycle) {
        m_phase = 0;
    }
    return picture;
}

}  // namespace zeldlg
