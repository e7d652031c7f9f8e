#include "dialogs/key_gen_progress_dialog.h"

#include <gtest/gtest.h>

#include <vector>

namespace zeldlg {
namespace {

std::vector<size_t> Ticks(KeyGenAnimation& animation, int count) {
    std::vector<size_t> pictures;
    for (int tick = 0; tick < count; ++tick) {
        pictures.push_back(animation.Tick());
    }
    return pictures;
}

TEST(KeyGenAnimation, StartsWithTheThirdPicture) { EXPECT_EQ(KeyGenAnimation::kStartPicture, 2U); }

TEST(KeyGenAnimation, TheThreePicturesFollowEachOtherOverAndOver) {
    KeyGenAnimation animation;
    EXPECT_EQ(Ticks(animation, 9), (std::vector<size_t>{0, 1, 2, 0, 1, 2, 0, 1, 2}));
}

TEST(KeyGenAnimation, EveryTickChangesThePicture) {
    KeyGenAnimation animation;
    size_t shown = KeyGenAnimation::kStartPicture;
    for (const size_t next : Ticks(animation, 1000)) {
        EXPECT_NE(next, shown);
        shown = next;
    }
}

TEST(KeyGenAnimation, ACycleTakesOneAndAHalfSeconds) {
    KeyGenAnimation animation;
    const size_t first = animation.Tick();
    int milliseconds = KeyGenAnimation::kTickMilliseconds;
    while (animation.Tick() != first) {
        milliseconds += KeyGenAnimation::kTickMilliseconds;
    }
    EXPECT_EQ(milliseconds, 1500);
}

TEST(KeyGenAnimation, EachHasAPhaseOfItsOwn) {
    KeyGenAnimation one;
    KeyGenAnimation other;
    Ticks(one, 2);
    EXPECT_EQ(one.Tick(), 2U);
    EXPECT_EQ(other.Tick(), 0U);
}

}  // namespace
}  // namespace zeldlg
