#include "resources/rule_icons.h"

namespace zeldlg {

namespace {

// NOLINTBEGIN(readability-static-definition-in-anonymous-namespace): as the format has it
#include "resources/ball_met.xpm"
#include "resources/ball_red.xpm"
#include "resources/check.xpm"
#include "resources/cross.xpm"
// NOLINTEND(readability-static-definition-in-anonymous-namespace)

}  // namespace

wxBitmap CheckIcon() { return {check_xpm}; }

wxBitmap CrossIcon() { return {cross_xpm}; }

wxBitmap MetBall() { return {ball_met_xpm}; }

wxBitmap RedBall() { return {ball_red_xpm}; }

}  // namespace zeldlg
