#include "resources/key_gen_pictures.h"

#include "resources/xpm_bitmap.h"

namespace zeldlg {

namespace {

// NOLINTBEGIN(readability-static-definition-in-anonymous-namespace): as the format has it
#include "resources/token_green.xpm"
#include "resources/token_neutral.xpm"
#include "resources/token_red.xpm"
// NOLINTEND(readability-static-definition-in-anonymous-namespace)

}  // namespace

std::array<wxBitmap, 3> KeyGenPictures() {
    return {XpmBitmap(token_red_xpm), XpmBitmap(token_neutral_xpm), XpmBitmap(token_green_xpm)};
}

}  // namespace zeldlg
