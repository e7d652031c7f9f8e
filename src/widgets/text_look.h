// How a text of a fixed colour is shown so that it can be read whatever the theme is.
#pragma once

#include <cstdint>
#include <optional>
#include <span>

namespace zeldlg {

struct Rgb {
    uint8_t red;
    uint8_t green;
    uint8_t blue;
};

/// The contrast ratio of two colours as WCAG 2 has it: 1 for equal ones, 21 for black on white.
double ContrastRatio(const Rgb& one, const Rgb& other);

struct TextLook {
    /// Another background than the theme's.
    std::optional<Rgb> background;
    /// At least as large as what the guidelines call large text: 14 points, bold.
    bool large = false;
};

/// @param colours Those that the text may have: all of them are to be readable in one look.
/// @param themeBackground What the theme has around the text.
///
/// Where the theme gives less than 4.5:1, the text stands on plain white or black, whichever is
/// closer to the theme. Where that gives less than 4.5:1 too (red on white), it is large: 3:1 are
/// enough then.
TextLook LookFor(std::span<const Rgb> colours, const Rgb& themeBackground);

}  // namespace zeldlg
