// The token at work while it makes keys, as an animation.
#pragma once

#include <wx/bmpbndl.h>

#include <array>

namespace zeldlg {

/// 32 by 32 pixels each; the token's light is red, off, green.
std::array<wxBitmapBundle, 3> KeyGenPictures();

}  // namespace zeldlg
