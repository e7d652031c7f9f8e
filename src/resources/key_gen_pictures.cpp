#include "resources/key_gen_pictures.h"

#include "resources/bitmaps.h"
#include "resources/embedded_files.h"

namespace zeldlg {

namespace {

// NOLINTBEGIN(readability-static-definition-in-anonymous-namespace): as the format has it
#include "resources/art/token_green.xpm"
#include "resources/art/token_neutral.xpm"
#include "resources/art/token_red.xpm"
// NOLINTEND(readability-static-definition-in-anonymous-namespace)

}  // namespace

std::array<wxBitmapBundle, 3> KeyGenPictures() {
    return {TwoForms(XpmBitmap(token_red_xpm), TokenRedTwice()),
            TwoForms(XpmBitmap(token_neutral_xpm), TokenNeutralTwice()),
            TwoForms(XpmBitmap(token_green_xpm), TokenGreenTwice())};
}

}  // namespace zeldlg
