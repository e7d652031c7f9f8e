#include "widgets/text_look.h"

#include <algorithm>
#include <cmath>

namespace zeldlg {

namespace {

constexpr double kReadable = 4.5;

constexpr Rgb kWhite{255, 255, 255};
constexpr Rgb kBlack{0, 0, 0};

double Linear(uint8_t value) {
    const double share = value / 255.0;
    return share <= 0.04045 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
}

double Luminance(const Rgb& colour) {
    return 0.2126 * Linear(colour.red) + 0.7152 * Linear(colour.green) +
           0.0722 * Linear(colour.blue);
}

bool AllReadable(std::span<const Rgb> colours, const Rgb& background) {
    return std::all_of(colours.begin(), colours.end(), [&background](const Rgb& colour) {
        return ContrastRatio(colour, background) >= kReadable;
    });
}

}  // namespace

double ContrastRatio(const Rgb& one, const Rgb& other) {
    const auto [darker, lighter] = std::minmax({Luminance(one), Luminance(other)});
    return (lighter + 0.05) / (darker + 0.05);
}

TextLook LookFor(std::span<const Rgb> colours, const Rgb& themeBackground) {
    if (AllReadable(colours, themeBackground)) {
        return {};
    }
    const bool isLight =
        ContrastRatio(themeBackground, kWhite) < ContrastRatio(themeBackground, kBlack);
    const Rgb background = isLight ? kWhite : kBlack;
    return {.background = background, .large = !AllReadable(colours, background)};
}

}  // namespace zeldlg
