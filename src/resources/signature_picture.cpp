#include "resources/signature_picture.h"

#include <wx/image.h>
#include <wx/mstream.h>

#include "resources/embedded_files.h"

namespace zeldlg {

wxBitmap SignaturePicture() {
    const auto file = SignaturePng();
    wxMemoryInputStream stream(file.data(), file.size());
    wxImage image;
    image.LoadFile(stream, wxBITMAP_TYPE_PNG);
    return {image};
}

}  // namespace zeldlg
