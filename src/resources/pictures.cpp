#include "resources/pictures.h"

#include <wx/image.h>
#include <wx/mstream.h>

#include "resources/embedded_files.h"

namespace zeldlg {

namespace {

wxBitmap DecodePng(std::span<const uint8_t> file) {
    wxMemoryInputStream stream(file.data(), file.size());
    wxImage image;
    image.LoadFile(stream, wxBITMAP_TYPE_PNG);
    return {image};
}

}  // namespace

wxBitmap SignaturePicture() { return DecodePng(SignaturePng()); }

wxBitmap BioTokenPicture() { return DecodePng(BioTokenPng()); }

}  // namespace zeldlg
