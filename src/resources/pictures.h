// The pictures that are built in: their names are in src/CMakeLists.txt, their files in art/. Each
// has a form of twice the resolution.
#pragma once

#include <wx/bmpbndl.h>

#include "resources/picture_names.h"  // enum class Picture

namespace zeldlg {

wxBitmapBundle BundleOf(Picture picture);

}  // namespace zeldlg
