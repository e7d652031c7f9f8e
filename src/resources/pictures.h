// The pictures that are built in: their names are in src/CMakeLists.txt, their files in art/. Each
// has a form of twice the resolution.
#pragma once

#include <wx/bmpbndl.h>

#include "resources/picture_names.h"  // enum class Picture

namespace zeldlg {

wxBitmapBundle BundleOf(Picture picture);

/// An icon of the desktop's theme by its name, so many pixels wide and high at every scale. (The
/// toolkit's own is smaller where the theme has no file of just that size.)
/// @param colour Of a theme that has it as a plain sign only.
wxBitmapBundle ThemeIcon(const char* name, int size, const wxColour& colour);

}  // namespace zeldlg
