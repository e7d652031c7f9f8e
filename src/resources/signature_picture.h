// The picture above the question for the PIN of a legally binding signature.
#pragma once

#include <wx/bitmap.h>

namespace zeldlg {

/// 300 by 248 pixels with a background of its own.
wxBitmap SignaturePicture();

}  // namespace zeldlg
