// The 16 by 16 icons that mark a rule as met or not met.
#pragma once

#include <wx/bitmap.h>

namespace zeldlg {

/// A green tick with a dark edge.
wxBitmap CheckIcon();
/// A red cross.
wxBitmap CrossIcon();
/// A green ball with a tick: chosen like a button.
wxBitmap MetBall();
/// A red ball: chosen like a button.
wxBitmap RedBall();

}  // namespace zeldlg
