#include "widgets/banner.h"

#include <gtest/gtest.h>

namespace zeldlg {
namespace {

constexpr Rgb kWhite{255, 255, 255};
constexpr Rgb kBlack{0, 0, 0};
constexpr Rgb kRed{255, 0, 0};
constexpr Rgb kGreen{34, 139, 34};

bool Equal(const Rgb& one, const Rgb& other) {
    return one.red == other.red && one.green == other.green && one.blue == other.blue;
}

TEST(ContrastRatio, IsThatOfTheGuidelines) {
    struct Case {
        Rgb one, other;
        double ratio;
    };
    // Published values; the order of the two makes no difference.
    for (const Case& each :
         {Case{kBlack, kWhite, 21.0}, Case{kWhite, kWhite, 1.0}, Case{kRed, kWhite, 3.998},
          Case{kRed, kBlack, 5.252}, Case{{118, 118, 118}, kWhite, 4.542},
          Case{{119, 119, 119}, kWhite, 4.478}, Case{kGreen, kWhite, 4.399}}) {
        EXPECT_NEAR(ContrastRatio(each.one, each.other), each.ratio, 0.01);
        EXPECT_NEAR(ContrastRatio(each.other, each.one), each.ratio, 0.01);
    }
}

TEST(ReadableOnWhite, IsWhatIsReadAlready) {
    EXPECT_TRUE(Equal(ReadableOnWhite(kBlack), kBlack));
    EXPECT_TRUE(Equal(ReadableOnWhite({0, 0, 255}), {0, 0, 255}));
}

TEST(ReadableOnWhite, IsTheLightestShadeThatCanBeRead) {
    for (const Rgb& colour : {kRed, kGreen, kWhite}) {
        const Rgb shade = ReadableOnWhite(colour);
        EXPECT_GE(ContrastRatio(shade, kWhite), 5);
        EXPECT_LE(ContrastRatio(shade, kWhite), 5.3);
    }
    EXPECT_TRUE(Equal(ReadableOnWhite(kRed), {224, 0, 0}));
    EXPECT_TRUE(Equal(ReadableOnWhite(kGreen), {31, 127, 31}));
    // Near the bound: a little less of white, or of what a dark part adds, gives another shade.
    EXPECT_TRUE(Equal(ReadableOnWhite({255, 8, 0}), {224, 7, 0}));
    EXPECT_TRUE(Equal(ReadableOnWhite({255, 11, 0}), {221, 9, 0}));
}

TEST(PaleShare, IsWhatLeavesATextReadable) {
    EXPECT_EQ(PaleShare(kBlack, kWhite), 72);
    EXPECT_EQ(PaleShare(kWhite, kBlack), 72);
    // The text of Arc is pale by itself.
    EXPECT_GT(PaleShare({92, 97, 108}, {245, 246, 247}), 85);
    EXPECT_EQ(PaleShare({0, 51, 102}, {221, 153, 51}), 97);
    EXPECT_EQ(PaleShare({17, 102, 0}, {153, 255, 255}), 90);
    EXPECT_EQ(PaleShare(kGreen, kWhite), 100);
}

}  // namespace
}  // namespace zeldlg
