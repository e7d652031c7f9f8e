#include "resources/rule_icons.h"

namespace zeldlg {

namespace {

#include "resources/ball_met.xpm"
#include "resources/ball_red.xpm"
#include "resources/check.xpm"
#include "resources/cross.xpm"

}  // namespace

wxBitmap CheckIcon() { return wxBitmap(check_xpm); }

wxBitmap CrossIcon() { return wxBitmap(cross_xpm); }

wxBitmap MetBall() { return wxBitmap(ball_met_xpm); }

wxBitmap RedBall() { return wxBitmap(ball_red_xpm); }

}  // namespace zeldlg
