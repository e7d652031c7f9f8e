#include "resources/rule_icons.h"

namespace zeldlg {

namespace {

#include "resources/check.xpm"
#include "resources/cross.xpm"

}  // namespace

wxBitmap CheckIcon() { return wxBitmap(check_xpm); }

wxBitmap CrossIcon() { return wxBitmap(cross_xpm); }

}  // namespace zeldlg
