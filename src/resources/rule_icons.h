// The 16 by 16 icons that mark a rule as met or not met.
#pragma once

#include <wx/bmpbndl.h>

namespace zeldlg {

/// A green tick with a dark edge.
wxBitmapBundle CheckIcon();
/// A red cross.
wxBitmapBundle CrossIcon();
/// A green ball with a tick: chosen like a button.
wxBitmapBundle MetBall();
/// A red ball: chosen like a button.
wxBitmapBundle RedBall();

}  // namespace zeldlg
