// Files that the build puts into the library as they are.
#pragma once

#include <cstdint>
#include <span>

namespace zeldlg {

/// src/resources/art/signature.png
std::span<const uint8_t> SignaturePng();

/// src/resources/art/bio_token.png
std::span<const uint8_t> BioTokenPng();

}  // namespace zeldlg
