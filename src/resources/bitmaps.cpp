#include "resources/bitmaps.h"

#include <wx/image.h>
#include <wx/mstream.h>

namespace zeldlg {

wxBitmap XpmBitmap(const char* const* xpm) {
    wxImage image(xpm);
    image.InitAlpha();
    return {image};
}

wxBitmap PngBitmap(std::span<const uint8_t> file) {
    wxMemoryInputStream stream(file.data(), file.size());
    wxImage image;
    image.LoadFile(stream, wxBITMAP_TYPE_PNG);
    return {image};
}

wxBitmapBundle TwoForms(const wxBitmap& once, std::span<const uint8_t> twice) {
    return wxBitmapBundle::FromBitmaps(once, PngBitmap(twice));
}

}  // namespace zeldlg
