#include "resources/rule_icons.h"

#include "resources/xpm_bitmap.h"

namespace zeldlg {

namespace {

// NOLINTBEGIN(readability-static-definition-in-anonymous-namespace): as the format has it
#include "resources/ball_met.xpm"
#include "resources/ball_red.xpm"
#include "resources/check.xpm"
#include "resources/cross.xpm"
// NOLINTEND(readability-static-definition-in-anonymous-namespace)

}  // namespace

wxBitmap CheckIcon() { return XpmBitmap(check_xpm); }

wxBitmap CrossIcon() { return XpmBitmap(cross_xpm); }

wxBitmap MetBall() { return XpmBitmap(ball_met_xpm); }

wxBitmap RedBall() { return XpmBitmap(ball_red_xpm); }

}  // namespace zeldlg
