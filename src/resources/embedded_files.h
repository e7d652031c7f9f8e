// Files that the build puts into the library as they are.
#pragma once

#include <cstdint>
#include <span>

namespace zeldlg {

/// src/resources/art/signature.png
std::span<const uint8_t> SignaturePng();

/// src/resources/art/bio_token.png
std::span<const uint8_t> BioTokenPng();

// The forms for screens with twice the resolution: src/resources/art/*_2x.png
std::span<const uint8_t> SignatureTwice();
std::span<const uint8_t> BioTokenTwice();
std::span<const uint8_t> CheckTwice();
std::span<const uint8_t> CrossTwice();
std::span<const uint8_t> BallMetTwice();
std::span<const uint8_t> BallRedTwice();
std::span<const uint8_t> TokenRedTwice();
std::span<const uint8_t> TokenNeutralTwice();
std::span<const uint8_t> TokenGreenTwice();

}  // namespace zeldlg
