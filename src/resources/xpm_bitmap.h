// Makes bitmaps of the XPM pictures.
#pragma once

#include <wx/bitmap.h>
#include <wx/image.h>

namespace zeldlg {

/// With an alpha channel: the toolkit loses the memory of a picture that has a mask each time when
/// it draws it.
inline wxBitmap XpmBitmap(const char* const* xpm) {
    wxImage image(xpm);
    image.InitAlpha();
    return {image};
}

}  // namespace zeldlg
