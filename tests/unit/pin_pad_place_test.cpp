#include "pin/pin_pad.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>
#include <utility>

// For messages of the checks, which look for it beside the type.
static void PrintTo(const wxPoint& place, std::ostream* out) {
    *out << "(" << place.x << ", " << place.y << ")";
}

namespace zeldlg {
namespace {

// A panel at the top of a screen of 1280 by 800, and a pad in the middle of what is left.
const wxRect kArea(0, 24, 1280, 776);
const wxSize kSize(340, 260);
const wxPoint kMiddle(470, 282);
constexpr int kStep = 32;

wxPoint Find(const std::vector<wxRect>& others, const wxRect& area = kArea,
             const wxPoint& wanted = kMiddle, const wxSize& size = kSize) {
    return FirstFreePinPadPlace(wxRect(wanted, size), area, others);
}

wxRect Pad(int x, int y, const wxSize& size = kSize) { return {wxPoint(x, y), size}; }

// Shows so many pads one after the other.
std::vector<wxRect> Fill(size_t count, const wxRect& area, const wxPoint& wanted = kMiddle,
                         const wxSize& size = kSize) {
    std::vector<wxRect> pads;
    while (pads.size() < count) {
        pads.emplace_back(Find(pads, area, wanted, size), size);
    }
    return pads;
}

bool Differ(const std::vector<wxRect>& pads) {
    for (size_t one = 0; one < pads.size(); ++one) {
        if (std::count(pads.begin(), pads.end(), pads[one]) != 1) {
            return false;
        }
    }
    return true;
}

TEST(PinPadPlace, APadThatIsAloneStandsWhereItWouldAnyway) { EXPECT_EQ(Find({}), kMiddle); }

TEST(PinPadPlace, TheNextOnesFollowToTheLowerRight) {
    std::vector<wxRect> pads;
    for (int number = 0; number < 5; ++number) {
        const wxPoint place = Find(pads);
        EXPECT_EQ(place, kMiddle + number * wxPoint(kStep, kStep));
        pads.emplace_back(place, kSize);
    }
}

TEST(PinPadPlace, APlaceThatIsLeftIsTheNextToBeTaken) {
    std::vector<wxRect> pads = Fill(3, kArea);
    const wxRect first = pads.front();
    pads.erase(pads.begin());
    EXPECT_EQ(Find(pads), first.GetPosition());
    pads.push_back(first);
    const wxRect second = pads.front();
    pads.erase(pads.begin());
    EXPECT_EQ(Find(pads), second.GetPosition());
}

TEST(PinPadPlace, APadThatTheUserHasMovedAwayLeavesItsPlace) {
    EXPECT_EQ(Find({Pad(0, 24)}), kMiddle);
}

TEST(PinPadPlace, APadThatIsAlmostThereTakesThePlace) {
    for (const wxPoint& off : {wxPoint(15, 0), wxPoint(-15, 15), wxPoint(0, -15)}) {
        EXPECT_EQ(Find({wxRect(kMiddle + off, kSize)}), kMiddle + wxPoint(kStep, kStep))
            << testing::PrintToString(off);
    }
    for (const wxPoint& off : {wxPoint(16, 0), wxPoint(0, 16), wxPoint(-16, 0), wxPoint(0, -16)}) {
        EXPECT_EQ(Find({wxRect(kMiddle + off, kSize)}), kMiddle) << testing::PrintToString(off);
    }
}

// Both stand in the middle when they are alone.
TEST(PinPadPlace, ALargePadDoesNotHideASmallOneNorTheOtherWayRound) {
    const wxRect small = Pad(470, 282);
    const wxRect large = Pad(420, 232, {440, 360});
    for (const auto& [there, comes] : {std::pair(small, large), std::pair(large, small)}) {
        const wxRect placed(Find({there}, kArea, comes.GetPosition(), comes.GetSize()),
                            comes.GetSize());
        EXPECT_FALSE(placed.Contains(there)) << testing::PrintToString(placed.GetPosition());
        EXPECT_FALSE(there.Contains(placed)) << testing::PrintToString(placed.GetPosition());
        EXPECT_TRUE(kArea.Contains(placed));
    }
}

TEST(PinPadPlace, NoPlaceReachesOutOfTheWorkArea) {
    for (const wxRect& area : {kArea, wxRect(0, 0, 800, 480), wxRect(-1024, 100, 1024, 700)}) {
        const wxPoint middle(area.x + (area.width - kSize.x) / 2,
                             area.y + (area.height - kSize.y) / 2);
        const std::vector<wxRect> pads = Fill(60, area, middle);
        for (const wxRect& pad : pads) {
            EXPECT_TRUE(area.Contains(pad)) << testing::PrintToString(pad.GetPosition());
        }
        EXPECT_EQ(pads.front().GetPosition(), middle);
        EXPECT_TRUE(Differ(pads));
    }
}

// 15 places across and 7 down.
TEST(PinPadPlace, EveryPlaceIsUsedBeforeOneIsUsedTwice) {
    const wxRect area(0, 0, 800, 480);
    std::vector<wxRect> pads = Fill(15 * 7, area, {230, 110});
    EXPECT_TRUE(Differ(pads));
    EXPECT_EQ(Find(pads, area, {230, 110}), wxPoint(230, 110));
    const wxRect last = pads.back();
    pads.pop_back();
    EXPECT_EQ(Find(pads, area, {230, 110}), last.GetPosition());
}

TEST(PinPadPlace, APadThatWouldStandOutsideIsTakenIn) {
    EXPECT_EQ(Find({}, kArea, {-50, -50}), wxPoint(0, 24));
    EXPECT_EQ(Find({}, kArea, {5000, 5000}), wxPoint(1280 - 340, 800 - 260));
    EXPECT_EQ(Find({}, wxRect(1280, 0, 800, 480), kMiddle), wxPoint(1280, 480 - 260));
}

TEST(PinPadPlace, APadLargerThanTheWorkAreaStandsAtItsCorner) {
    const wxRect area(100, 50, 300, 200);
    EXPECT_EQ(Find({}, area), wxPoint(100, 50));
    EXPECT_EQ(Find({Pad(100, 50)}, area), wxPoint(100, 50));
}

}  // namespace
}  // namespace zeldlg
