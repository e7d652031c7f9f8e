// The two 16 by 16 icons that mark a rule as met or not met.
#pragma once

#include <wx/bitmap.h>

namespace zeldlg {

/// A green tick with a dark edge.
wxBitmap CheckIcon();
/// A red cross.
wxBitmap CrossIcon();

}  // namespace zeldlg
