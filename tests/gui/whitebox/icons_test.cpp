// The icons of the rules as they are painted: the pixels of their files, in both resolutions.
#include <gtest/gtest.h>
#include <wx/image.h>
#include <wx/mstream.h>

#include <array>
#include <cstdint>
#include <span>

#include "resources/embedded_files.h"
#include "resources/rule_icons.h"

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

wxImage Decode(std::span<const uint8_t> file) {
    wxMemoryInputStream stream(file.data(), file.size());
    wxImage image;
    image.LoadFile(stream, wxBITMAP_TYPE_PNG);
    return image;
}

struct Icon {
    const char* name;
    wxBitmapBundle (*bundle)();
    const char* const* once;
    std::span<const uint8_t> (*twice)();
};

const std::array<Icon, 4> kIcons = {{{"tick", CheckIcon, check_xpm, CheckTwice},
                                     {"cross", CrossIcon, cross_xpm, CrossTwice},
                                     {"met ball", MetBall, ball_met_xpm, BallMetTwice},
                                     {"red ball", RedBall, ball_red_xpm, BallRedTwice}}};

TEST(Icons, AtTheUsualResolutionAreTheirXpmFiles) {
    for (const Icon& icon : kIcons) {
        SCOPED_TRACE(icon.name);
        ExpectSamePixels(icon.bundle().GetBitmap(wxSize(16, 16)).ConvertToImage(),
                         wxImage(icon.once), 16);
    }
}

TEST(Icons, AtTwiceTheResolutionAreTheirPngFiles) {
    for (const Icon& icon : kIcons) {
        SCOPED_TRACE(icon.name);
        ExpectSamePixels(icon.bundle().GetBitmap(wxSize(32, 32)).ConvertToImage(),
                         Decode(icon.twice()), 32);
    }
}

}  // namespace

}  // namespace zeldlg
