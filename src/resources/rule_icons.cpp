#include "resources/rule_icons.h"

#include "resources/bitmaps.h"
#include "resources/embedded_files.h"

namespace zeldlg {

namespace {

// NOLINTBEGIN(readability-static-definition-in-anonymous-namespace): as the format has it
#include "resources/art/ball_met.xpm"
#include "resources/art/ball_red.xpm"
#include "resources/art/check.xpm"
#include "resources/art/cross.xpm"
// NOLINTEND(readability-static-definition-in-anonymous-namespace)

}  // namespace

wxBitmapBundle CheckIcon() { return TwoForms(XpmBitmap(check_xpm), CheckTwice()); }

wxBitmapBundle CrossIcon() { return TwoForms(XpmBitmap(cross_xpm), CrossTwice()); }

wxBitmapBundle MetBall() { return TwoForms(XpmBitmap(ball_met_xpm), BallMetTwice()); }

wxBitmapBundle RedBall() { return TwoForms(XpmBitmap(ball_red_xpm), BallRedTwice()); }

}  // namespace zeldlg
