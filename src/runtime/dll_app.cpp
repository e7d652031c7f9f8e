#include "runtime/dll_app.h"

#include <wx/image.h>
#include <wx/log.h>

#include "registry/settings.h"
#include "resources/catalogue.h"

namespace zeldlg {

namespace {

// The catalogue's folder, from the first of the two keys that there is; empty for none.
wxString CataloguePrefix() {
    for (const wchar_t* const path : registry::kLocalesKeys) {
        const registry::SettingsKey key(path);
        if (key.IsOpen()) {
            return key.ReadString(L"Path").value_or(std::wstring());
        }
    }
    return {};
}

}  // namespace

CDllApp::CDllApp() {
    // Windows come and go; the GUI thread decides when the toolkit ends.
    SetExitOnFrameDelete(false);
    SetUpLocale();
}

bool CDllApp::OnInit() {
    SetUpLocale();
    // wxInitAllImageHandlers may have been here before: one handler is enough.
    if (wxImage::FindHandler(wxBITMAP_TYPE_PNG) == nullptr) {
        wxImage::AddHandler(new wxPNGHandler);
    }
    return true;
}

void CDllApp::SetUpLocale() {
    const CatalogueWriter catalogueWriter;
    m_locale.reset();
    auto* const translations = new wxTranslations;
    translations->SetLoader(new CatalogueLoader(CataloguePrefix()));
    wxTranslations::Set(translations);
    // A locale that is not installed, or that the toolkit does not know, costs nothing but the
    // translations.
    const wxLogNull noMessages;
    m_locale.emplace();
    m_locale->Init(wxLANGUAGE_DEFAULT, wxLOCALE_LOAD_DEFAULT);
    m_locale->AddCatalog("tokenutils");
    m_direction = wxApp::GetLayoutDirection();
}

}  // namespace zeldlg
