// The icons of the rules as they are painted: the pixels of their files, in both resolutions.
#include <gtest/gtest.h>
#include <wx/image.h>

#include <array>

#include "resources/pictures.h"

namespace zeldlg {

namespace {

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
    const char* file;  // in the folder of the pictures, without its ending
};

constexpr std::array<Icon, 4> kIcons = {{{Picture::Check, "check"},
                                         {Picture::Cross, "cross"},
                                         {Picture::BallMet, "ball_met"},
                                         {Picture::BallRed, "ball_red"}}};

wxImage FileOf(const Icon& icon, const char* ending) {
    return wxImage(wxString(ZELDLG_ART) + "/" + icon.file + ending);
}

TEST(Icons, AtTheUsualResolutionAreTheirFiles) {
    for (const Icon& icon : kIcons) {
        SCOPED_TRACE(icon.file);
        ExpectSamePixels(BundleOf(icon.picture).GetBitmap(wxSize(16, 16)).ConvertToImage(),
                         FileOf(icon, ".png"), 16);
    }
}

size_t CountOf(const wxImage& image, const Colour& colour) {
    size_t count = 0;
    for (int y = 0; y < image.GetHeight(); ++y) {
        for (int x = 0; x < image.GetWidth(); ++x) {
            count += ColourAt(image, x, y) == colour ? 1U : 0U;
        }
    }
    return count;
}

TEST(Icons, OfTheResponseHaveTheirColours) {
    const wxImage check = BundleOf(Picture::Check).GetBitmap(wxSize(32, 32)).ConvertToImage();
    const wxImage cross = BundleOf(Picture::Cross).GetBitmap(wxSize(32, 32)).ConvertToImage();
    EXPECT_GE(CountOf(check, {0, 255, 0, 255}), 30);
    EXPECT_GE(CountOf(cross, {255, 0, 0, 255}), 30);
}

// Edges are smoothed, and what is around them is not painted at all.
TEST(Icons, AreDrawnSmoothlyOnATransparentGround) {
    for (const Icon& icon : kIcons) {
        SCOPED_TRACE(icon.file);
        const wxImage image = BundleOf(icon.picture).GetBitmap(wxSize(16, 16)).ConvertToImage();
        size_t between = 0;
        for (int place = 0; place < 16 * 16; ++place) {
            const unsigned opacity = image.GetAlpha(place % 16, place / 16);
            between += opacity > 0 && opacity < 255 ? 1U : 0U;
        }
        EXPECT_GE(between, 12);
        EXPECT_EQ(image.GetAlpha(0, 0), 0);
    }
}

TEST(Icons, AtTwiceTheResolutionAreTheirFiles) {
    for (const Icon& icon : kIcons) {
        SCOPED_TRACE(icon.file);
        ExpectSamePixels(BundleOf(icon.picture).GetBitmap(wxSize(32, 32)).ConvertToImage(),
                         FileOf(icon, "_2x.png"), 32);
    }
}

TEST(Icons, AreShownInTheLargerFormWhereThatIsNearer) {
    for (const Icon& icon : kIcons) {
        const wxBitmapBundle bundle = BundleOf(icon.picture);
        for (const auto& [scale, side] : {std::pair(1.0, 16), {1.5, 16}, {1.75, 32}, {2.0, 32}}) {
            EXPECT_EQ(bundle.GetPreferredBitmapSizeAtScale(scale), wxSize(side, side)) << scale;
        }
    }
}

}  // namespace

}  // namespace zeldlg
