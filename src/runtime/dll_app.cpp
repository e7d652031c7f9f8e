#include "runtime/dll_app.h"

#include <wx/image.h>

namespace zeldlg {

CDllApp::CDllApp() {
    // Windows come and go; the GUI thread decides when the toolkit ends.
    SetExitOnFrameDelete(false);
}

bool CDllApp::OnInit() {
    // wxInitAllImageHandlers may have been here before: one handler is enough.
    if (wxImage::FindHandler(wxBITMAP_TYPE_PNG) == nullptr) {
        wxImage::AddHandler(new wxPNGHandler);
    }
    return true;
}

}  // namespace zeldlg
