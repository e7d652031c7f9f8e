#include "widgets/coloured_text.h"

#include <gtest/gtest.h>

#include <array>

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

TEST(LookFor, AReadableColourStaysOnTheTheme) {
    const TextLook look = LookFor(std::array{kRed, kGreen}, kBlack);
    EXPECT_FALSE(look.background);
    EXPECT_FALSE(look.large);
}

TEST(LookFor, ALightThemeGetsWhiteAndLargeText) {
    for (const Rgb& theme : {kWhite, Rgb{246, 245, 244}, Rgb{190, 190, 190}}) {
        const TextLook look = LookFor(std::array{kRed}, theme);
        ASSERT_TRUE(look.background);
        EXPECT_TRUE(Equal(*look.background, kWhite));
        EXPECT_TRUE(look.large);
    }
}

TEST(LookFor, ADarkThemeGetsBlack) {
    for (const Rgb& theme : {Rgb{53, 53, 53}, Rgb{100, 100, 100}}) {
        const TextLook look = LookFor(std::array{kRed, kGreen}, theme);
        ASSERT_TRUE(look.background);
        EXPECT_TRUE(Equal(*look.background, kBlack));
        EXPECT_FALSE(look.large);
    }
}

TEST(LookFor, OnePoorColourDecidesForAll) {
    EXPECT_FALSE(LookFor(std::array{kBlack}, kWhite).background);
    EXPECT_TRUE(LookFor(std::array{kBlack, kRed}, kWhite).background);
}

TEST(LookFor, EveryThemeIsServed) {
    for (int grey = 0; grey <= 255; ++grey) {
        const auto level = static_cast<uint8_t>(grey);
        const Rgb theme{level, level, level};
        const std::array colours{kRed, kGreen};
        const TextLook look = LookFor(colours, theme);
        for (const Rgb& colour : colours) {
            const double ratio = ContrastRatio(colour, look.background.value_or(theme));
            EXPECT_GE(ratio, look.large ? 3.0 : 4.5) << "on grey " << grey;
        }
    }
}

}  // namespace
}  // namespace zeldlg
