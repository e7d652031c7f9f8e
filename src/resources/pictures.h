// The painted pictures. Each stands on a card of its own, so that it looks the same on light and
// dark themes.
#pragma once

#include <wx/bmpbndl.h>

namespace zeldlg {

/// Above the question for the PIN of a legally binding signature; 300 by 248 pixels.
wxBitmapBundle SignaturePicture();

/// The fingerprint token with its sensor and its yellow light; 176 by 120 pixels.
wxBitmapBundle BioTokenPicture();

}  // namespace zeldlg
