// The icons of the rules as they are painted: the pixels of their files, in both resolutions.
#include <gtest/gtest.h>
#include <wx/image.h>

#include <array>

#include "resources/pictures.h"

namespace zeldlg {

namespace {

// NOLINTBEGIN(readability-static-definition-in-anonymous-namespace): as the format has it
#include "resources/art/ball_met.xpm"
#include "resources/art/ball_red.xpm"
#include "resources/art/check.xpm"
#include "resources/art/cross.xpm"
// NOLINTEND(readability-static-definition-in-anonymous-namespace)

using Colour = std::array<unsigned, 4>;

// The red, green, blue and opacity of a pixel; what cannot be seen has no colour.
Colour ColourAt(const wxImage& image, int x, int y) {
    unsigned opacity = image.HasAlpha() ? image.GetAlpha(x, y) : 255;
    if (image.HasMask() && image.IsTransparent(x, y)) {
        opacity = 0;
    }
    if (opacity == 0) {
        return {};
    }
    return {image.GetRed(x, y), image.GetGreen(x, y), image.GetBlue(x, y), opacity};
}

void ExpectSamePixels(const wxImage& seen, const wxImage& wanted, int size) {
    ASSERT_TRUE(seen.IsOk() && wanted.IsOk());
    ASSERT_EQ(wanted.GetSize(), wxSize(size, size));
    ASSERT_EQ(seen.GetSize(), wxSize(size, size));
    for (int y = 0; y < size; ++y) {
        for (int x = 0; x < size; ++x) {
            ASSERT_EQ(ColourAt(seen, x, y), ColourAt(wanted, x, y)) << "at " << x << ", " << y;
        }
    }
}

struct Icon {
    Picture picture;
    const char* const* once;
    const char* twice;  // in the folder of the pictures
};

const std::array<Icon, 4> kIcons = {{{Picture::Check, check_xpm, "check_2x.png"},
                                     {Picture::Cross, cross_xpm, "cross_2x.png"},
                                     {Picture::BallMet, ball_met_xpm, "ball_met_2x.png"},
                                     {Picture::BallRed, ball_red_xpm, "ball_red_2x.png"}}};

TEST(Icons, AtTheUsualResolutionAreTheirXpmFiles) {
    for (const Icon& icon : kIcons) {
        SCOPED_TRACE(icon.twice);
        ExpectSamePixels(BundleOf(icon.picture).GetBitmap(wxSize(16, 16)).ConvertToImage(),
                         wxImage(icon.once), 16);
    }
}

// Of each colour the key in the rows, and the colour.
TEST(Icons, OfTheResponseHaveTheirColours) {
    const auto lines = [](const char* const* xpm, size_t colours) {
        return std::vector<std::string>(xpm, xpm + 1 + colours);
    };
    EXPECT_EQ(lines(check_xpm, 4), (std::vector<std::string>{"16 16 4 1", "  c None", ". c #000000",
                                                             "+ c #00ff00", "- c #808080"}));
    EXPECT_EQ(lines(cross_xpm, 2),
              (std::vector<std::string>{"16 16 2 1", "  c None", "# c #ff0000"}));
}

TEST(Icons, AtTwiceTheResolutionAreTheirPngFiles) {
    for (const Icon& icon : kIcons) {
        SCOPED_TRACE(icon.twice);
        ExpectSamePixels(BundleOf(icon.picture).GetBitmap(wxSize(32, 32)).ConvertToImage(),
                         wxImage(wxString(ZELDLG_ART) + "/" + icon.twice), 32);
    }
}

}  // namespace

}  // namespace zeldlg
