// The token at work while it makes keys, as an animation.
#pragma once

#include <wx/bitmap.h>

#include <array>

namespace zeldlg {

/// 32 by 32 pixels each; the token's light is red, off, green.
std::array<wxBitmap, 3> KeyGenPictures();

}  // namespace zeldlg
