#include "resources/key_gen_pictures.h"

namespace zeldlg {

namespace {

// NOLINTBEGIN(readability-static-definition-in-anonymous-namespace): as the format has it
#include "resources/token_green.xpm"
#include "resources/token_neutral.xpm"
#include "resources/token_red.xpm"
// NOLINTEND(readability-static-definition-in-anonymous-namespace)

}  // namespace

std::array<wxBitmap, 3> KeyGenPictures() {
    return {wxBitmap(token_red_xpm), wxBitmap(token_neutral_xpm), wxBitmap(token_green_xpm)};
}

}  // namespace zeldlg
